// The tag search loops over 32-byte vectors. This file alone is built for processors that have
// them; tag_search.cpp calls into it only after asking the processor.
#if defined(__x86_64__)
#if !defined(__AVX2__)
#error "tag_search_avx2.cpp must be built with 32-byte vectors enabled"
#endif

#include <immintrin.h>

#include "save/tag_scan_kernel.h"
#include "save/tag_search.h"

namespace {

struct Avx2 {
  using V = __m256i;
  static constexpr int kWidth = 32;
  static V load(const char *p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(p)); }
  static V splat(char c) { return _mm256_set1_epi8(c); }
  static V eq(V a, V b) { return _mm256_cmpeq_epi8(a, b); }
  static V both(V a, V b) { return _mm256_and_si256(a, b); }
  static V either(V a, V b) { return _mm256_or_si256(a, b); }
  static unsigned bits(V a) { return static_cast<unsigned>(_mm256_movemask_epi8(a)); }
};

}  // namespace

const char *findTagAvx2(const PreparedTag &tag, const char *p, const char *end, const char **rest) {
  return findTagWith<Avx2>(tag, p, end, rest);
}

NulAndTag findNulAndTagAvx2(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                            const char *end) {
  return findNulAndTagWith<Avx2>(tag, tagFrom, nulFrom, end);
}

const char *findTagNotingAvx2(const PreparedTag &stop, const PreparedTag (&notes)[2],
                              const char *begin, const char *end, const char *(&noted)[2]) {
  return findTagNotingWith<Avx2>(stop, notes, begin, end, noted);
}

std::size_t findElementsAvx2(const ElementSearch &search, const char *text, std::size_t from,
                             std::size_t size, ElementPlaces *places, std::size_t room) {
  return findElementsWith<Avx2>(search, text, from, size, places, room);
}

#endif
