#include "restore/user_quota_restore.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"
#include "document/completion_codes.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/xml_text.h"
#include "restore/entry_messages.h"
#include "restore/restore_requests.h"
#include "restore/section_restore.h"

namespace {

// Children of a user record that carry nothing for the request.
bool isIgnoredUserChild(const Tag &tag) {
  static constexpr std::string_view kIgnored[] = {"spaceUsed", "id",     "idNotFound",   "time",
                                                  "utc",       "string", "numberOfTimes"};
  for (const std::string_view ignored : kIgnored)
    if (tag.is(ignored)) return true;
  return false;
}

}  // namespace

int restoreUserQuotas(const char *volume, const char *tree) {
  return restoreSection(kManageCommandFile, "volumes",
                        [volume, tree] { return walkUserQuotaSection(volume, tree); });
}

int walkUserQuotaSection(const char *volume, const char *tree) {
  Tag tag;
  for (;;) {
    if (const int result = readTag(tag, "restoreUserQuotas"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("userInfo")) return 0;
    } else if (tag.is("user") || tag.is(kAdUserElement)) {
      const int isAd = tag.is(kAdUserElement) ? 1 : 0;
      if (const int result = processUserQuotaInfo(volume, tree, isAd); result != 0) return result;
    } else {
      reportUnrecognizedTag(tag.name);
    }
  }
}

int processUserQuotaInfo(const char *volume, const char *tree, int isAd) {
  Tag tag;
  char quota[kQuotaTextSize];
  char name[kNameTextSize];
  quota[0] = '\0';
  name[0] = '\0';
  bool haveQuota = false;
  bool haveName = false;
  bool refused = false;  // a value did not fit its field
  for (;;) {
    if (const int result = readTag(tag, "processUserQuotaInfo"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("user")) break;
    } else if (tag.is("name")) {
      bool tooLong = false;
      if (const int result = readContents(name, sizeof name, &tooLong); result != 0) return result;
      haveName = true;
      if (tooLong || !replaceTreeName(name, tree, sizeof name)) {
        reportValueTooLong("name");
        refused = true;
      }
      goPastEndTag("name");
    } else if (tag.is("quotaAmount")) {
      bool tooLong = false;
      if (const int result = readContents(quota, sizeof quota, &tooLong); result != 0)
        return result;
      haveQuota = true;
      if (tooLong) {
        reportValueTooLong("quotaAmount");
        refused = true;
      }
      goPastEndTag("quotaAmount");
    } else if (!isIgnoredUserChild(tag)) {
      reportUnrecognizedTag(tag.name);
    }
  }

  if (std::strcmp(quota, kNoQuota) == 0) return 0;
  if (!haveQuota || !haveName || refused) return 0;
  if (isAd ? adUsers : arborUsers) addUserQuota(volume, name, quota, isAd);
  return 0;
}

int addUserQuota(const char *volume, const char *userName, const char *quota, int isAd) {
  if (!requestAccepted(kUserQuotaReply, buildUserQuota(volume, userName, quota, isAd != 0),
                       "Error adding user quotas for %s to %s: %s(%s)\n", userName, volume))
    return kOwnFailure;
  if (showActions)
    std::printf("User %s assigned a quota of %s on volume %s.\n", userName, quota, volume);
  return 0;
}
