// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "legacy/trustee_report.h"

int convertTrusteeReport(const char *, const char *, const char *) { return -1; }
