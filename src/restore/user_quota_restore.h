// Restoring the userInfo section: one user space quota request per user.
#pragma once

// Walks one userInfo section (called after its start tag), opening the volume command file.
// Returns 0 at </userInfo>, the errno of a failed open, or the tag reader's failure code.
int restoreUserQuotas(const char *volume, const char *tree);

// The section loop of restoreUserQuotas, with the command file already in adminFd.
int walkUserQuotaSection(const char *volume, const char *tree);

// Reads one user record (after its start tag) and restores it. Returns 0 at </user>, or the
// reader's failure code; a refused request does not reach the result.
int processUserQuotaInfo(const char *volume, const char *tree, int isAd);

// One userSpaceRestrictions request. Returns kSuccess when the file system accepted it,
// kOwnFailure when it was refused or could not be exchanged (after the message); the walker goes
// on either way.
int addUserQuota(const char *volume, const char *userName, const char *quota, int isAd);
