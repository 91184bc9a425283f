// Cutting the reply wrapper out of an info file's text without searching the whole text again:
// the wrapper's tags are looked for while the text is read, a piece at a time.
#pragma once

#include <cstddef>

// Where the wrapper's tags first occur in a text, or kNotFound.
struct WrapperTags {
  static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);
  std::size_t open = kNotFound;    // <quillReply>
  std::size_t close = kNotFound;   // </quillReply>
  std::size_t result = kNotFound;  // <result value=
};

// Finds the wrapper's tags, and the NUL that ends the text, in a text that arrives a piece at a
// time, each piece searched while it is still in the cache. A tag cut across two pieces is found
// when its second part arrives.
class WrapperTagFinder {
public:
  // The text now holds `size` bytes, the ones from `previous` on new, with no NUL before them.
  // Searches what is new; returns the position of the first NUL in it, or WrapperTags::kNotFound.
  // Once a NUL is found the text ends there: scan is not called again.
  std::size_t scan(const char *text, std::size_t previous, std::size_t size);
  // The first occurrences that lie whole within the text's first `length` bytes.
  WrapperTags found(std::size_t length) const;

private:
  std::size_t next_[3] = {0, 0, 0};  // where the next search for each tag starts
  std::size_t first_[3] = {WrapperTags::kNotFound, WrapperTags::kNotFound, WrapperTags::kNotFound};
};

// Cuts the reply wrapper out of text[0, *length) and gives the same text as
// stripReplyWrapper: "<quillReply>", then "</quillReply>", each with the character after
// it, then "<result value=" through the next "</result>" and the character after that, each
// searched for in what the earlier cuts left. `first` tells where the tags first occur in the
// text as given, so that only the parts the cuts joined are searched again. The text is moved
// into one piece at the end, moving the smaller parts; returns its start, terminated, with its
// length in *length.
char *stripInfoWrapper(char *text, int *length, const WrapperTags &first);
