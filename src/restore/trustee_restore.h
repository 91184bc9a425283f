// Restoring the trusteeInfo section: the trustees and inherited rights filters of each file.
#pragma once
#include <regex.h>

#include <cstddef>

// The base path buffer: a mount point (or a volume name and ':') and its NUL.
inline constexpr std::size_t kBasePathSize = 4097;

// Walks one trusteeInfo section (called after its start tag). basePath holds the mount point, or
// in RXL mode the volume name, to which ':' is appended (kBasePathSize bytes). Opens the file
// command file in normal mode (see section_restore.h). Returns 0 at </trusteeInfo>, else the
// first failure's code: the errno of a failed open, kOwnFailure for an RXL volume not found, or
// what walkTrusteeSection returned.
int restoreTrustees(char *basePath, const regex_t *filter, const char *tree, int rxlMode);

// The section loop of restoreTrustees, with the command file (if any) already in adminFd.
int walkTrusteeSection(const char *basePath, const regex_t *filter, const char *tree, int rxlMode);

// Walks one file element (called after its start tag). Returns 0 at </file>, else the code of a
// reader failure or of a trustee that has neither a name nor (for an AD trustee) an id.
int processFileTrusteeInfo(const char *basePath, const regex_t *filter, const char *tree,
                           int rxlMode);

// Walks one trustee element and restores it unless `skip`. Returns 0, a reader failure's code, or
// kOwnFailure for an Arbor trustee without a name or an AD trustee without an id.
int processATrustee(const char *fullPath, const char *tree, int skip, int rxlMode, int isAd);

// One addTrustee request. id is used when isAd. Returns kSuccess when the file system accepted
// it, kOwnFailure when it was refused or could not be exchanged (after the message). The walkers
// do not look at the result: a refused entry does not stop the restore.
int addTrustee(const char *fullPath, const char *id, const char *name, const char *rights,
               int isAd);

// One modifyInheritedRightsFilter request. Returns as addTrustee does.
int modifyInheritedRightsFilter(const char *fullPath, const char *irf);
