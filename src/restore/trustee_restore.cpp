#include "restore/trustee_restore.h"

#include <cstdio>
#include <cstring>

#include "channel/admin_channel.h"
#include "channel/console_runner.h"
#include "document/completion_codes.h"
#include "document/records.h"
#include "document/rights.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/xml_text.h"
#include "restore/entry_messages.h"
#include "restore/restore_requests.h"
#include "restore/rxl_restore.h"
#include "restore/section_restore.h"

namespace {

// Where a file element stands with its path.
enum class PathState { missing, refused, ready };

}  // namespace

int restoreTrustees(char *basePath, const regex_t *filter, const char *tree, int rxlMode) {
  adminFd = 0;
  if (!rxlMode) {
    return restoreSection(kFilesCommandFile, "the file system", [basePath, filter, tree] {
      return walkTrusteeSection(basePath, filter, tree, 0);
    });
  }
  if (checkRxlVolume(basePath) != 0) {
    std::fprintf(stderr, "RXL volume not found.\n");
    return kOwnFailure;
  }
  const std::size_t length = std::strlen(basePath);
  if (length + 1 < kBasePathSize) {
    basePath[length] = ':';
    basePath[length + 1] = '\0';
  }
  return walkTrusteeSection(basePath, filter, tree, rxlMode);
}

int walkTrusteeSection(const char *basePath, const regex_t *filter, const char *tree, int rxlMode) {
  Tag tag;
  for (;;) {
    if (const int result = readTag(tag, "restoreTrustees"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("trusteeInfo")) return 0;
    } else if (tag.is("file")) {
      if (const int result = processFileTrusteeInfo(basePath, filter, tree, rxlMode); result != 0)
        return result;
    } else {
      reportUnrecognizedTag(tag.name);
    }
  }
}

int processFileTrusteeInfo(const char *basePath, const regex_t *filter, const char *tree,
                           int rxlMode) {
  Tag tag;
  // The base path, then the path's text read in place behind it (into a field of the usual
  // size), so that the full path needs no copy.
  char fullPath[kBasePathSize + kPathTextSize];
  char irf[kRightsListSize];
  fullPath[0] = '\0';
  PathState pathState = PathState::missing;
  int skip = 0;
  for (;;) {
    if (const int result = readTag(tag, "processFileTrusteeInfo"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("file")) return 0;
    } else if (tag.is("path")) {
      const std::size_t baseLength = strnlen(basePath, kBasePathSize - 1);
      std::memcpy(fullPath, basePath, baseLength);
      char *const pathText = fullPath + baseLength;
      bool tooLong = false;
      if (const int result = readContents(pathText, kPathTextSize, &tooLong); result != 0)
        return result;
      goPastEndTag("path");
      if (rxlMode) unescapeXml(pathText);
      const std::size_t pathLength = std::strlen(pathText);
      if (tooLong || baseLength + pathLength >= kPathTextSize) {
        reportValueTooLong("path");
        pathState = PathState::refused;
        continue;
      }
      pathState = PathState::ready;
      if (filter != nullptr) skip = regexec(filter, fullPath, 0, nullptr, 0) != 0 ? 1 : 0;
    } else if (tag.is("trustee") || tag.is(kAdTrusteeElement)) {
      if (pathState == PathState::missing) reportNoPath(tag.name);
      const int isAd = tag.is(kAdTrusteeElement) ? 1 : 0;
      const int skipThis = pathState == PathState::ready ? skip : 1;
      if (const int result = processATrustee(fullPath, tree, skipThis, rxlMode, isAd); result != 0)
        return result;
    } else if (tag.is("inheritedRightsFilter")) {
      if (pathState == PathState::missing) reportNoPath(tag.name);
      bool tooLong = false;
      getRights(irf, "inheritedRightsFilter", sizeof irf, &tooLong);
      if (pathState != PathState::ready || skip) continue;
      if (tooLong) {
        reportValueTooLong("inheritedRightsFilter");
      } else if (rxlMode) {
        addRxlInheritedRightsFilter(fullPath, irf);
      } else {
        modifyInheritedRightsFilter(fullPath, irf);
      }
    } else if (!tag.is("zid") && !tag.is("id")) {
      reportUnrecognizedTag(tag.name);
    }
  }
}

int processATrustee(const char *fullPath, const char *tree, int skip, int rxlMode, int isAd) {
  Tag tag;
  char name[kNameTextSize];
  char id[kIdTextSize];
  char rights[kRightsListSize];
  name[0] = '\0';
  id[0] = '\0';
  rights[0] = '\0';
  // A value that did not fit its field: the trustee is not restored.
  bool refused = false;
  for (;;) {
    if (const int result = readTag(tag, "processATrustee"); result != 0) return result;
    if (tag.isEndTag != 0) {
      if (tag.is("trustee")) break;
    } else if (tag.is("name")) {
      bool tooLong = false;
      if (const int result = readContents(name, sizeof name, &tooLong); result != 0) return result;
      if (tooLong || !replaceTreeName(name, tree, sizeof name)) {
        reportValueTooLong("name");
        refused = true;
      }
      goPastEndTag("name");
    } else if (tag.is("rights")) {
      bool tooLong = false;
      getRights(rights, "rights", sizeof rights, &tooLong);
      if (tooLong) {
        reportValueTooLong("rights");
        refused = true;
      }
    } else if (tag.is("id")) {
      bool tooLong = false;
      if (const int result = readContents(id, sizeof id, &tooLong); result != 0) return result;
      if (tooLong) {
        reportValueTooLong("id");
        refused = true;
      }
      goPastEndTag("id");
    } else if (!tag.is("zid")) {
      reportUnrecognizedTag(tag.name);
    }
  }

  if (skip || refused) return 0;
  if (rxlMode && !isAd) {
    if (name[0] == '\0') return kOwnFailure;
    addRxlTrustee(fullPath, name, rights);
    return 0;
  }
  if (!isAd && name[0] != '\0') {
    if (arborUsers) addTrustee(fullPath, nullptr, name, rights, 0);
    return 0;
  }
  if (id[0] == '\0' || !isAd) return kOwnFailure;
  if (adUsers) addTrustee(fullPath, id, name, rights, 1);
  return 0;
}

int addTrustee(const char *fullPath, const char *id, const char *name, const char *rights,
               int isAd) {
  const std::size_t length =
      buildAddTrustee(fullPath, isAd ? id : "", name ? name : "", rights, isAd != 0);
  Reply reply;
  if (exchangeRequest(kAddTrusteeReply, reply, length) != 0) return kOwnFailure;
  if (reply.result != 0) {
    std::fprintf(stderr, "Error adding trustee %s to %s: %s(%s)\n", name, fullPath,
                 reply.description, reply.name);
    return kOwnFailure;
  }
  if (showActions) {
    char letters[kRightsLettersSize];
    rightsToLetters(rights, letters, sizeof letters);
    std::printf("Trustee %s added to %s with rights [%s].\n", name, fullPath, letters);
  }
  return kSuccess;
}

int modifyInheritedRightsFilter(const char *fullPath, const char *irf) {
  const std::size_t length = buildInheritedRightsFilter(fullPath, irf);
  Reply reply;
  if (exchangeRequest(kInheritedRightsFilterReply, reply, length) != 0) return kOwnFailure;
  if (reply.result != 0) {
    std::fprintf(stderr, "Error setting IRF on %s: %s(%s)\n", fullPath, reply.description,
                 reply.name);
    return kOwnFailure;
  }
  if (showActions) {
    char letters[kRightsLettersSize];
    rightsToLetters(irf, letters, sizeof letters);
    std::printf("IRF mask [%s] added to %s.\n", letters, fullPath);
  }
  return kSuccess;
}
