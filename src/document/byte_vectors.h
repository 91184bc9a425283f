// Sixteen bytes at a time: the few vector tests the readers of this program use, each giving one
// bit a byte (bit i for the byte at offset i). SSE2 where the processor has it, plain loops with
// the same results elsewhere.
#pragma once
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace bytes16 {

#if defined(__SSE2__)

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

#else

struct Vector {
  unsigned char bytes[16];
};
inline constexpr std::size_t kSize = sizeof(Vector);

inline Vector load(const char *at) {
  Vector vector;
  std::memcpy(vector.bytes, at, kSize);
  return vector;
}
inline void store(char *at, Vector bytes) { std::memcpy(at, bytes.bytes, kSize); }

// Bit i set where test(byte i) holds.
template <typename Test> inline unsigned bitsWhere(const Vector &bytes, Test test) {
  unsigned bits = 0;
  for (std::size_t i = 0; i < kSize; ++i)
    if (test(bytes.bytes[i])) bits |= 1u << i;
  return bits;
}

inline unsigned equal(Vector bytes, char c) {
  return bitsWhere(bytes, [c](unsigned char b) { return b == static_cast<unsigned char>(c); });
}

// The bytes at most c, taken as unsigned.
inline unsigned atMost(Vector bytes, char c) {
  return bitsWhere(bytes, [c](unsigned char b) { return b <= static_cast<unsigned char>(c); });
}

// The C locale's white space: ' ' and '\t' to '\r'.
inline unsigned blanks(Vector bytes) {
  return bitsWhere(bytes, [](unsigned char b) {
    return static_cast<unsigned char>(b - '\t') <= '\r' - '\t' || b == ' ';
  });
}

#endif

// The 64 bytes at `at` equal to c.
inline std::uint64_t equal64(const char *at, char c) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < 64; i += kSize)
    mask |= std::uint64_t{equal(load(at + i), c)} << i;
  return mask;
}

}  // namespace bytes16
