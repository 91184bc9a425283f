// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "save/invalid_trustees.h"

int removeInvalidTrustees(const char *, const char *, const char *, const char *) { return 0; }
