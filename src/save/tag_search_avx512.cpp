// The tag search loops over 64-byte vectors. This file alone is built for processors that have
// them; tag_search.cpp calls into it only after asking the processor.
#if defined(__x86_64__)
#if !defined(__AVX512BW__)
#error "tag_search_avx512.cpp must be built with 64-byte vectors enabled"
#endif

#include <immintrin.h>

#include <cstdint>

#include "save/tag_scan_kernel.h"
#include "save/tag_search.h"

namespace {

// Comparisons give bit masks directly.
struct Avx512 {
  using V = __m512i;
  static constexpr int kWidth = 64;
  static V load(const char *p) { return _mm512_loadu_si512(p); }
  static V splat(char c) { return _mm512_set1_epi8(c); }
  static __mmask64 eq(V a, V b) { return _mm512_cmpeq_epi8_mask(a, b); }
  static __mmask64 both(__mmask64 a, __mmask64 b) { return a & b; }
  static __mmask64 either(__mmask64 a, __mmask64 b) { return a | b; }
  static std::uint64_t bits(__mmask64 a) { return a; }
};

}  // namespace

const char *findTagAvx512(const PreparedTag &tag, const char *p, const char *end,
                          const char **rest) {
  return findTagWith<Avx512>(tag, p, end, rest);
}

NulAndTag findNulAndTagAvx512(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                              const char *end) {
  return findNulAndTagWith<Avx512>(tag, tagFrom, nulFrom, end);
}

const char *findTagNotingAvx512(const PreparedTag &stop, const PreparedTag (&notes)[2],
                                const char *begin, const char *end, const char *(&noted)[2]) {
  return findTagNotingWith<Avx512>(stop, notes, begin, end, noted);
}

std::size_t findElementsAvx512(const ElementSearch &search, const char *text, std::size_t from,
                               std::size_t size, ElementPlaces *places, std::size_t room) {
  return findElementsWith<Avx512>(search, text, from, size, places, room);
}

#endif
