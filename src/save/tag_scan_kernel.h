// The search loop behind findTag, written once over a vector width. Included only
// by tag_search.cpp (16-byte vectors) and tag_search_avx2.cpp (32-byte vectors): everything here
// has internal linkage, so the copies built for different instruction sets never mix.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "save/tag_search.h"

namespace {

// The position of the lowest set bit of a screen's mask (never 0). Kept here, with internal
// linkage, rather than taken from the standard library, so that no copy of it built for wider
// vectors can stand in for the others.
inline int lowestSet(unsigned long long bits) { return __builtin_ctzll(bits); }

// Does the tag start at p? The text ends at end. No calls, so that the search loop keeps its
// vectors in registers.
inline bool tagAt(const PreparedTag &tag, const char *p, const char *end) {
  const std::size_t available = static_cast<std::size_t>(end - p);
  if (available < tag.size) return false;
  if (available < 8) {
    for (std::size_t i = 0; i < tag.size; ++i)
      if (p[i] != tag.data[i]) return false;
    return true;
  }
  std::uint64_t word;
  std::memcpy(&word, p, 8);
  if (((word ^ tag.word) & tag.mask) != 0) return false;
  if (tag.size <= 8) return true;
  std::memcpy(&word, p + tag.size - 8, 8);
  if (word != tag.tail) return false;
  for (std::size_t i = 8; i + 8 < tag.size; ++i)
    if (p[i] != tag.data[i]) return false;
  return true;
}

// The first occurrence of a tag of at least three bytes in [p, end): places are screened on two
// of its bytes (a distinctive one near the start, past a leading "</", and the last), a vector at
// a time, and the survivors compared whole; returns the place where the vector loop stopped in
// *rest when nothing was found before it.
template <class Ops>
const char *findTagWith(const PreparedTag &tag, const char *p, const char *end, const char **rest) {
  using V = typename Ops::V;
  const std::size_t size = tag.size;
  const std::size_t middle = tag.data[1] == '/' ? 2 : 1;
  const V second = Ops::splat(tag.data[middle]);
  const V last = Ops::splat(tag.data[size - 1]);
  // Every load of a vector at p + size - 1 stays inside the text.
  while (static_cast<std::size_t>(end - p) >= size - 1 + Ops::kWidth) {
    __builtin_prefetch(p + 1024);
    const V b = Ops::load(p + middle);
    const V c = Ops::load(p + size - 1);
    auto bits = Ops::bits(Ops::both(Ops::eq(b, second), Ops::eq(c, last)));
    while (bits != 0) {
      const char *q = p + lowestSet(bits);
      bits &= bits - 1;
      if (tagAt(tag, q, end)) return q;
    }
    p += Ops::kWidth;
  }
  *rest = p;
  return nullptr;
}

// findNulAndTag in one pass: places are screened on the tag's distinctive byte near its start,
// and the same loaded bytes are checked for a NUL.
template <class Ops>
NulAndTag findNulAndTagWith(const PreparedTag &tag, const char *tagFrom, const char *nulFrom,
                            const char *end) {
  using V = typename Ops::V;
  const std::size_t size = tag.size;
  const std::size_t middle = tag.data[1] == '/' ? 2 : 1;
  const char *p = tagFrom;
  // The vector loads check bytes from p + middle on; the few before are checked one by one.
  for (const char *q = nulFrom; q < p + middle && q < end; ++q)
    if (*q == '\0') return {q, findPreparedTag(tag, tagFrom, q)};
  const V key = Ops::splat(tag.data[middle]);
  const V zero = Ops::splat('\0');
  // Every load of a vector at p + middle stays inside the text.
  while (static_cast<std::size_t>(end - p) >= size - 1 + Ops::kWidth) {
    const V b = Ops::load(p + middle);
    auto bits = Ops::bits(Ops::either(Ops::eq(b, key), Ops::eq(b, zero)));
    // In order: a tag found before the NUL lies whole before it, since the tag holds no NUL.
    while (bits != 0) {
      const char *q = p + lowestSet(bits);
      bits &= bits - 1;
      if (q[middle] == '\0') {
        if (q + middle >= nulFrom) return {q + middle, nullptr};
      } else if (tagAt(tag, q, end)) {
        const void *nul = std::memchr(q + middle, '\0', static_cast<std::size_t>(end - q - middle));
        return {static_cast<const char *>(nul), q};
      }
    }
    p += Ops::kWidth;
  }
  const char *rest = p + middle > nulFrom ? p + middle : nulFrom;
  const char *nul =
      rest < end
          ? static_cast<const char *>(std::memchr(rest, '\0', static_cast<std::size_t>(end - rest)))
          : nullptr;
  return {nul, findPreparedTag(tag, p, nul != nullptr ? nul : end)};
}

// findTagNoting: a noted tag that starts where the stop tag does is noted too. While any noted
// tag is still to be found, places are screened for all three tags, each on its two bytes;
// after that the plain loop goes on for the stop tag alone.
template <class Ops>
const char *findTagNotingWith(const PreparedTag &stop, const PreparedTag (&notes)[2], const char *p,
                              const char *end, const char *(&noted)[2]) {
  using V = typename Ops::V;
  noted[0] = noted[1] = nullptr;
  const PreparedTag *tags[3] = {&notes[0], &notes[1], &stop};
  std::size_t middle[3];
  V key[3];
  V last[3];
  std::size_t reach = 0;
  for (int i = 0; i < 3; ++i) {
    middle[i] = tags[i]->data[1] == '/' ? 2 : 1;
    key[i] = Ops::splat(tags[i]->data[middle[i]]);
    last[i] = Ops::splat(tags[i]->data[tags[i]->size - 1]);
    if (tags[i]->size - 1 > reach) reach = tags[i]->size - 1;
  }
  auto screen = [&](int i) {
    return Ops::both(Ops::eq(Ops::load(p + middle[i]), key[i]),
                     Ops::eq(Ops::load(p + tags[i]->size - 1), last[i]));
  };
  unsigned pending = 3;
  // Every load of a vector at p + reach stays inside the text.
  while (static_cast<std::size_t>(end - p) >= reach + Ops::kWidth) {
    __builtin_prefetch(p + 1024);
    // Each place is compared whole only with the tags whose screen it passed.
    const auto stopBits = Ops::bits(screen(2));
    decltype(Ops::bits(screen(2))) noteBits[2] = {0, 0};
    if (pending & 1) noteBits[0] = Ops::bits(screen(0));
    if (pending & 2) noteBits[1] = Ops::bits(screen(1));
    auto bits = stopBits | noteBits[0] | noteBits[1];
    while (bits != 0) {
      const auto place = bits & (~bits + 1);
      const char *q = p + lowestSet(bits);
      bits &= bits - 1;
      for (int i = 0; i < 2; ++i) {
        if ((noteBits[i] & place) != 0 && (pending & (1u << i)) != 0 && tagAt(notes[i], q, end)) {
          noted[i] = q;
          pending &= ~(1u << i);
        }
      }
      if ((stopBits & place) != 0 && tagAt(stop, q, end)) return q;
    }
    p += Ops::kWidth;
    if (pending == 0) {
      const char *rest = p;
      if (const char *hit = findTagWith<Ops>(stop, p, end, &rest); hit != nullptr) return hit;
      p = rest;
      break;
    }
  }
  for (; p < end; ++p) {
    for (int i = 0; i < 2; ++i) {
      if ((pending & (1u << i)) != 0 && tagAt(notes[i], p, end)) {
        noted[i] = p;
        pending &= ~(1u << i);
      }
    }
    if (tagAt(stop, p, end)) return p;
  }
  return nullptr;
}

// findElements: places are screened for the four tags a vector at a time, each on its '<', its
// second byte, its third byte for an end tag, and its last byte; the survivors, in order, are
// compared whole with the tags that matter where the walk stands: the start tag outside an
// element, the path tags and the end tag inside one.
template <class Ops>
std::size_t findElementsWith(const ElementSearch &search, const char *text, std::size_t from,
                             std::size_t size, ElementPlaces *places, std::size_t room) {
  const PreparedTag &start = search.start;
  const PreparedTag &endTag = search.end;
  const PreparedTag &path = search.path;
  const PreparedTag &pathEnd = search.pathEnd;
  const std::size_t startLast = start.size - 1;
  const std::size_t endLast = endTag.size - 1;
  const std::size_t pathLast = path.size - 1;
  const std::size_t pathEndLast = pathEnd.size - 1;
  std::size_t reach = startLast > endLast ? startLast : endLast;
  if (pathLast > reach) reach = pathLast;
  if (pathEndLast > reach) reach = pathEndLast;
  const auto open = Ops::splat('<');
  const auto startSecond = Ops::splat(start.data[1]);
  const auto startEnd = Ops::splat(start.data[startLast]);
  const auto endSecond = Ops::splat(endTag.data[1]);
  const auto endThird = Ops::splat(endTag.data[2]);
  const auto endEnd = Ops::splat(endTag.data[endLast]);
  const auto pathSecond = Ops::splat(path.data[1]);
  const auto pathEnd_ = Ops::splat(path.data[pathLast]);
  const auto pathEndSecond = Ops::splat(pathEnd.data[1]);
  const auto pathEndThird = Ops::splat(pathEnd.data[2]);
  const auto pathEndEnd = Ops::splat(pathEnd.data[pathEndLast]);

  const char *end = text + size;
  std::size_t count = 0;
  bool inside = false;
  ElementPlaces current{};
  // Every load of a vector at p + reach stays inside the text.
  for (std::size_t at = from; at <= size && size - at >= reach + Ops::kWidth; at += Ops::kWidth) {
    const char *p = text + at;
    // The walk's branches keep the processor from reading far ahead by itself; the text is asked
    // for well before it is screened.
    __builtin_prefetch(p + 4096);
    const auto first = Ops::eq(Ops::load(p), open);
    const auto second = Ops::load(p + 1);
    const auto third = Ops::load(p + 2);
    const auto starts = Ops::bits(Ops::both(Ops::both(first, Ops::eq(second, startSecond)),
                                            Ops::eq(Ops::load(p + startLast), startEnd)));
    const auto paths = Ops::bits(Ops::both(Ops::both(first, Ops::eq(second, pathSecond)),
                                           Ops::eq(Ops::load(p + pathLast), pathEnd_)));
    const auto ends = Ops::bits(
        Ops::both(Ops::both(Ops::both(first, Ops::eq(second, endSecond)), Ops::eq(third, endThird)),
                  Ops::eq(Ops::load(p + endLast), endEnd)));
    const auto pathEnds = Ops::bits(Ops::both(
        Ops::both(Ops::both(first, Ops::eq(second, pathEndSecond)), Ops::eq(third, pathEndThird)),
        Ops::eq(Ops::load(p + pathEndLast), pathEndEnd)));
    auto bits = starts | paths | ends | pathEnds;
    while (bits != 0) {
      const auto place = bits & (~bits + 1);
      const int offset = lowestSet(bits);
      bits &= bits - 1;
      const char *q = p + offset;
      if (!inside) {
        if ((starts & place) == 0 || !tagAt(start, q, end)) continue;
        inside = true;
        current = {at + offset, kNotInside, kNotInside, kNotInside};
      }
      // A path tag may also start where the element does.
      if ((paths & place) != 0 && current.path == kNotInside && tagAt(path, q, end))
        current.path = at + offset;
      if ((pathEnds & place) != 0 && current.pathEnd == kNotInside && tagAt(pathEnd, q, end))
        current.pathEnd = at + offset;
      if ((ends & place) != 0 && tagAt(endTag, q, end)) {
        current.end = at + offset;
        places[count++] = current;
        inside = false;
        if (count == room) return count;
      }
    }
  }
  return count;
}

}  // namespace
