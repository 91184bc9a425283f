#include "save/tag_search.h"

#include <cstring>
#include <string.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "save/tag_scan_kernel.h"

#if defined(__x86_64__)
// The same loops over 32-byte and 64-byte vectors, each in its own file built for processors
// that have them.
const char *findTagAvx512(const PreparedTag &tag, const char *p, const char *end,
                          const char **rest);
NulAndTag findNulAndTagAvx512(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                              const char *end);
const char *findTagNotingAvx512(const PreparedTag &stop, const PreparedTag (&notes)[2],
                                const char *begin, const char *end, const char *(&noted)[2]);
std::size_t findElementsAvx512(const ElementSearch &search, const char *text, std::size_t from,
                               std::size_t size, ElementPlaces *places, std::size_t room);
const char *findTagAvx2(const PreparedTag &tag, const char *p, const char *end, const char **rest);
std::size_t findElementsAvx2(const ElementSearch &search, const char *text, std::size_t from,
                             std::size_t size, ElementPlaces *places, std::size_t room);
NulAndTag findNulAndTagAvx2(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                            const char *end);
const char *findTagNotingAvx2(const PreparedTag &stop, const PreparedTag (&notes)[2],
                              const char *begin, const char *end, const char *(&noted)[2]);
#endif

namespace {

#if defined(__SSE2__)
struct Sse2 {
  using V = __m128i;
  static constexpr int kWidth = 16;
  static V load(const char *p) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(p)); }
  static V splat(char c) { return _mm_set1_epi8(c); }
  static V eq(V a, V b) { return _mm_cmpeq_epi8(a, b); }
  static V both(V a, V b) { return _mm_and_si128(a, b); }
  static V either(V a, V b) { return _mm_or_si128(a, b); }
  static unsigned bits(V a) { return static_cast<unsigned>(_mm_movemask_epi8(a)); }
};
#endif

// The widest vectors the processor has, in bytes.
int processorWidth() {
#if defined(__x86_64__)
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw")) return 64;
  if (__builtin_cpu_supports("avx2")) return 32;
#endif
  return 16;
}

const int widest = processorWidth();
int width = widest;

}  // namespace

PreparedTag prepareTag(std::string_view tag) {
  PreparedTag prepared{tag.data(), tag.size(), 0, 0, 0};
  const std::size_t head = tag.size() < 8 ? tag.size() : 8;
  std::memcpy(&prepared.word, tag.data(), head);
  prepared.mask = head == 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * head)) - 1;
  if (tag.size() > 8) std::memcpy(&prepared.tail, tag.data() + tag.size() - 8, 8);
  return prepared;
}

void setTagSearchWidth(int bytes) {
  width = 16;
  for (int candidate : {64, 32})
    if (candidate <= bytes && candidate <= widest) {
      width = candidate;
      break;
    }
}
void resetTagSearch() { width = widest; }

const char *findTag(const char *begin, const char *end, std::string_view needle) {
  return findPreparedTag(prepareTag(needle), begin, end);
}

const char *findPreparedTag(const PreparedTag &tag, const char *begin, const char *end) {
  const std::size_t size = tag.size;
  if (size == 0) return begin;
  if (begin >= end || static_cast<std::size_t>(end - begin) < size) return nullptr;
  const char *p = begin;
  if (size >= 3) {
    const char *hit = nullptr;
#if defined(__x86_64__)
    if (width == 64)
      hit = findTagAvx512(tag, p, end, &p);
    else if (width == 32)
      hit = findTagAvx2(tag, p, end, &p);
    else
#endif
#if defined(__SSE2__)
      hit = findTagWith<Sse2>(tag, p, end, &p);
#endif
    if (hit != nullptr) return hit;
  }
  void *hit = memmem(p, static_cast<std::size_t>(end - p), tag.data, size);
  return static_cast<const char *>(hit);
}

NulAndTag findNulAndTag(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                        const char *end) {
#if defined(__x86_64__)
  if (width == 64) return findNulAndTagAvx512(tag, tagFrom, nulFrom, end);
  if (width == 32) return findNulAndTagAvx2(tag, tagFrom, nulFrom, end);
#endif
#if defined(__SSE2__)
  return findNulAndTagWith<Sse2>(tag, tagFrom, nulFrom, end);
#else
  const void *nul = nulFrom < end ? std::memchr(nulFrom, '\0', end - nulFrom) : nullptr;
  const char *stop = nul != nullptr ? static_cast<const char *>(nul) : end;
  return {static_cast<const char *>(nul), findPreparedTag(tag, tagFrom, stop)};
#endif
}

const char *findTagNoting(const PreparedTag &stop, const PreparedTag (&notes)[2], const char *begin,
                          const char *end, const char *(&noted)[2]) {
#if defined(__x86_64__)
  if (width == 64) return findTagNotingAvx512(stop, notes, begin, end, noted);
  if (width == 32) return findTagNotingAvx2(stop, notes, begin, end, noted);
#endif
#if defined(__SSE2__)
  return findTagNotingWith<Sse2>(stop, notes, begin, end, noted);
#else
  const char *hit = findPreparedTag(stop, begin, end);
  for (int i = 0; i < 2; ++i) {
    noted[i] = findPreparedTag(notes[i], begin, end);
    if (noted[i] != nullptr && hit != nullptr && noted[i] > hit) noted[i] = nullptr;
  }
  return hit;
#endif
}

std::size_t findElements(const ElementSearch &search, const char *text, std::size_t from,
                         std::size_t size, ElementPlaces *places, std::size_t room) {
#if defined(__x86_64__)
  if (width == 64) return findElementsAvx512(search, text, from, size, places, room);
  if (width == 32) return findElementsAvx2(search, text, from, size, places, room);
#endif
#if defined(__SSE2__)
  return findElementsWith<Sse2>(search, text, from, size, places, room);
#else
  return 0;
#endif
}
