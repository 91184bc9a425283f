#include "save/tag_search.h"

#include <cstring>
#include <string.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Tags are short and start with '<', which is everywhere in the text; so 16 positions at a time
// are screened on three bytes of the needle (the first, a distinctive one near the start and the
// last) and only the survivors are compared whole.
const char *findTag(const char *begin, const char *end, std::string_view needle) {
  const std::size_t size = needle.size();
  if (size == 0) return begin;
  if (begin >= end || static_cast<std::size_t>(end - begin) < size) return nullptr;
  const char *p = begin;
#if defined(__SSE2__)
  if (size >= 3) {
    const std::size_t middle = needle[1] == '/' ? 2 : 1;
    const __m128i first = _mm_set1_epi8(needle[0]);
    const __m128i second = _mm_set1_epi8(needle[middle]);
    const __m128i last = _mm_set1_epi8(needle[size - 1]);
    // Every load of 16 bytes at p + size - 1 stays inside the text.
    while (static_cast<std::size_t>(end - p) >= size - 1 + 16) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
      const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + middle));
      const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p + size - 1));
      unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(
          _mm_and_si128(_mm_cmpeq_epi8(a, first), _mm_cmpeq_epi8(b, second)),
          _mm_cmpeq_epi8(c, last))));
      while (mask != 0) {
        const int offset = __builtin_ctz(mask);
        if (std::memcmp(p + offset, needle.data(), size) == 0) return p + offset;
        mask &= mask - 1;
      }
      p += 16;
    }
  }
#endif
  void *hit = memmem(p, static_cast<std::size_t>(end - p), needle.data(), size);
  return static_cast<const char *>(hit);
}
