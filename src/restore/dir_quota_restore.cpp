#include "restore/dir_quota_restore.h"

#include <cstdio>
#include <cstring>

#include "channel/admin_channel.h"
#include "document/completion_codes.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/entry_messages.h"
#include "restore/restore_requests.h"
#include "restore/section_restore.h"

// The checked string functions of the C library: they end the process when the text does not
// fit, which is what a directory name longer than its 4,096-byte field does.
extern "C" char *__strcpy_chk(char *destination, const char *source, std::size_t destinationSize);
extern "C" char *__strcat_chk(char *destination, const char *source, std::size_t destinationSize);

void toForwardSlashes(char *text) {
  for (char *slash = std::strchr(text, '\\'); slash != nullptr; slash = std::strchr(slash, '\\'))
    *slash = '/';
}

int restoreDirQuotas(const char *mountPoint, const regex_t *filter) {
  return restoreSection(kFilesCommandFile, "files",
                        [mountPoint, filter] { return walkDirQuotaSection(mountPoint, filter); });
}

int walkDirQuotaSection(const char *mountPoint, const regex_t *filter) {
  Tag tag;
  for (;;) {
    if (const int result = readTag(tag, "restoreDirQuotas"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("dirInfo")) return 0;
    } else if (tag.is("directory")) {
      if (const int result = processDirQuotaInfo(mountPoint, filter); result != 0) return result;
    } else {
      reportUnrecognizedTag(tag.name);
    }
  }
}

int processDirQuotaInfo(const char *mountPoint, const regex_t *filter) {
  Tag tag;
  char quota[kQuotaTextSize];
  char path[kPathTextSize];
  char fullName[kPathTextSize];
  quota[0] = '\0';
  fullName[0] = '\0';
  bool havePath = false;
  bool haveQuota = false;
  bool pathRefused = false;
  bool quotaRefused = false;
  int skip = 0;
  for (;;) {
    if (const int result = readTag(tag, "processDirQuotaInfo"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("directory")) break;
    } else if (tag.is("path")) {
      bool tooLong = false;
      if (const int result = readContents(path, sizeof path, &tooLong); result != 0) return result;
      goPastEndTag("path");
      havePath = true;
      pathRefused = tooLong;
      if (tooLong) {
        reportValueTooLong("path");
        continue;
      }
      __strcpy_chk(fullName, mountPoint, sizeof fullName);
      __strcat_chk(fullName, path, sizeof fullName);
      toForwardSlashes(fullName);
      if (filter != nullptr) skip = regexec(filter, fullName, 0, nullptr, 0) != 0 ? 1 : 0;
    } else if (tag.is("quotaAmount")) {
      bool tooLong = false;
      if (const int result = readContents(quota, sizeof quota, &tooLong); result != 0)
        return result;
      goPastEndTag("quotaAmount");
      haveQuota = true;
      quotaRefused = tooLong;
      if (tooLong) reportValueTooLong("quotaAmount");
    } else if (!tag.is("zid") && !tag.is("spaceUsed")) {
      reportUnrecognizedTag(tag.name);
    }
  }

  if (skip || std::strcmp(quota, kNoQuota) == 0) return 0;
  if (!havePath || !haveQuota || pathRefused || quotaRefused) return 0;
  addDirQuota(fullName, quota);
  return 0;
}

int addDirQuota(const char *fileName, const char *quota) {
  if (!requestAccepted(kDirQuotaReply, buildDirQuota(fileName, quota),
                       "Error adding directory quota of %s to %s: %s(%s)\n", quota, fileName))
    return kOwnFailure;
  if (showActions) std::printf("Directory quota of %s added to %s.\n", quota, fileName);
  return 0;
}
