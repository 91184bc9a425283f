// What the process settles before it reads its command line.
#pragma once

// Opens /dev/null on each of descriptors 0, 1 and 2 that is closed, so that no file the run
// opens later can take one of their numbers (a command file opened as descriptor 1 would
// receive the run's output as requests). Returns false if one of them could not be had.
bool ensureStandardDescriptors();

// ensureStandardDescriptors() and the removal of the run's temporary files on SIGINT, SIGTERM
// and SIGHUP. Should /dev/null itself be missing, the run goes on as it was started.
void prepareProcess();
