// Restoring the dirInfo section: one directory quota request per directory.
#pragma once
#include <regex.h>

// Walks one dirInfo section (called after its start tag), opening the file command file.
// Returns 0 at </dirInfo>, the errno of a failed open, or the tag reader's failure code.
int restoreDirQuotas(const char *mountPoint, const regex_t *filter);

// The section loop of restoreDirQuotas, with the command file already in adminFd.
int walkDirQuotaSection(const char *mountPoint, const regex_t *filter);

// Reads one directory record (after its start tag) and restores it. Returns 0 at </directory>,
// or the reader's failure code. A mount point and path longer than 4,095 bytes end the process.
int processDirQuotaInfo(const char *mountPoint, const regex_t *filter);

// One addQuota request. Returns kSuccess when the file system accepted it, kOwnFailure when it
// was refused or could not be exchanged (after the message); the walker goes on either way.
int addDirQuota(const char *fileName, const char *quota);

// Replaces every '\' in text by '/', in place.
void toForwardSlashes(char *text);
