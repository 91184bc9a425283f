// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "save/rxl_import.h"

int importRxlTrusteeFile(const char *, const char *) { return -1; }
void parseRxlTrusteeBlock(char *, int, const char *) {}
