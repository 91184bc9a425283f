// Placeholder until this subsystem is built: it does nothing and reports failure.
#include "channel/console_runner.h"

int runCommand(const char *, char *const[], char *) { return -1; }
int checkRxlVolume(const char *) { return -1; }
