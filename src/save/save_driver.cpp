// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "save/save_driver.h"

int saveMetadata(const char *, const char *, const char *, const char *, char *) { return -1; }
