// The input bytes the strict reader may still need, by their offset in the document, and the
// line and column of any offset at or after the last one asked about. Lines end at LF, CR LF or
// a lone CR; columns count characters (UTF-8 sequences), both from 1.
#pragma once
#include <cstddef>
#include <vector>

#include "model/entry.h"

class InputWindow {
public:
  // Room for `size` more bytes at the end; commit() then says how many were put there.
  char *reserve(std::size_t size);
  void commit(std::size_t count);

  // Offsets of the first byte kept and of the end of the input given so far.
  unsigned long long start() const { return start_; }
  unsigned long long end() const { return start_ + used_; }
  // The byte at `offset`, from start() to end() (excluded).
  const char *at(unsigned long long offset) const { return bytes_.data() + (offset - start_); }

  // The place of `offset` (clamped to the window and to the last place asked about).
  Position position(unsigned long long offset) {
    // On the line of the last place asked about, with no CR or multi-byte character between.
    if (offset >= cursor_ && offset <= newline_ && offset <= special_ && !afterCr_ &&
        offset <= end()) {
      cursor_ = offset;
      return {line_, static_cast<unsigned long>(1 + (offset - lineStart_) - continuations_)};
    }
    return positionFurther(offset);
  }

  // Forgets the bytes before `offset` (at most the last place asked about is kept).
  void forgetBefore(unsigned long long offset);

private:
  Position positionFurther(unsigned long long offset);
  void advance(unsigned long long to);
  void advanceSlowly(unsigned long long to);
  unsigned long long scanSpecial(unsigned long long from, unsigned long long to) const;
  void findNewline(unsigned long long from);

  std::vector<char> bytes_;
  unsigned long long start_ = 0;
  std::size_t used_ = 0;  // bytes_ holds reserved room past end() until commit()
  // The last place asked about.
  unsigned long long cursor_ = 0;
  unsigned long line_ = 1;
  unsigned long long lineStart_ = 0;
  unsigned long long continuations_ = 0;  // UTF-8 continuation bytes from lineStart_ to cursor_
  bool afterCr_ = false;                  // the byte before cursor_ is a CR
  // No CR and no byte above 0x7F from cursor_ to special_.
  unsigned long long special_ = 0;
  // The first LF at or after cursor_ when newlineFound_; else no LF from cursor_ to newline_.
  unsigned long long newline_ = 0;
  bool newlineFound_ = false;
};
