#include "restore/restore_driver.h"

#include <cstdio>
#include <cstring>

#include "cli/options.h"
#include "cli/volume.h"
#include "document/completion_codes.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/dir_quota_restore.h"
#include "restore/entry_messages.h"
#include "restore/trustee_restore.h"
#include "restore/user_quota_restore.h"

static_assert(kBasePathSize == kMountPointSize, "the base path holds a mount point");

namespace {

// What the sections of one document are restored to.
struct Target {
  const char *volumeName;
  const char *mountPoint;  // null: looked up from volumeName by each section that needs it
  const regex_t *filter;
  const char *tree;
  int rxlMode;
};

void progress(const char *line) {
  if (showActions) std::puts(line);
}

// Puts the mount point into basePath. Returns 0, or the failed lookup's code.
int findMountPoint(const Target &target, char *basePath) {
  if (target.mountPoint == nullptr) return findVolumeMountPoint(target.volumeName, basePath);
  std::snprintf(basePath, kBasePathSize, "%s", target.mountPoint);
  return kSuccess;
}

int restoreTrusteeSection(const Target &target) {
  char basePath[kBasePathSize];
  progress("Restoring trustees");
  int result = kSuccess;
  if (target.rxlMode)
    std::snprintf(basePath, sizeof basePath, "%s", target.volumeName);
  else
    result = findMountPoint(target, basePath);
  if (result == kSuccess)
    result = restoreTrustees(basePath, target.filter, target.tree, target.rxlMode);
  if (result == kSuccess) progress("Restoring trustees - completed");
  return result;
}

int restoreUserQuotaSection(const Target &target) {
  progress("Restoring user quotas");
  const int result = restoreUserQuotas(target.volumeName, target.tree);
  if (result == kSuccess) progress("Restoring user quotas - completed");
  return result;
}

int restoreDirQuotaSection(const Target &target) {
  char basePath[kBasePathSize];
  progress("Restoring directory quotas");
  int result = findMountPoint(target, basePath);
  if (result == kSuccess) result = restoreDirQuotas(basePath, target.filter);
  if (result == kSuccess) progress("Restoring directory quotas - completed");
  return result;
}

// Restores the section whose start tag was just read, or skips it when the mask (or RXL mode, for
// the quotas) leaves it out. Returns 0 or the first failure's code.
int restoreSectionAt(const Tag &tag, const MaskFlags &flags, const Target &target) {
  if (tag.is("trusteeInfo"))
    return flags.trustees ? restoreTrusteeSection(target) : goPastEndTag("trusteeInfo");
  if (tag.is("userInfo"))
    return flags.userQuotas && !target.rxlMode ? restoreUserQuotaSection(target)
                                               : goPastEndTag("userInfo");
  if (tag.is("dirInfo"))
    return flags.dirQuotas && !target.rxlMode ? restoreDirQuotaSection(target)
                                              : goPastEndTag("dirInfo");
  reportUnrecognizedTag(tag.name);
  return kSuccess;
}

}  // namespace

int restoreDocument(const char *volumeName, const char *mountPoint, const regex_t *filter,
                    const char *mask, const char *tree, int rxlMode) {
  MaskFlags flags;
  if (const int result = parseMask(mask, flags); result != kSuccess) return result;

  // With -n, a failed console command leaves a copy of this process going on; it shares the rest
  // of the input with this one through the file offset, so nothing is read ahead of the window.
  readOnlyWithinWindow(rxlMode != 0);
  Tag tag;
  if (readTag(tag, "restoreMetadata(1)") != kSuccess || !tag.is("metadata")) {
    std::fprintf(stderr, "Unrecognized file contents.  Unable to start the restore\n");
    return kOwnFailure;
  }
  const Target target{volumeName, mountPoint, filter, tree, rxlMode};
  for (;;) {
    if (const int result = readTag(tag, "restoreMetadata"); result != kSuccess) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("metadata")) return kSuccess;
      continue;
    }
    if (const int result = restoreSectionAt(tag, flags, target); result != kSuccess) return result;
  }
}

int restoreMetadata(const char *volumeName, const regex_t *filter, const char *mask,
                    const char *tree, int rxlMode) {
  return restoreDocument(volumeName, nullptr, filter, mask, tree, rxlMode);
}
