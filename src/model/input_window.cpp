// Lines are counted over stretches known to hold no CR and no multi-byte character (found
// sixteen or eight bytes at a time) by the next LF, found once per line whatever the number of
// places asked about in it; other stretches go byte by byte.
#include "model/input_window.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstdint>
#include <cstring>

namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101ull;
constexpr std::uint64_t kHighs = 0x8080808080808080ull;

bool special(char c) { return c == '\r' || (static_cast<unsigned char>(c) & 0x80) != 0; }

bool wordHasSpecial(std::uint64_t word) {
  const std::uint64_t crs = word ^ (kOnes * '\r');
  return ((word & kHighs) | ((crs - kOnes) & ~crs & kHighs)) != 0;
}

}  // namespace

char *InputWindow::reserve(std::size_t size) {
  if (bytes_.size() < used_ + size) bytes_.resize(used_ + size);
  return bytes_.data() + used_;
}

void InputWindow::commit(std::size_t count) { used_ += count; }

void InputWindow::forgetBefore(unsigned long long offset) {
  if (offset > cursor_) offset = cursor_;
  if (offset <= start_) return;
  const std::size_t gone = static_cast<std::size_t>(offset - start_);
  std::memmove(bytes_.data(), bytes_.data() + gone, used_ - gone);
  used_ -= gone;
  start_ = offset;
}

Position InputWindow::positionFurther(unsigned long long offset) {
  if (offset > end()) offset = end();
  advance(offset);
  if (offset < cursor_) offset = cursor_;
  return {line_, static_cast<unsigned long>(1 + (offset - lineStart_) - continuations_)};
}

unsigned long long InputWindow::scanSpecial(unsigned long long from, unsigned long long to) const {
  const char *byte = at(from);
  const char *const last = at(to);
#if defined(__SSE2__)
  const __m128i crs = _mm_set1_epi8('\r');
  for (; last - byte >= 16; byte += 16) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(byte));
    // The top bit of a byte above 0x7F, or of a CR made all ones.
    const int found = _mm_movemask_epi8(_mm_or_si128(block, _mm_cmpeq_epi8(block, crs)));
    if (found != 0)
      return from + static_cast<unsigned long long>(byte - at(from)) +
             static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(found)));
  }
#endif
  for (; last - byte >= 8; byte += 8) {
    std::uint64_t word;
    std::memcpy(&word, byte, sizeof word);
    if (wordHasSpecial(word)) break;
  }
  while (byte < last && !special(*byte))
    ++byte;
  return from + static_cast<unsigned long long>(byte - at(from));
}

void InputWindow::advance(unsigned long long to) {
  if (to <= cursor_) return;
  if (special_ < cursor_) special_ = cursor_;
  // The scan goes on to the end of the input given: once for all the places asked about in it.
  if (special_ < to && !special(*at(special_))) special_ = scanSpecial(special_, end());
  if (special_ < to || afterCr_) {
    advanceSlowly(to);
    return;
  }
  if (newline_ < cursor_) findNewline(cursor_);
  while (true) {
    // Searched up to an earlier end of the input: the search goes on.
    if (!newlineFound_ && newline_ < to) findNewline(newline_);
    if (!newlineFound_ || newline_ >= to) break;
    ++line_;
    lineStart_ = newline_ + 1;
    continuations_ = 0;
    findNewline(newline_ + 1);
  }
  cursor_ = to;
}

void InputWindow::findNewline(unsigned long long from) {
  const void *found = std::memchr(at(from), '\n', static_cast<std::size_t>(end() - from));
  newlineFound_ = found != nullptr;
  newline_ =
      found == nullptr
          ? end()
          : from + static_cast<unsigned long long>(static_cast<const char *>(found) - at(from));
}

void InputWindow::advanceSlowly(unsigned long long to) {
  for (; cursor_ < to; ++cursor_) {
    const char c = *at(cursor_);
    if (c == '\n' || c == '\r') {
      if (c == '\r' || !afterCr_) ++line_;
      lineStart_ = cursor_ + 1;
      continuations_ = 0;
      afterCr_ = c == '\r';
      continue;
    }
    afterCr_ = false;
    if ((static_cast<unsigned char>(c) & 0xC0) == 0x80) ++continuations_;
  }
}
