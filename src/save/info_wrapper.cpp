#include "save/info_wrapper.h"

#include <cstring>
#include <string_view>

#include "save/tag_search.h"

namespace {

constexpr std::string_view kTags[3] = {"<quillReply>", "</quillReply>", "<result value="};
constexpr std::string_view kResultEnd = "</result>";
constexpr std::size_t kNone = WrapperTags::kNotFound;
// A search for which the first occurrence in the text is not known.
constexpr std::size_t kUnknown = kNone - 1;

// The text left while the wrapper is cut out: pieces of the text as given, in order. Nothing
// moves until the cutting is done, so positions in the text as given stay valid for the hints.
class Pieces {
public:
  Pieces(const char *text, std::size_t size) : text_(text) {
    if (size > 0) pieces_[count_++] = {0, size};
  }

  // The first occurrence of tag in what is left, at or after `from` (positions in what is left).
  // `first` is where the tag first occurs in the text as given (kNone: nowhere), or kUnknown.
  std::size_t find(std::string_view tag, std::size_t from, std::size_t first) const {
    std::size_t live = 0;
    for (int i = 0; i < count_; ++i) {
      const Piece &piece = pieces_[i];
      const std::size_t length = piece.end - piece.begin;
      if (live + length > from) {
        // Inside the piece: the hint answers unless the piece starts after it.
        const std::size_t start = piece.begin + (from > live ? from - live : 0);
        std::size_t hit = kNone;
        if (first == kUnknown || (first != kNone && first < start)) {
          if (const char *found = findTag(text_ + start, text_ + piece.end, tag); found != nullptr)
            hit = static_cast<std::size_t>(found - text_);
        } else if (first != kNone && first + tag.size() <= piece.end) {
          hit = first;
        }
        if (hit != kNone) return live + (hit - piece.begin);
      }
      live += length;
      // Across the join after the piece: places that start before it and run past it.
      if (i + 1 < count_) {
        std::size_t at = live >= tag.size() - 1 ? live - (tag.size() - 1) : 0;
        for (at = at < from ? from : at; at < live; ++at)
          if (tagAt(at, tag)) return at;
      }
    }
    return kNone;
  }

  // Removes `count` characters at `at` (fewer when the text ends first).
  void cut(std::size_t at, std::size_t count) {
    Piece kept[kMaxPieces];
    int keptCount = 0;
    std::size_t live = 0;
    const std::size_t stop = at + count;
    for (int i = 0; i < count_; ++i) {
      const Piece &piece = pieces_[i];
      const std::size_t length = piece.end - piece.begin;
      if (at > live) {
        const std::size_t before = at - live < length ? at - live : length;
        kept[keptCount++] = {piece.begin, piece.begin + before};
      }
      if (stop < live + length) {
        const std::size_t skip = stop > live ? stop - live : 0;
        kept[keptCount++] = {piece.begin + skip, piece.end};
      }
      live += length;
    }
    count_ = 0;
    for (int i = 0; i < keptCount; ++i)
      if (kept[i].end > kept[i].begin) pieces_[count_++] = kept[i];
  }

  // Moves what is left into one piece, moving all but the longest piece; terminates it.
  char *join(char *text, int *length) const {
    if (count_ == 0) {
      text[0] = '\0';
      *length = 0;
      return text;
    }
    int longest = 0;
    for (int i = 1; i < count_; ++i)
      if (pieces_[i].end - pieces_[i].begin > pieces_[longest].end - pieces_[longest].begin)
        longest = i;
    std::size_t begin = pieces_[longest].begin;
    for (int i = longest - 1; i >= 0; --i) {
      const std::size_t size = pieces_[i].end - pieces_[i].begin;
      begin -= size;
      std::memmove(text + begin, text + pieces_[i].begin, size);
    }
    std::size_t end = pieces_[longest].end;
    for (int i = longest + 1; i < count_; ++i) {
      const std::size_t size = pieces_[i].end - pieces_[i].begin;
      std::memmove(text + end, text + pieces_[i].begin, size);
      end += size;
    }
    text[end] = '\0';
    *length = static_cast<int>(end - begin);
    return text + begin;
  }

private:
  // One piece at the start; each of the three cuts splits at most one piece in two.
  static constexpr int kMaxPieces = 8;
  struct Piece {
    std::size_t begin;
    std::size_t end;
  };

  // Does tag start at position `at` of what is left?
  bool tagAt(std::size_t at, std::string_view tag) const {
    std::size_t matched = 0;
    std::size_t live = 0;
    for (int i = 0; i < count_; ++i) {
      const Piece &piece = pieces_[i];
      const std::size_t length = piece.end - piece.begin;
      if (at + matched < live + length) {
        for (std::size_t offset = at + matched - live; offset < length; ++offset) {
          if (text_[piece.begin + offset] != tag[matched]) return false;
          if (++matched == tag.size()) return true;
        }
      }
      live += length;
    }
    return false;
  }

  const char *text_;
  Piece pieces_[kMaxPieces];
  int count_ = 0;
};

}  // namespace

std::size_t WrapperTagFinder::scan(const char *text, std::size_t previous, std::size_t size) {
  std::size_t nul = kNone;
  // The closing tag lies at the far end of the text: it is looked for in the same pass as the NUL.
  if (first_[1] == kNone) {
    static const PreparedTag close = prepareTag(kTags[1]);
    const NulAndTag found = findNulAndTag(close, text + next_[1], text + previous, text + size);
    if (found.nul != nullptr) nul = static_cast<std::size_t>(found.nul - text);
    if (found.tag != nullptr) first_[1] = static_cast<std::size_t>(found.tag - text);
  } else if (const void *found = std::memchr(text + previous, '\0', size - previous);
             found != nullptr) {
    nul = static_cast<std::size_t>(static_cast<const char *>(found) - text);
  }
  const std::size_t end = nul != kNone ? nul : size;
  for (int i = 0; i < 3; ++i) {
    const std::string_view tag = kTags[i];
    if (first_[i] == kNone && i != 1) {
      if (const char *hit = findTag(text + next_[i], text + end, tag); hit != nullptr)
        first_[i] = static_cast<std::size_t>(hit - text);
    }
    // A tag that starts in the last few bytes may still be completed by the next piece.
    if (first_[i] == kNone && end >= tag.size() && end - tag.size() + 1 > next_[i])
      next_[i] = end - tag.size() + 1;
  }
  return nul;
}

WrapperTags WrapperTagFinder::found(std::size_t length) const {
  std::size_t kept[3];
  for (int i = 0; i < 3; ++i)
    kept[i] = first_[i] != kNone && first_[i] + kTags[i].size() <= length ? first_[i] : kNone;
  return {kept[0], kept[1], kept[2]};
}

char *stripInfoWrapper(char *text, int *length, const WrapperTags &first) {
  Pieces left(text, static_cast<std::size_t>(*length));
  if (const std::size_t open = left.find(kTags[0], 0, first.open); open != kNone)
    left.cut(open, kTags[0].size() + 1);
  if (const std::size_t close = left.find(kTags[1], 0, first.close); close != kNone)
    left.cut(close, kTags[1].size() + 1);
  if (const std::size_t result = left.find(kTags[2], 0, first.result); result != kNone) {
    if (const std::size_t end = left.find(kResultEnd, result, kUnknown); end != kNone)
      left.cut(result, end + kResultEnd.size() - result + 1);
  }
  return left.join(text, length);
}
