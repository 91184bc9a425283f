#include "save/invalid_trustees.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "channel/admin_channel.h"
#include "channel/request_builder.h"
#include "document/records.h"
#include "document/tag_reader.h"
#include "save/identity_library.h"

namespace {

// The name the file system gives a trustee whose user it can no longer resolve.
constexpr char kUnknownName[] = "Unknown(21350)";
constexpr std::size_t kFileNameSize = 4096;  // "<volume>:<path>"
constexpr char kReaderLabel[] = "copyTrustees";
constexpr char kPlainRemoval[] = "removeTrustee";
constexpr char kAdRemoval[] = "removeTrustee type=\"adID\"";

// Closes the info file, the admin command file and frees the joined name on every way out.
// Standard input keeps the info file: the redirection outlives this call on purpose.
struct RemovalResources {
  char *infoFileName = nullptr;
  int infoFd = -1;
  ~RemovalResources() {
    if (infoFd > 0) close(infoFd);  // 0 is standard input itself when it was closed before
    if (adminFd > 0) close(adminFd);
    adminFd = 0;
    std::free(infoFileName);
  }
};

// The walk over one TrusteeInfo document: the flags of the scan and the name being built.
struct TrusteeScan {
  const char *pathFilter = nullptr;
  bool inFile = false;
  bool unknownName = false;
  bool pathTooLong = false;  // the current path did not fit: nothing is sent for its file
  char fileName[kFileNameSize] = {};
  std::size_t pathOffset = 0;  // where the path goes, right after "<volume>:"
};

// Sends one removeTrustee request and reports a refusal; the scan goes on either way.
void removeTrustee(TrusteeScan &scan, const char *form, const char *identifier) {
  const std::size_t length =
      buildTrusteeRemoval(std::strcmp(form, kAdRemoval) == 0, scan.fileName, identifier);
  if (sendRequest(length) != 0) {
    scan.unknownName = false;
    return;
  }
  int result = 0;
  char description[kDescriptionSize] = {};
  char name[kReplyNameSize] = {};
  const int received =
      receiveReply("removeTrustee", &result, sizeof description, description, sizeof name, name);
  scan.unknownName = false;
  if (received != 0 || result != 0)
    std::fprintf(stderr, "Error removing trustee %s from %s: %s(%s)\n", identifier, scan.fileName,
                 description, name);
}

// Reads the current tag's contents; false after "Failed to get the contents of tag <tag>".
bool readTagContents(const char *tag, char *text, std::size_t textSize, bool *tooLong) {
  if (readContents(text, textSize, tooLong) == 0) return true;
  std::fprintf(stderr, "Failed to get the contents of tag %s\n", tag);
  return false;
}

// <path>: the path goes after "<volume>:". Returns false when its contents cannot be read.
bool takePath(TrusteeScan &scan, const char *tag) {
  char *path = scan.fileName + scan.pathOffset;
  bool tooLong = false;
  if (!readTagContents(tag, path, kFileNameSize - scan.pathOffset, &tooLong)) return false;
  scan.pathTooLong = tooLong;
  if (tooLong) {
    std::fprintf(stderr, "Value too long in element %s; entry skipped.\n", tag);
    return true;
  }
  if (scan.pathFilter != nullptr && std::string_view(path).starts_with(scan.pathFilter)) {
    goPastEndTag(tag);
    scan.unknownName = false;
  }
  return true;
}

// <name>: only the exact marker inside a file counts. A name too long for its field cannot be
// the marker, so it is judged without the part that did not fit.
bool takeName(TrusteeScan &scan, const char *tag) {
  char name[kNameTextSize];
  bool tooLong = false;
  if (!readTagContents(tag, name, sizeof name, &tooLong)) return false;
  if (scan.inFile && !tooLong && std::strcmp(name, kUnknownName) == 0) {
    goPastEndTag(tag);
    scan.unknownName = true;
  }
  return true;
}

// <id>: decides whether the trustee goes, and in which form. Returns false when its contents
// cannot be read.
bool takeIdentifier(TrusteeScan &scan, const char *tag) {
  char identifier[kIdTextSize];
  bool tooLong = false;
  if (!readTagContents(tag, identifier, sizeof identifier, &tooLong)) return false;
  if (tooLong) {
    std::fprintf(stderr, "Value too long in element %s; entry skipped.\n", tag);
    scan.unknownName = false;
    return true;
  }
  if (scan.pathTooLong) {
    scan.unknownName = false;
    return true;
  }
  const char *form = nullptr;
  // Only identifiers inside a file are taken for AD SIDs; a failed lookup is the very sign of a
  // trustee whose user is gone.
  if (identifier[0] == 'S' && scan.inFile && !sidNamesExistingUser(identifier))
    form = kAdRemoval;
  else if (scan.unknownName)
    form = kPlainRemoval;
  if (form != nullptr) removeTrustee(scan, form, identifier);
  return true;
}

// Walks the trustee document on standard input. Returns 1 at its end, 0 on a failure that stops
// the walk, and 1 when a name cannot be read (that failure has always counted as a finished scan).
int scanTrustees(const char *volume, const char *pathFilter) {
  TrusteeScan scan;
  scan.pathFilter = pathFilter;
  std::snprintf(scan.fileName, sizeof scan.fileName, "%s:", volume);
  scan.pathOffset = std::strlen(scan.fileName);

  char tag[kTagNameSize] = {};
  unsigned long isEndTag = 0;
  for (;;) {
    const int status = readTag(tag, &isEndTag, kReaderLabel);
    if (status == kEndOfInput) return 1;
    if (status != 0) return 0;  // a read error: the reader has reported it
    if (isEndTag != 0) {
      if (std::strcmp(tag, "file") == 0) scan.inFile = false;
      if (std::strcmp(tag, "name") == 0) scan.unknownName = false;
      continue;
    }
    if (std::strcmp(tag, "file") == 0) {
      scan.inFile = true;
    } else if (std::strcmp(tag, "zid") == 0) {
      goPastEndTag(tag);
    } else if (std::strcmp(tag, "path") == 0) {
      if (!takePath(scan, tag)) return 0;
    } else if (std::strcmp(tag, "name") == 0) {
      if (!takeName(scan, tag)) return 1;
    } else if (std::strcmp(tag, "id") == 0) {
      if (!takeIdentifier(scan, tag)) return 0;
    }
  }
}

}  // namespace

int removeInvalidTrustees(const char *volume, const char *infoDirectory, const char *infoFileName,
                          const char *pathFilter) {
  RemovalResources resources;
  const std::size_t directoryLength = std::strlen(infoDirectory);
  const std::size_t fileLength = std::strlen(infoFileName);
  resources.infoFileName = static_cast<char *>(std::malloc(directoryLength + fileLength + 1));
  if (resources.infoFileName == nullptr) {
    std::fprintf(stderr, "%s Unable to allocate memory\n", "util/trovan/trovan[3201]");
    return 0;
  }
  std::memcpy(resources.infoFileName, infoDirectory, directoryLength);
  std::memcpy(resources.infoFileName + directoryLength, infoFileName, fileLength + 1);

  resources.infoFd = open(resources.infoFileName, O_RDONLY | O_CLOEXEC);
  if (resources.infoFd < 0) {
    std::fprintf(stderr, " %s Failed to open file %s:%m\n", "util/trovan/trovan[3210]",
                 resources.infoFileName);
    return 0;
  }
  // The tag reader reads standard input.
  if (dup2(resources.infoFd, 0) < 0) {
    std::fprintf(stderr, "%s Failed to redirect %s to stdin:%m\n", "util/trovan/trovan[3218]",
                 resources.infoFileName);
    return 0;
  }
  adminFd = 0;
  adminFd = open(kFilesCommandFile, O_RDWR | O_CLOEXEC);
  if (adminFd < 0) {
    std::fprintf(stderr,
                 "Unable to open the admin file for administration ofthe file system.  err=%m\n");
    return 0;
  }
  return scanTrustees(volume, pathFilter);
}

std::size_t buildTrusteeRemoval(bool ad, std::string_view fileName, std::string_view identifier) {
  return buildRequest({kFileRequestOpen, "<trustee><", ad ? kAdRemoval : kPlainRemoval,
                       "><fileName>", fileName, "</fileName><userID>", identifier,
                       "</userID></removeTrustee></trustee>", kFileRequestClose});
}
