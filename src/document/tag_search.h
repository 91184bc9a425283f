// Finding a fixed tag text in a text: the one search that the info-file filters and the reply
// reader share. NUL bytes are ordinary bytes here.
#pragma once

#include <string.h>

#include <cstddef>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The first place of `tag` in `text` at or after `from`, or npos; an empty tag is found at
// `from` (npos when `from` is past the end). Most searches here end a few bytes further on, so
// the search is inline and starts at once: with SSE2 it looks at 16 places a time for the tag's
// first and last bytes (a pair that a tag's neighbours rarely share), elsewhere it is memmem.
inline std::size_t findTag(std::string_view text, std::string_view tag, std::size_t from) {
  constexpr std::size_t npos = std::string_view::npos;
  if (from > text.size()) return npos;
  const std::size_t size = tag.size();
  const char *const bytes = text.data();
#if defined(__SSE2__)
  if (size >= 2) {
    if (text.size() - from < size) return npos;
    const std::size_t last = text.size() - size;  // the last place the tag could start
    const __m128i first = _mm_set1_epi8(tag[0]);
    const __m128i lastBytes = _mm_set1_epi8(tag[size - 1]);
    std::size_t at = from;
    // Both 16-byte loads stay inside the text while at + 16 <= last + 1.
    for (; at + 16 <= last + 1; at += 16) {
      const __m128i heads = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + at));
      const __m128i tails =
          _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + at + size - 1));
      unsigned places = static_cast<unsigned>(_mm_movemask_epi8(
          _mm_and_si128(_mm_cmpeq_epi8(heads, first), _mm_cmpeq_epi8(tails, lastBytes))));
      for (; places != 0; places &= places - 1) {
        const std::size_t place = at + static_cast<std::size_t>(__builtin_ctz(places));
        if (std::memcmp(bytes + place + 1, tag.data() + 1, size - 2) == 0) return place;
      }
    }
    for (; at <= last; ++at)
      if (bytes[at] == tag[0] && bytes[at + size - 1] == tag[size - 1] &&
          std::memcmp(bytes + at + 1, tag.data() + 1, size - 2) == 0)
        return at;
    return npos;
  }
#endif
  const void *hit = memmem(bytes + from, text.size() - from, tag.data(), size);
  return hit == nullptr ? npos : static_cast<std::size_t>(static_cast<const char *>(hit) - bytes);
}
