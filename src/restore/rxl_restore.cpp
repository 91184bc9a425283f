// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "restore/rxl_restore.h"

int addRxlInheritedRightsFilter(const char *, const char *) { return -1; }
int addRxlTrustee(const char *, char *, const char *) { return -1; }
