// Finding fixed tag texts in a large info-file text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The first occurrence of needle in [begin, end), or nullptr. NUL bytes are ordinary bytes here.
// An empty needle is found at begin.
const char *findTag(const char *begin, const char *end, std::string_view needle);

// The searches use the widest vectors of 64, 32 and 16 bytes that the processor has. Tests narrow
// them (to the widest the processor has of at most `bytes`) to check every loop;
// resetTagSearch() restores the processor's choice.
void setTagSearchWidth(int bytes);
void resetTagSearch();

// A tag ready for quick comparison: its first eight bytes as one word under a mask, and for a
// longer tag its last eight bytes as another. It refers to the tag's text, which must outlive it.
struct PreparedTag {
  const char *data;
  std::size_t size;
  std::uint64_t word;
  std::uint64_t mask;
  std::uint64_t tail;
};

// findTag for a tag prepared once for many searches.
PreparedTag prepareTag(std::string_view tag);
const char *findPreparedTag(const PreparedTag &tag, const char *begin, const char *end);

// The first NUL in [nulFrom, end), and the first place from tagFrom on where tag (at least three
// bytes, none of them a NUL) lies whole before that NUL, or before end when there is none; each
// nullptr when there is none. tagFrom <= nulFrom. One pass over the text for both.
struct NulAndTag {
  const char *nul;
  const char *tag;
};
NulAndTag findNulAndTag(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                        const char *end);

// The first occurrence of `stop` in [begin, end), or nullptr, noting on the way where each of
// two other tags first starts: noted[i] is that place, or nullptr when the tag does not start at
// or before the stop tag's place (before end when there is none). All three tags have at least
// three bytes. One pass over the text for all three.
const char *findTagNoting(const PreparedTag &stop, const PreparedTag (&notes)[2], const char *begin,
                          const char *end, const char *(&noted)[2]);

// The places of one element of a text: its start tag, its end tag (the first from its start
// on), and the first "<path>" and "</path>" from its start on when they start no later than its
// end tag (kNotInside when not).
inline constexpr std::size_t kNotInside = static_cast<std::size_t>(-1);
struct ElementPlaces {
  std::size_t start;
  std::size_t end;
  std::size_t path;
  std::size_t pathEnd;
};
// The tags of an element and of its path, each of at least three bytes.
struct ElementSearch {
  PreparedTag start;
  PreparedTag end;
  PreparedTag path;
  PreparedTag pathEnd;
};
// The elements of text[0, size) one after another from `from` on: the first starts at the first
// start tag from `from` on, each next one at the first start tag from the end tag of the one
// before on. Stops after `room` elements, or near the end of the text, where the vector loop
// ends; returns the number of elements whose end tag was found, their places in `places`.
std::size_t findElements(const ElementSearch &search, const char *text, std::size_t from,
                         std::size_t size, ElementPlaces *places, std::size_t room);
