// The trustee section of a save, generated from the file-sharing server's RXL trustee file: the
// file is read in chunks, cut into blocks of whole lines, and each block goes through a scanner
// whose state carries over from one block to the next.
#include "save/rxl_import.h"
#include "document/completion_codes.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "document/records.h"
#include "document/rights.h"

namespace {

constexpr std::size_t kChunkSize = 8192;
constexpr std::size_t kCarrySize = 32768;  // longest run of bytes without a line end
constexpr std::size_t kRecordSize = 8192;

constexpr std::size_t kMaxPath = 4096;
constexpr std::size_t kMaxName = 768;
constexpr std::size_t kMaxId = 36;
constexpr std::size_t kMaxRights = 32;

constexpr std::string_view kTrusteeOpen = "<trustee path=\"";
constexpr std::string_view kFilterOpen = "<inherited_rights_mask path=\"";
constexpr std::string_view kPathEnd = "\">";
constexpr std::string_view kDocumentEnd = "</volume_trustees>";

enum ScanState { kExpectEntry = 0, kExpectName, kExpectRights, kExpectId, kExpectEntryEnd };

// What the scanner has gathered of the entry in progress. One import per run, so this lives for
// the whole run; an entry may spread over several blocks.
struct Scanner {
  int state = kExpectEntry;
  bool isFilter = false;
  char path[kMaxPath + 1] = "";
  char name[kMaxName + 1] = "";
  char id[kMaxId + 1] = "";
  char letters[kRxlLettersSize] = "";
  char elements[kRxlElementsSize] = "";
};

Scanner scanner;

void parseError(const char *what) {
  std::fprintf(stderr, "XML parsing error in RXL trustee file: %s\n", what);
}

void didNotFind(std::string_view tag) {
  std::fprintf(stderr, "XML parsing error in RXL trustee file: Did not find %.*s\n",
               static_cast<int>(tag.size()), tag.data());
}

void copyText(char *field, std::string_view text) {
  std::memcpy(field, text.data(), text.size());
  field[text.size()] = '\0';
}

// Position of the earliest entry opening at or after `from`, and whether it opens a filter.
std::size_t findEntry(std::string_view text, std::size_t from, bool &isFilter) {
  for (std::size_t at = text.find('<', from); at != std::string_view::npos;
       at = text.find('<', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with(kTrusteeOpen) || rest.starts_with(kFilterOpen)) {
      isFilter = rest.starts_with(kFilterOpen);
      return at;
    }
  }
  return std::string_view::npos;
}

// Takes the text of the element `<tag>` ... `</tag>` found at or after `pos`. The state becomes
// `next` as soon as the opening tag is found, before the text is checked. Returns false after
// the element's message; otherwise `pos` moves past the closing tag.
bool takeElement(std::string_view text, std::size_t &pos, std::string_view open,
                 std::string_view close, std::size_t limit, int next, const char *bad,
                 const char *tooLong, std::string_view &value) {
  const std::size_t at = text.find(open, pos);
  if (at == std::string_view::npos) {
    didNotFind(open);
    return false;
  }
  scanner.state = next;
  const std::size_t start = at + open.size();
  const std::size_t end = text.find(close, start);
  if (end == std::string_view::npos) {
    parseError(bad);
    return false;
  }
  if (end - start > limit) {
    parseError(tooLong);
    return false;
  }
  value = text.substr(start, end - start);
  pos = end + close.size();
  return true;
}

bool scanEntryStart(std::string_view text, std::size_t &pos) {
  bool isFilter = false;
  const std::size_t at = findEntry(text, pos, isFilter);
  if (at == std::string_view::npos) {
    if (!text.substr(text.find('<', pos)).starts_with(kDocumentEnd))
      std::fprintf(stderr, "XML parsing error in RXL trustee file: Did not find %s or %s.\n",
                   kTrusteeOpen.data(), kFilterOpen.data());
    return false;
  }
  scanner.state = isFilter ? kExpectRights : kExpectName;
  scanner.isFilter = isFilter;
  const std::size_t start = at + (isFilter ? kFilterOpen.size() : kTrusteeOpen.size());
  const std::size_t end = text.find(kPathEnd, start);
  if (end == std::string_view::npos) {
    parseError("Bad <trustee> element.");
    return false;
  }
  if (end - start > kMaxPath) {
    parseError("Path name too long.");
    return false;
  }
  copyText(scanner.path, text.substr(start, end - start));
  scanner.name[0] = scanner.id[0] = scanner.letters[0] = scanner.elements[0] = '\0';
  pos = end + kPathEnd.size();
  return true;
}

bool isKept(const char *pathFilter) {
  return pathFilter == nullptr || scanner.path[0] == '\0' ||
         std::strncmp(scanner.path, pathFilter, std::strlen(pathFilter)) == 0;
}

bool scanEntryEnd(std::string_view text, std::size_t &pos, const char *pathFilter, char *record) {
  const std::string_view close = scanner.isFilter ? "</inherited_rights_mask>" : "</trustee>";
  const std::size_t at = text.find(close, pos);
  if (!isKept(pathFilter)) {
    if (at == std::string_view::npos) {
      std::fprintf(stderr, "XML parsing error in RXL trustee file\n");
      return false;
    }
  } else {
    if (at == std::string_view::npos) {
      didNotFind(close);
      return false;
    }
    const int length =
        scanner.isFilter
            ? std::snprintf(record, kRecordSize, kFilterFileRecord, scanner.path, scanner.letters,
                            scanner.elements)
            : std::snprintf(record, kRecordSize, kTrusteeFileRecord, scanner.path, scanner.name,
                            scanner.id, scanner.letters, scanner.elements);
    // The fields' limits keep every record well inside the buffer.
    if (length > 0) {
      const ssize_t written = write(STDOUT_FILENO, record, static_cast<std::size_t>(length));
      static_cast<void>(written);
    }
  }
  pos = at + close.size();
  scanner.state = kExpectEntry;
  return true;
}

// One step of the scanner from `pos`; false ends the scan of the block.
bool scanStep(std::string_view text, std::size_t &pos, const char *pathFilter, char *record) {
  std::string_view value;
  switch (scanner.state) {
  case kExpectEntry: return scanEntryStart(text, pos);
  case kExpectName:
    if (!takeElement(text, pos, "<name>", "</name>", kMaxName, kExpectRights, "Bad <name> element.",
                     "User name too long.", value))
      return false;
    copyText(scanner.name, value);
    return true;
  case kExpectRights:
    if (!takeElement(text, pos, "<rights>", "</rights>", kMaxRights,
                     scanner.isFilter ? kExpectEntryEnd : kExpectId, "Bad <rights> element.",
                     "Rights entry too long.", value))
      return false;
    convertRxlRights(value.data(), static_cast<int>(value.size()), scanner.letters,
                     scanner.elements);
    return true;
  case kExpectId:
    if (!takeElement(text, pos, "<object_guid>", "</object_guid>", kMaxId, kExpectEntryEnd,
                     "Bad <object_guid> element.", "ID entry too long.", value))
      return false;
    copyText(scanner.id, value);
    return true;
  default: return scanEntryEnd(text, pos, pathFilter, record);
  }
}

}  // namespace

void resetRxlImportScanner() { scanner = Scanner{}; }

void parseRxlTrusteeBlock(char *block, int length, const char *pathFilter) {
  char *record = static_cast<char *>(std::malloc(kRecordSize));
  if (record == nullptr) {
    parseError("Unable to allocate the temporary buffer.");
    return;
  }
  block[length < 0 ? 0 : length] = '\0';
  // The block is text: it ends at its length, or at a NUL byte before it.
  const std::string_view text(block);
  std::size_t pos = 0;
  while (text.find('<', pos) != std::string_view::npos) {
    if (!scanStep(text, pos, pathFilter, record)) break;
  }
  std::free(record);
}

int importRxlTrusteeFile(const char *fileName, const char *pathFilter) {
  const int fd = open(fileName, O_RDONLY);
  if (fd < 0) {
    std::fprintf(stderr, "Unable to open %s.  err=%m\n", fileName);
    return kOwnFailure;
  }
  if (write(STDOUT_FILENO, kTrusteeSectionOpen, 14) < 0) {
    const int error = errno;
    std::fprintf(stderr, "Error %m writing to output file\n");
    close(fd);
    return error;
  }

  int result = 0;
  char chunk[kChunkSize];
  char carry[kCarrySize + 1];
  std::size_t carried = 0;
  for (;;) {
    const ssize_t got = read(fd, chunk, sizeof chunk);
    if (got <= 0) {
      const int error = errno;
      // A file that does not end with a line end leaves its last line here.
      if (carried > 0) parseRxlTrusteeBlock(carry, static_cast<int>(carried), pathFilter);
      if (got < 0) {
        errno = error;
        std::fprintf(stderr, "Error %m reading information from %s\n", fileName);
        result = error;
      }
      break;
    }
    const std::size_t size = static_cast<std::size_t>(got);
    const void *lastLineEnd = memrchr(chunk, '\n', size);
    const std::size_t whole =
        lastLineEnd == nullptr ? 0 : static_cast<const char *>(lastLineEnd) - chunk + 1;
    if (carried + (whole > 0 ? whole : size) > kCarrySize) {
      std::fprintf(stderr, "Saved line that was too long to process\n");
      result = kLineTooLong;
      break;
    }
    if (whole == 0) {
      std::memcpy(carry + carried, chunk, size);
      carried += size;
      continue;
    }
    std::memcpy(carry + carried, chunk, whole);
    parseRxlTrusteeBlock(carry, static_cast<int>(carried + whole), pathFilter);
    carried = size - whole;
    std::memcpy(carry, chunk + whole, carried);
  }

  // The closing tag goes out without its line end, as it always has.
  while (write(STDOUT_FILENO, kTrusteeSectionClose, 14) < 0) {
    result = errno;
    std::fprintf(stderr, "Error %m writing to output file\n");
  }
  close(fd);
  return result;
}
