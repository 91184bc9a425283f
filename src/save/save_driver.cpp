#include "save/save_driver.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "cli/options.h"
#include "document/completion_codes.h"
#include "document/records.h"
#include "save/info_file.h"
#include "save/invalid_trustees.h"
#include "save/rxl_import.h"
#include "save/save_plan.h"

namespace {

constexpr const char *kTrusteeInfoFile = "TrusteeInfo.xml";

// Everything already written stays; the document is then left without its closing tag.
int terminate(int code) {
  std::fprintf(stderr, "An error has caused early termination. ccode=%d\n", code);
  return code;
}

// One unbuffered write of a fixed text: 0, or the errno after the message.
int writeText(const char *text, std::size_t size) {
  if (write(1, text, size) < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error %m writing to output file\n");
    return error;
  }
  return 0;
}

// Writes the trustee section the plan asks for. Returns true to go on; false when the save ends,
// with the completion code in *code.
bool writeTrusteeSection(TrusteeSource source, const char *volume, const char *infoDir,
                         const char *rxlTrusteeFile, const char *path, int *code) {
  *code = 0;
  switch (source) {
  case TrusteeSource::none: return true;
  case TrusteeSource::rxlFile:
    *code = importRxlTrusteeFile(rxlTrusteeFile, path);
    return *code == 0;
  case TrusteeSource::removalThenInfoFile:
    // The removal reports success as 1; anything else ends the save with that code, so a
    // removal that reports 0 ends it with code 0.
    if (int removed = removeInvalidTrustees(volume, infoDir, kTrusteeInfoFile, path);
        removed != kRemovalSucceeded) {
      *code = removed;
      return false;
    }
    [[fallthrough]];
  case TrusteeSource::infoFile:
    *code = extractInfoFile(infoDir, kTrusteeInfoFile, path, "file");
    return *code == 0;
  }
  return true;
}

// Directory quota paths are stored with backslashes.
void toBackslashes(char *path) {
  for (; *path != '\0'; ++path)
    if (*path == '/') *path = '\\';
}

}  // namespace

int saveMetadata(const char *volume, const char *infoDir, const char *mask,
                 const char *rxlTrusteeFile, char *path) {
  MaskFlags flags;
  if (int status = parseMask(mask, flags); status != 0) return status;
  const SavePlan plan = planSave(flags, rxlTrusteeFile != nullptr);

  if (int status = writeText(kDocumentOpen, sizeof kDocumentOpen - 1); status != 0)
    return terminate(status);
  // A removal that reports 0 ends the save with code 0, after the termination message.
  int code = 0;
  if (!writeTrusteeSection(plan.trustees, volume, infoDir, rxlTrusteeFile, path, &code))
    return terminate(code);
  if (plan.userQuotas) {
    // The path filter never applies to user quotas.
    if (code = extractInfoFile(infoDir, "UserInfo.xml", nullptr, nullptr); code != 0)
      return terminate(code);
  }
  if (plan.dirQuotas) {
    if (path != nullptr) toBackslashes(path);
    if (code = extractInfoFile(infoDir, "DirInfo.xml", path, "directory"); code != 0)
      return terminate(code);
  }
  if (code = writeText(kDocumentClose, sizeof kDocumentClose - 1); code != 0)
    return terminate(code);
  return 0;
}
