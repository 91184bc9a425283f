// Finding where a tag name ends: at '>', '/', a blank or a NUL byte. Names are short, so the
// scan is inline; with SSE2 it looks at 16 bytes a time, elsewhere at one byte a time.
#pragma once

#include <array>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Which bytes end a tag name: '>', '/', the C locale's blanks and NUL.
inline constexpr auto kEndsName = [] {
  std::array<bool, 256> table{};
  for (const unsigned char c : {'>', '/', ' ', '\t', '\n', '\v', '\f', '\r', '\0'})
    table[c] = true;
  return table;
}();

// The first byte in [at, end) of `data` that ends a name, or `end`. With SSE2 the scan reads up
// to 15 bytes past `end`: the caller's buffer must hold them (their values do not matter).
inline std::size_t nameEnd(const char *data, std::size_t at, std::size_t end) {
#if defined(__SSE2__)
  const __m128i greater = _mm_set1_epi8('>');
  const __m128i slash = _mm_set1_epi8('/');
  const __m128i space = _mm_set1_epi8(' ');
  for (; at < end; at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(data + at));
    // '>', '/' and every byte up to ' ' (the blanks, NUL and the other control bytes).
    const __m128i low = _mm_cmpeq_epi8(_mm_min_epu8(bytes, space), bytes);
    unsigned candidates = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(
        _mm_or_si128(_mm_cmpeq_epi8(bytes, greater), _mm_cmpeq_epi8(bytes, slash)), low)));
    for (; candidates != 0; candidates &= candidates - 1) {
      const std::size_t place = at + static_cast<std::size_t>(__builtin_ctz(candidates));
      if (place >= end) return end;
      if (kEndsName[static_cast<unsigned char>(data[place])]) return place;
    }
  }
  return end;
#else
  while (at < end && !kEndsName[static_cast<unsigned char>(data[at])])
    ++at;
  return at;
#endif
}
