#include "cli/volume.h"

#include <mntent.h>

#include <cctype>
#include <cstdio>
#include <cstring>

#include "document/completion_codes.h"

namespace {

constexpr std::size_t kEntryBufferSize = 4096;
constexpr std::size_t kLongestVolumeName = 255;

void copyMountPoint(const char *directory, char *mountPoint) {
  std::snprintf(mountPoint, kMountPointSize, "%s", directory);
}

// The volume name of a "name=" option: up to the first ',', white space or end, at most 255.
bool nameOptionEquals(const char *nameOption, const char *volumeName) {
  std::size_t length = 0;
  while (nameOption[length] != '\0' && nameOption[length] != ',' &&
         !std::isspace(static_cast<unsigned char>(nameOption[length])) &&
         length < kLongestVolumeName)
    ++length;
  return std::strlen(volumeName) == length && std::memcmp(nameOption, volumeName, length) == 0;
}

}  // namespace

int findVolumeMountPoint(const char *volumeName, char *mountPoint) {
  FILE *table = setmntent(kMountTable, "r");
  if (table == nullptr) {
    std::fprintf(stderr, "Error opening %s.  Error=%m\n", kMountTable);
    return kConsoleFailure;
  }
  mountPoint[0] = '\0';
  struct mntent entry;
  char buffer[kEntryBufferSize];
  while (getmntent_r(table, &entry, buffer, sizeof buffer) != nullptr) {
    if (std::strcmp(entry.mnt_type, "quillvol") != 0) continue;
    const char *nameOption = std::strstr(entry.mnt_opts, "name=");
    if (nameOption == nullptr) {
      // Options that are the bare volume name: a later equal entry replaces this one.
      if (std::strcmp(entry.mnt_opts, volumeName) == 0) copyMountPoint(entry.mnt_dir, mountPoint);
      continue;
    }
    if (nameOptionEquals(nameOption + std::strlen("name="), volumeName)) {
      copyMountPoint(entry.mnt_dir, mountPoint);
      break;
    }
  }
  endmntent(table);
  if (mountPoint[0] != '\0') return 0;
  std::fprintf(stderr, "Volume not found in the mount table\n");
  return kOwnFailure;
}
