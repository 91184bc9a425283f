#include "restore/trustee_restore.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"
#include "channel/console_runner.h"
#include "document/completion_codes.h"
#include "document/plain_entries.h"
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

// readTag, with the fast step for the tags between plain entries outside RXL mode.
int nextTag(Tag &tag, const char *label, int rxlMode) {
  if (!rxlMode && readPlainTag(tag)) return 0;
  return readTag(tag, label);
}

// What a file element has given so far: its full path (the base path, then the path's text read
// in place behind it, into a field of the usual size, so that the full path needs no copy), and
// whether its entries are to be skipped.
struct FileEntry {
  char fullPath[kBasePathSize + kPathTextSize];
  PathState pathState = PathState::missing;
  int skip = 0;
};

// The path's text has been read behind the base path (baseLength bytes): checks its length and
// the filter.
void takePath(FileEntry &file, std::size_t baseLength, bool tooLong, const regex_t *filter) {
  const std::size_t pathLength = std::strlen(file.fullPath + baseLength);
  if (tooLong || baseLength + pathLength >= kPathTextSize) {
    reportValueTooLong("path");
    file.pathState = PathState::refused;
    return;
  }
  file.pathState = PathState::ready;
  if (filter != nullptr) file.skip = regexec(filter, file.fullPath, 0, nullptr, 0) != 0 ? 1 : 0;
}

// Puts the base path at the start of file's full path; returns its length.
std::size_t startFullPath(FileEntry &file, const char *basePath) {
  const std::size_t baseLength = strnlen(basePath, kBasePathSize - 1);
  std::memcpy(file.fullPath, basePath, baseLength);
  return baseLength;
}

// Reads a path element's text (after its start tag) into file. Returns 0 or a reader failure.
int readPath(FileEntry &file, const char *basePath, const regex_t *filter, int rxlMode) {
  const std::size_t baseLength = startFullPath(file, basePath);
  char *const pathText = file.fullPath + baseLength;
  bool tooLong = false;
  if (const int result = readContents(pathText, kPathTextSize, &tooLong); result != 0)
    return result;
  goPastEndTag("path");
  if (rxlMode) unescapeXml(pathText);
  takePath(file, baseLength, tooLong, filter);
  return 0;
}

// Reads a file's zid and path at once when they are in the plain form a save writes.
void readPlainHead(FileEntry &file, const char *basePath, const regex_t *filter) {
  const std::size_t baseLength = startFullPath(file, basePath);
  if (readPlainFileHead(file.fullPath + baseLength, kPathTextSize))
    takePath(file, baseLength, false, filter);
  else
    file.fullPath[0] = '\0';
}

// An inheritedRightsFilter element of the file (after its start tag).
void readFilter(const FileEntry &file, int rxlMode) {
  if (file.pathState == PathState::missing) reportNoPath("inheritedRightsFilter");
  char irf[kRightsListSize];
  bool tooLong = false;
  if (rxlMode || !readPlainRights(irf, "</inheritedRightsFilter>"))
    getRights(irf, "inheritedRightsFilter", sizeof irf, &tooLong);
  if (file.pathState != PathState::ready || file.skip) return;
  if (tooLong) {
    reportValueTooLong("inheritedRightsFilter");
  } else if (rxlMode) {
    addRxlInheritedRightsFilter(file.fullPath, irf);
  } else {
    modifyInheritedRightsFilter(file.fullPath, irf);
  }
}

// The fields of a trustee element.
struct TrusteeFields {
  char name[kNameTextSize];
  char id[kIdTextSize];
  char rights[kRightsListSize];
};

// A name read whole (or too long, tooLong) and its tree name replaced under -t: false after the
// message when it cannot be sent.
bool acceptName(char *name, bool tooLong, const char *tree) {
  if (tooLong || !replaceTreeName(name, tree, kNameTextSize)) {
    reportValueTooLong("name");
    return false;
  }
  return true;
}

// Reads a trustee element's children up to its end tag, tag by tag. *refused is set when a value
// does not fit its field. Returns 0 or a reader failure.
int readTrusteeElements(TrusteeFields &fields, const char *tree, bool *refused) {
  fields.name[0] = fields.id[0] = fields.rights[0] = '\0';
  Tag tag;
  for (;;) {
    if (const int result = readTag(tag, "processATrustee"); result != 0) return result;
    bool tooLong = false;
    if (tag.isEndTag != 0) {
      if (tag.is("trustee")) return 0;
    } else if (tag.is("name")) {
      const int result = readContents(fields.name, sizeof fields.name, &tooLong);
      if (result != 0) return result;
      if (!acceptName(fields.name, tooLong, tree)) *refused = true;
      goPastEndTag("name");
    } else if (tag.is("rights")) {
      getRights(fields.rights, "rights", sizeof fields.rights, &tooLong);
      if (tooLong) {
        reportValueTooLong("rights");
        *refused = true;
      }
    } else if (tag.is("id")) {
      const int result = readContents(fields.id, sizeof fields.id, &tooLong);
      if (result != 0) return result;
      if (tooLong) {
        reportValueTooLong("id");
        *refused = true;
      }
      goPastEndTag("id");
    } else if (!tag.is("zid")) {
      reportUnrecognizedTag(tag.name);
    }
  }
}

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
    if (const int result = nextTag(tag, "restoreTrustees", rxlMode); result != 0) return result;
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
  FileEntry file;
  file.fullPath[0] = '\0';
  if (!rxlMode) readPlainHead(file, basePath, filter);
  for (;;) {
    if (const int result = nextTag(tag, "processFileTrusteeInfo", rxlMode); result != 0)
      return result;
    if (tag.isEndTag != 0) {
      if (tag.is("file")) return 0;
    } else if (tag.is("path")) {
      if (const int result = readPath(file, basePath, filter, rxlMode); result != 0) return result;
    } else if (tag.is("trustee") || tag.is(kAdTrusteeElement)) {
      if (file.pathState == PathState::missing) reportNoPath(tag.name);
      const int isAd = tag.is(kAdTrusteeElement) ? 1 : 0;
      const int skipThis = file.pathState == PathState::ready ? file.skip : 1;
      if (const int result = processATrustee(file.fullPath, tree, skipThis, rxlMode, isAd);
          result != 0)
        return result;
    } else if (tag.is("inheritedRightsFilter")) {
      readFilter(file, rxlMode);
    } else if (!tag.is("zid") && !tag.is("id")) {
      reportUnrecognizedTag(tag.name);
    }
  }
}

int processATrustee(const char *fullPath, const char *tree, int skip, int rxlMode, int isAd) {
  TrusteeFields fields;
  char *const name = fields.name;
  // A value that did not fit its field: the trustee is not restored.
  bool refused = false;
  if (!rxlMode && readPlainTrustee(fields.name, fields.id, fields.rights)) {
    refused = !acceptName(fields.name, false, tree);
  } else if (const int result = readTrusteeElements(fields, tree, &refused); result != 0) {
    return result;
  }

  if (skip || refused) return 0;
  if (rxlMode && !isAd) {
    if (name[0] == '\0') return kOwnFailure;
    addRxlTrustee(fullPath, name, fields.rights);
    return 0;
  }
  if (!isAd && name[0] != '\0') {
    if (arborUsers) addTrustee(fullPath, nullptr, name, fields.rights, 0);
    return 0;
  }
  if (fields.id[0] == '\0' || !isAd) return kOwnFailure;
  if (adUsers) addTrustee(fullPath, fields.id, name, fields.rights, 1);
  return 0;
}

int addTrustee(const char *fullPath, const char *id, const char *name, const char *rights,
               int isAd) {
  const std::size_t length = buildAddTrustee(
      fullPath, isAd ? std::string_view(id) : std::string_view(),
      name != nullptr ? std::string_view(name) : std::string_view(), rights, isAd != 0);
  if (!requestAccepted(kAddTrusteeReply, length, "Error adding trustee %s to %s: %s(%s)\n", name,
                       fullPath))
    return kOwnFailure;
  if (showActions) {
    char letters[kRightsLettersSize];
    rightsToLetters(rights, letters, sizeof letters);
    std::printf("Trustee %s added to %s with rights [%s].\n", name, fullPath, letters);
  }
  return kSuccess;
}

int modifyInheritedRightsFilter(const char *fullPath, const char *irf) {
  if (!requestAccepted(kInheritedRightsFilterReply, buildInheritedRightsFilter(fullPath, irf),
                       "Error setting IRF on %s: %s(%s)\n", fullPath))
    return kOwnFailure;
  if (showActions) {
    char letters[kRightsLettersSize];
    rightsToLetters(irf, letters, sizeof letters);
    std::printf("IRF mask [%s] added to %s.\n", letters, fullPath);
  }
  return kSuccess;
}
