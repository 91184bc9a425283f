#include "restore/restore_driver.h"

#include <cstdio>
#include <cstring>

#include "cli/options.h"
#include "cli/volume.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/dir_quota_restore.h"
#include "restore/entry_messages.h"
#include "restore/trustee_restore.h"
#include "restore/user_quota_restore.h"

static_assert(kBasePathSize == kMountPointSize, "the base path holds a mount point");

namespace {

void progress(const char *line) {
  if (showActions) std::puts(line);
}

}  // namespace

int restoreMetadata(const char *volumeName, const regex_t *filter, const char *mask,
                    const char *tree, int rxlMode) {
  MaskFlags flags;
  if (const int result = parseMask(mask, flags); result != 0) return result;

  Tag tag;
  if (readTag(tag, "restoreMetadata(1)") != 0 || !tag.is("metadata")) {
    std::fprintf(stderr, "Unrecognized file contents.  Unable to start the restore\n");
    return -1;
  }

  char basePath[kBasePathSize];
  for (;;) {
    if (const int result = readTag(tag, "restoreMetadata"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("metadata")) return 0;
      continue;
    }
    int result = 0;
    if (tag.is("trusteeInfo")) {
      if (!flags.trustees) {
        result = goPastEndTag("trusteeInfo");
      } else {
        progress("Restoring trustees");
        if (rxlMode)
          std::snprintf(basePath, sizeof basePath, "%s", volumeName);
        else
          result = findVolumeMountPoint(volumeName, basePath);
        if (result == 0) result = restoreTrustees(basePath, filter, tree, rxlMode);
        if (result == 0) progress("Restoring trustees - completed");
      }
    } else if (tag.is("userInfo")) {
      if (!flags.userQuotas || rxlMode) {
        result = goPastEndTag("userInfo");
      } else {
        progress("Restoring user quotas");
        result = restoreUserQuotas(volumeName, tree);
        if (result == 0) progress("Restoring user quotas - completed");
      }
    } else if (tag.is("dirInfo")) {
      if (!flags.dirQuotas || rxlMode) {
        result = goPastEndTag("dirInfo");
      } else {
        progress("Restoring directory quotas");
        result = findVolumeMountPoint(volumeName, basePath);
        if (result == 0) result = restoreDirQuotas(basePath, filter);
        if (result == 0) progress("Restoring directory quotas - completed");
      }
    } else {
      reportUnrecognizedTag(tag.name);
    }
    if (result != 0) return result;
  }
}
