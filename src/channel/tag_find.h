// Finding a tag in a reply: where string_view::find would find it, but screened 16 places at a
// time on the tag's first two bytes, so that a search that finds nothing, or passes many other
// tags, costs a few vector steps instead of a stop at every '<'.
#pragma once
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tag_find_detail {

template <typename Word> inline Word wordAt(const char *bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Whether a[0, size) and b[0, size) hold the same bytes; reads nothing outside them.
inline bool sameBytes(const char *a, const char *b, std::size_t size) {
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8)
      if (wordAt<std::uint64_t>(a + at) != wordAt<std::uint64_t>(b + at)) return false;
    return wordAt<std::uint64_t>(a + size - 8) == wordAt<std::uint64_t>(b + size - 8);
  }
  if (size >= 4)
    return wordAt<std::uint32_t>(a) == wordAt<std::uint32_t>(b) &&
           wordAt<std::uint32_t>(a + size - 4) == wordAt<std::uint32_t>(b + size - 4);
  for (std::size_t at = 0; at < size; ++at)
    if (a[at] != b[at]) return false;
  return true;
}

}  // namespace tag_find_detail

// The first place of `tag` in `text` at or after `from`, or npos. No byte past text's end is read.
// Inline, so that the tags a caller names as constants are compared as constants.
[[gnu::always_inline]] inline std::size_t findTag(std::string_view text, std::string_view tag,
                                                  std::size_t from) {
  using tag_find_detail::sameBytes;
  if (tag.size() < 2) return text.find(tag, from);
  if (text.size() < tag.size() || from > text.size() - tag.size()) return std::string_view::npos;
  const std::size_t last = text.size() - tag.size();  // the last place the tag could start
  const char *const bytes = text.data();
  // The tags are short: compare them a word at a time here rather than through a call.
  const auto matchesAt = [&](std::size_t at) {
    return sameBytes(bytes + at, tag.data(), tag.size());
  };
  // Each byte repeated in a register (a byte stored and read back as a word would stall).
  const auto repeated = [](char c) {
    return _mm_set1_epi32(static_cast<int>(static_cast<unsigned char>(c) * 0x01010101u));
  };
  const __m128i first = repeated(tag[0]);
  const __m128i second = repeated(tag[1]);
  std::size_t at = from;
  // 16 places a time while both loads stay inside the text.
  for (; at + 17 <= text.size() && at <= last; at += 16) {
    const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + at));
    const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + at + 1));
    unsigned places = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_and_si128(_mm_cmpeq_epi8(here, first), _mm_cmpeq_epi8(next, second))));
    for (; places != 0; places &= places - 1) {
      const std::size_t place = at + static_cast<std::size_t>(__builtin_ctz(places));
      if (place > last) return std::string_view::npos;
      if (matchesAt(place)) return place;
    }
  }
  for (; at <= last; ++at)
    if (bytes[at] == tag[0] && bytes[at + 1] == tag[1] && matchesAt(at)) return at;
  return std::string_view::npos;
}
