// Finding a fixed tag text in a text: the one search that the info-file filters and the reply
// reader share. NUL bytes are ordinary bytes here.
#pragma once

#include <string.h>

#include <cstddef>
#include <string_view>

// The first place of `tag` in `text` at or after `from`, or npos; an empty tag is found at
// `from` (npos when `from` is past the end). The C library's memmem is already vectorised.
inline std::size_t findTag(std::string_view text, std::string_view tag, std::size_t from) {
  if (from > text.size()) return std::string_view::npos;
  const void *hit = memmem(text.data() + from, text.size() - from, tag.data(), tag.size());
  return hit == nullptr ? std::string_view::npos
                        : static_cast<std::size_t>(static_cast<const char *>(hit) - text.data());
}
