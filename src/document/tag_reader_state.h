// The tag reader's reading state, shared by the general reader (tag_reader.cpp), its fast steps
// over plain entries (plain_entries.cpp) and, to read how far it has come, trovanctl check.
#pragma once
#include <cstddef>

#include "document/records.h"

namespace tag_reader_state {

inline constexpr std::size_t kReadAheadSize = std::size_t{1} << 20;

// The reading state.
struct InputState {
  // Offsets into `data`: the window is [windowStart, windowEnd), the next byte to look at is
  // `position`; [windowEnd, loaded) is input read ahead but not yet in the window.
  char data[kReadAheadSize];
  std::size_t loaded = 0;
  std::size_t windowStart = 0;
  std::size_t windowEnd = 0;
  std::size_t position = 0;
  bool inCdata = false;
  bool pendingEmptyEnd = false;
  std::size_t emptyEndPosition = 0;
  // The NUL rule costs nothing while no NUL byte is near: the read-ahead is searched for NULs in
  // large stretches, and `nextNul` remembers the result. No NUL lies in [position, nextNul) at
  // any shift (when position <= nextNul); nextNul is a NUL byte or where the last search
  // stopped.
  std::size_t nextNul = 0;
  // Read no further than the window's end (see readOnlyWithinWindow).
  bool windowOnly = false;
  unsigned long long consumed = 0;  // bytes read from the input so far
};
extern InputState input;

// The C locale's white space.
inline bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
// Whether c ends a tag name: '>', '/' or a blank.
inline bool endsName(char c) { return c == '>' || c == '/' || isBlank(c); }

// Searches the read-ahead for the next NUL byte from where the last search stopped (or from the
// position, when that is further on); nextNul becomes that NUL, or the end of what is loaded.
void searchNulOn();

}  // namespace tag_reader_state
