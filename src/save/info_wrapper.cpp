#include "save/info_wrapper.h"

#include <cstring>
#include <string_view>

#include "document/tag_search.h"

namespace {

constexpr std::string_view kTags[3] = {"<quillReply>", "</quillReply>", "<result value="};
constexpr std::string_view kResultEnd = "</result>";
constexpr std::size_t kNone = std::string_view::npos;

// The text left while the wrapper is cut out: pieces of the text as given, in order. Nothing
// moves until the cutting is done.
class Pieces {
public:
  Pieces(const char *text, std::size_t size) : text_(text) {
    if (size > 0) pieces_[count_++] = {0, size};
  }

  // The first occurrence of tag in what is left, at or after `from` (positions in what is left).
  std::size_t find(std::string_view tag, std::size_t from) const {
    std::size_t live = 0;
    for (int i = 0; i < count_; ++i) {
      const Piece &piece = pieces_[i];
      const std::size_t length = piece.end - piece.begin;
      if (live + length > from) {
        const std::size_t start = piece.begin + (from > live ? from - live : 0);
        const std::size_t hit = findTag({text_, piece.end}, tag, start);
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

char *stripInfoWrapper(char *text, int *length) {
  Pieces left(text, static_cast<std::size_t>(*length));
  if (const std::size_t open = left.find(kTags[0], 0); open != kNone)
    left.cut(open, kTags[0].size() + 1);
  if (const std::size_t close = left.find(kTags[1], 0); close != kNone)
    left.cut(close, kTags[1].size() + 1);
  if (const std::size_t result = left.find(kTags[2], 0); result != kNone) {
    if (const std::size_t end = left.find(kResultEnd, result); end != kNone)
      left.cut(result, end + kResultEnd.size() - result + 1);
  }
  return left.join(text, length);
}
