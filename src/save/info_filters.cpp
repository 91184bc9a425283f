#include "save/info_filters.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "save/filter_search.h"

// Both filters decide what to drop in one forward pass and close the gaps as they go. Every
// search looks forward from the current element, and everything from the current element on is
// still the text as it was read, so offsets into the original text decide exactly what the
// element-by-element removal would: the bytes written over by the compaction all lie before the
// current element and are never searched again.

using info_scan::Compactor;
using info_scan::ForwardSearch;
using info_scan::kNone;
using info_scan::removalEnd;

void removeRange(char *position, int count, int *length) {
  if (position[count] == '\n') ++count;
  const std::size_t rest = std::strlen(position + count);
  std::memmove(position, position + count, rest + 1);
  *length -= count;
}

namespace {

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
      status = -1;
      break;
    }
    const std::size_t next = removalEnd(text, size, e + endTagLength);
    compactor.drop(p, next);
    p = starts.fromNear(next);
  }
  const std::size_t dropped = compactor.finish(size);
  *length -= static_cast<int>(dropped);
  *sizeLeft = size - dropped;
  return status;
}

}  // namespace

int removeElements(char *text, int *length, const char *startName, const char *endName) {
  if (text == nullptr || length == nullptr || startName == nullptr || endName == nullptr) return -1;
  text[*length] = '\0';
  std::size_t sizeLeft = 0;
  return removeElementsOfSize(text, length, std::strlen(text), startName, endName, &sizeLeft);
}

int removeElementsWhole(char *text, int *length, const char *startName, const char *endName) {
  if (text == nullptr || length == nullptr || startName == nullptr || endName == nullptr) return -1;
  text[*length] = '\0';
  std::size_t sizeLeft = 0;
  return removeElementsOfSize(text, length, static_cast<std::size_t>(*length), startName, endName,
                              &sizeLeft);
}

namespace {

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
    const std::size_t e = ends.fromNoting(p, pathOpens, pathCloses);
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
      next = starts.fromNear(e);
    } else {
      const std::size_t end = removalEnd(text, size, e + endTagLength);
      compactor.drop(p, end);
      next = starts.fromNear(end);
    }
    if (next == kNone) break;
    p = next;
  }
  const std::size_t dropped = compactor.finish(size);
  *length -= static_cast<int>(dropped);
  return size - dropped;
}

}  // namespace

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
