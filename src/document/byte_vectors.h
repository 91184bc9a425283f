// Sixteen bytes at a time: the few vector tests the readers of this program use, each giving one
// bit a byte (bit i for the byte at offset i).
#pragma once
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

namespace bytes16 {

using Vector = __m128i;
inline constexpr std::size_t kSize = sizeof(Vector);

inline Vector load(const char *at) { return _mm_loadu_si128(reinterpret_cast<const Vector *>(at)); }
inline void store(char *at, Vector bytes) {
  _mm_storeu_si128(reinterpret_cast<Vector *>(at), bytes);
}

inline unsigned equal(Vector bytes, char c) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(c))));
}

// The bytes at most c, taken as unsigned.
inline unsigned atMost(Vector bytes, char c) {
  return static_cast<unsigned>(
      _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(c)), bytes)));
}

// The C locale's white space: ' ' and '\t' to '\r'.
inline unsigned blanks(Vector bytes) {
  const Vector fromTab = _mm_sub_epi8(bytes, _mm_set1_epi8('\t'));
  return atMost(fromTab, '\r' - '\t') | equal(bytes, ' ');
}

// The 64 bytes at `at` equal to c.
inline std::uint64_t equal64(const char *at, char c) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < 64; i += kSize)
    mask |= std::uint64_t{equal(load(at + i), c)} << i;
  return mask;
}

}  // namespace bytes16
