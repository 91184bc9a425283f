#include "save/info_filters.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "document/completion_codes.h"
#include "document/tag_search.h"

// Both filters decide what to drop in one forward pass and close the gaps as they go. Every
// search looks forward from the current element, and everything from the current element on is
// still the text as it was read, so offsets into the original text decide exactly what the
// element-by-element removal would: the bytes written over by the compaction all lie before the
// current element and are never searched again.

namespace {

constexpr std::size_t kNone = std::string_view::npos;

// The first occurrence of a fixed text at or after a position. The positions asked for never
// go backwards, so an earlier answer that is still ahead of the position is reused; each byte of
// the text is searched at most once per searched text.
class ForwardSearch {
public:
  ForwardSearch(const char *text, std::size_t size, std::string_view needle)
      : text_(text, size), needle_(needle) {}

  std::size_t from(std::size_t position) {
    if (known_ && (found_ == kNone || found_ >= position)) return found_;
    known_ = true;
    found_ = findTag(text_, needle_, position);
    return found_;
  }

private:
  std::string_view text_;
  std::string_view needle_;
  bool known_ = false;
  std::size_t found_ = kNone;
};

// Closes the gaps of a text in place while the drops are decided in increasing order.
class Compactor {
public:
  explicit Compactor(char *text) : text_(text) {}

  // Drops [begin, end) of the original text; begin is not before the end of the previous drop.
  void drop(std::size_t begin, std::size_t end) {
    keep(begin);
    kept_ = end;
    dropped_ += end - begin;
  }

  // Moves the rest down, terminates the text there and returns the number of bytes dropped.
  std::size_t finish(std::size_t size) {
    keep(size);
    text_[written_] = '\0';
    return dropped_;
  }

private:
  // Moves the kept bytes before `end` down into place.
  void keep(std::size_t end) {
    if (end <= kept_) return;
    if (written_ != kept_) std::memmove(text_ + written_, text_ + kept_, end - kept_);
    written_ += end - kept_;
    kept_ = end;
  }

  char *text_;
  std::size_t kept_ = 0;
  std::size_t written_ = 0;
  std::size_t dropped_ = 0;
};

// End of an element's removal: through the end tag, and the line feed after it.
std::size_t removalEnd(const char *text, std::size_t size, std::size_t endTagEnd) {
  return endTagEnd < size && text[endTagEnd] == '\n' ? endTagEnd + 1 : endTagEnd;
}

// removeElements on a text of known size (the position of its first NUL); also gives the size
// left.
int removeElementsOfSize(char *text, int *length, std::size_t size, const char *startName,
                         const char *endName, std::size_t *sizeLeft) {
  char startTag[kRemoveStartTagMax + 1];
  char endTag[kRemoveEndTagMax + 1];
  std::snprintf(startTag, sizeof startTag, "<%s>", startName);
  std::snprintf(endTag, sizeof endTag, "</%s>", endName);

  const std::size_t endTagLength = std::strlen(endTag);
  ForwardSearch starts(text, size, startTag);
  ForwardSearch ends(text, size, endTag);
  Compactor compactor(text);
  int status = 0;
  for (std::size_t p = starts.from(0); p != kNone;) {
    const std::size_t e = ends.from(p);
    if (e == kNone) {
      std::fprintf(stderr, "Missing end tag : %s\n", endTag);
      status = kOwnFailure;
      break;
    }
    const std::size_t next = removalEnd(text, size, e + endTagLength);
    compactor.drop(p, next);
    p = starts.from(next);
  }
  const std::size_t dropped = compactor.finish(size);
  *length -= static_cast<int>(dropped);
  *sizeLeft = size - dropped;
  return status;
}

// filterByPath on a text of known size (the position of its first NUL); returns the size left in
// place (the unfiltered rest after an element without an end tag included).
std::size_t filterByPathOfSize(char *text, int *length, std::size_t size, const char *path,
                               char *scratch, const char *elementName) {
  scratch[0] = '\0';
  char startTag[kFilterStartTagMax + 1];
  char endTag[kFilterEndTagMax + 1];
  std::snprintf(startTag, sizeof startTag, "<%s>", elementName);
  std::snprintf(endTag, sizeof endTag, "</%s>", elementName);
  const std::size_t valueOffset =
      std::strcmp(elementName, "file") == 0 ? kFilePathValueOffset : kDirectoryPathValueOffset;

  const std::size_t endTagLength = std::strlen(endTag);
  const std::string_view prefix(path);
  ForwardSearch starts(text, size, startTag);
  ForwardSearch ends(text, size, endTag);
  ForwardSearch pathOpens(text, size, "<path>");
  ForwardSearch pathCloses(text, size, "</path>");
  Compactor compactor(text);

  std::size_t p = starts.from(0);
  if (p == kNone) return size;
  for (;;) {
    const std::size_t e = ends.from(p);
    if (e == kNone) {
      // From here on the text stays as it is; the unfiltered rest goes to scratch.
      const std::size_t rest = size - p;
      std::memcpy(scratch, text + p, rest);
      scratch[rest] = '\0';
      const std::size_t dropped = compactor.finish(size);
      *length -= static_cast<int>(dropped + rest);
      return size - dropped;
    }
    bool keep = true;
    const std::size_t open = pathOpens.from(p);
    const std::size_t close = pathCloses.from(p);
    if (open != kNone && close != kNone) {
      // The value is taken to run (distance between the tags - 6) characters (none when the
      // closing tag comes first); it begins with the prefix when it is at least that long and
      // the text there starts with it.
      long long valueLength = static_cast<long long>(close) - static_cast<long long>(open) - 6;
      if (valueLength < 0) valueLength = 0;
      const std::size_t value = open + valueOffset;
      keep = valueLength >= static_cast<long long>(prefix.size()) &&
             (prefix.empty() || (value < size && size - value >= prefix.size() &&
                                 std::memcmp(text + value, prefix.data(), prefix.size()) == 0));
    }
    std::size_t next;
    if (keep) {
      next = starts.from(e);
    } else {
      const std::size_t end = removalEnd(text, size, e + endTagLength);
      compactor.drop(p, end);
      next = starts.from(end);
    }
    if (next == kNone) break;
    p = next;
  }
  const std::size_t dropped = compactor.finish(size);
  *length -= static_cast<int>(dropped);
  return size - dropped;
}

}  // namespace

void removeRange(char *position, int count, int *length) {
  if (position[count] == '\n') ++count;
  const std::size_t rest = std::strlen(position + count);
  std::memmove(position, position + count, rest + 1);
  *length -= count;
}

int removeElements(char *text, int *length, const char *startName, const char *endName) {
  if (text == nullptr || length == nullptr || startName == nullptr || endName == nullptr)
    return kOwnFailure;
  text[*length] = '\0';
  std::size_t sizeLeft = 0;
  return removeElementsOfSize(text, length, std::strlen(text), startName, endName, &sizeLeft);
}

int removeElementsWhole(char *text, int *length, const char *startName, const char *endName) {
  if (text == nullptr || length == nullptr || startName == nullptr || endName == nullptr)
    return kOwnFailure;
  text[*length] = '\0';
  std::size_t sizeLeft = 0;
  return removeElementsOfSize(text, length, static_cast<std::size_t>(*length), startName, endName,
                              &sizeLeft);
}

void filterByPath(char *text, int *length, const char *path, char *scratch,
                  const char *elementName) {
  if (text == nullptr || length == nullptr || path == nullptr || scratch == nullptr ||
      elementName == nullptr || *length < 1)
    return;
  text[*length] = '\0';
  filterByPathOfSize(text, length, std::strlen(text), path, scratch, elementName);
}

std::size_t filterByPathWhole(char *text, int *length, const char *path, char *scratch,
                              const char *elementName) {
  if (text == nullptr || length == nullptr || path == nullptr || scratch == nullptr ||
      elementName == nullptr || *length < 1)
    return length == nullptr || *length < 0 ? 0 : static_cast<std::size_t>(*length);
  text[*length] = '\0';
  return filterByPathOfSize(text, length, static_cast<std::size_t>(*length), path, scratch,
                            elementName);
}
