// Process-wide settings of one run. The command line sets them once; the save and restore
// walkers and the tag reader read them.
#pragma once

extern int showActions;  // -a: restore prints one line per change made
extern int debug;        // -d: the tag reader traces every tag on standard output
extern int arborUsers;   // only Arbor directory users (see parseUserType)
extern int adUsers;      // only AD users (see parseUserType)
extern int inputFd;      // where the Metadata document is read from (0, or the -w temporary file)

// Puts every setting back to its start-of-run value. For tests that run many cases in one process.
void resetRunSettings();
