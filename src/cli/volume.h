// Finding the directory a QUILL volume is mounted on, from the mount table.
#pragma once
#include <cstddef>

inline constexpr const char *kMountTable = "/etc/mtab";
inline constexpr std::size_t kMountPointSize = 4097;  // callers' buffers: a path and its NUL

// Looks `volumeName` up among the "quillvol" entries of the mount table (case-sensitive) and
// copies its mount directory into `mountPoint` (kMountPointSize bytes). Returns 0 when found,
// kOwnFailure when not found (after a message), kConsoleFailure when the table cannot be opened.
int findVolumeMountPoint(const char *volumeName, char *mountPoint);
