#include "save/info_filters.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "save/tag_search.h"

// Both filters decide what to drop in one forward pass and close the gaps as they go. Every
// search looks forward from the current element, and everything from the current element on is
// still the text as it was read, so offsets into the original text decide exactly what the
// element-by-element removal would: the bytes written over by the compaction all lie before the
// current element and are never searched again.

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Does the prepared tag start at `at`, with `available` bytes of text from there? Compares words,
// not bytes, where it can.
bool startsHere(const PreparedTag &tag, const char *at, std::size_t available) {
  if (available < tag.size) return false;
  if (available < 8 || tag.size > 16) return std::memcmp(at, tag.data, tag.size) == 0;
  std::uint64_t word;
  std::memcpy(&word, at, 8);
  if (((word ^ tag.word) & tag.mask) != 0) return false;
  if (tag.size <= 8) return true;
  std::memcpy(&word, at + tag.size - 8, 8);
  return word == tag.tail;
}

// The first occurrence of a fixed text at or after a position. The positions asked for never
// go backwards, so an earlier answer that is still ahead of the position is reused; each byte of
// the text is scanned at most once per searched text.
class ForwardSearch {
 public:
  static constexpr std::size_t kNear = 16;

  ForwardSearch(const char *text, std::size_t size, std::string_view needle)
      : text_(text), size_(size), tag_(prepareTag(needle)) {}

  std::size_t from(std::size_t position) {
    if (known_ && (found_ == kNone || found_ >= position)) return found_;
    known_ = true;
    found_ = kNone;
    if (position <= size_) {
      // Nothing before clearTo_ when the search starts at or after clearFrom_.
      const std::size_t start =
          position >= clearFrom_ && position < clearTo_ ? clearTo_ : position;
      const char *hit = findPreparedTag(tag_, text_ + start, text_ + size_);
      if (hit != nullptr) found_ = static_cast<std::size_t>(hit - text_);
    }
    return found_;
  }

  // from(position), first looking at the next few bytes: a tag that starts with '<' can only
  // start at a '<', so when one of the first '<' there begins it, that is the answer without a
  // search (the next element usually starts right after the previous one).
  std::size_t fromNear(std::size_t position) {
    if (known_ && (found_ == kNone || found_ >= position)) return found_;
    if (tag_.size == 0 || tag_.data[0] != '<') return from(position);
    std::size_t at = position;
    for (const std::size_t stop = position + kNear < size_ ? position + kNear : size_; at < stop;
         ++at) {
      if (text_[at] == '<' && startsHere(tag_, text_ + at, size_ - at)) return at;
    }
    // Nothing starts in [position, at).
    return from(at);
  }

  // from(position), also working out where two other searches' texts first occur from position
  // on, in the same pass: each learns its answer, or how far there is none.
  std::size_t fromNoting(std::size_t position, ForwardSearch &first, ForwardSearch &second) {
    if (known_ && (found_ == kNone || found_ >= position)) return found_;
    if (position > size_ || (position >= clearFrom_ && position < clearTo_)) return from(position);
    const PreparedTag notes[2] = {first.tag_, second.tag_};
    const char *noted[2];
    const char *hit = findTagNoting(tag_, notes, text_ + position, text_ + size_, noted);
    known_ = true;
    found_ = hit != nullptr ? static_cast<std::size_t>(hit - text_) : kNone;
    const std::size_t stop = hit != nullptr ? found_ : size_;
    ForwardSearch *searches[2] = {&first, &second};
    for (int i = 0; i < 2; ++i) {
      if (noted[i] != nullptr)
        searches[i]->learn(position, static_cast<std::size_t>(noted[i] - text_));
      else
        searches[i]->learnNone(position, stop);
    }
    return found_;
  }

 private:
  // The first occurrence from `position` on is `at`.
  void learn(std::size_t position, std::size_t at) {
    if (known_ && found_ != kNone && found_ >= position) return;
    known_ = true;
    found_ = at;
  }
  // No occurrence starts in [position, stop).
  void learnNone(std::size_t position, std::size_t stop) {
    if (known_ && (found_ == kNone || found_ >= position)) return;
    known_ = false;
    clearFrom_ = position;
    clearTo_ = stop;
  }

  const char *text_;
  std::size_t size_;
  PreparedTag tag_;
  bool known_ = false;
  std::size_t found_ = kNone;
  std::size_t clearFrom_ = 0;
  std::size_t clearTo_ = 0;
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

  // Moves the kept bytes before `end` down into place; returns where original offset `end` lands.
  std::size_t keep(std::size_t end) {
    if (end > kept_) {
      if (written_ != kept_) std::memmove(text_ + written_, text_ + kept_, end - kept_);
      written_ += end - kept_;
      kept_ = end;
    }
    return written_;
  }

  // Moves the rest down, terminates the text there and returns the number of bytes dropped.
  std::size_t finish(std::size_t size) {
    keep(size);
    text_[written_] = '\0';
    return dropped_;
  }

 private:
  char *text_;
  std::size_t kept_ = 0;
  std::size_t written_ = 0;
  std::size_t dropped_ = 0;
};

// End of an element's removal: through the end tag, and the line feed after it.
std::size_t removalEnd(const char *text, std::size_t size, std::size_t endTagEnd) {
  return endTagEnd < size && text[endTagEnd] == '\n' ? endTagEnd + 1 : endTagEnd;
}

}  // namespace

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
  return removeElementsOfSize(text, length, static_cast<std::size_t>(*length), startName,
                              endName, &sizeLeft);
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
