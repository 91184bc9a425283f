// The searches and the in-place compaction that the one-pass info-file filters are built from.
// Positions are offsets into the text as read; the compaction only ever writes before the
// position the searches have reached.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "save/tag_search.h"

namespace info_scan {

inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Does the prepared tag start at `at`, with `available` bytes of text from there? Compares words,
// not bytes, where it can.
inline bool startsHere(const PreparedTag &tag, const char *at, std::size_t available) {
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
      const std::size_t start = position >= clearFrom_ && position < clearTo_ ? clearTo_ : position;
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
inline std::size_t removalEnd(const char *text, std::size_t size, std::size_t endTagEnd) {
  return endTagEnd < size && text[endTagEnd] == '\n' ? endTagEnd + 1 : endTagEnd;
}

}  // namespace info_scan
