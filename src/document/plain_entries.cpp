// The fast steps over plain entries.
//
// Why a step may skip the general reader: reading a stretch tag by tag, the general reader moves
// its window's start to every '<' it meets past the start, each time with the window topped up
// to 8,192 bytes from what is already loaded, and with nothing to do for the NUL rule while no
// NUL byte lies within the window. A step looks only at bytes that lie at least one window's
// size before both the end of the loaded input and the next NUL byte, so that every one of those
// shifts is such a plain one; the texts it accepts are shorter than their fields, so none of them
// is cut by the window's end. The reader is then left with its window starting at the stretch's
// last '<' (its final end tag) and its position after that tag, as the general reader leaves it.
#include "document/plain_entries.h"

#include <algorithm>
#include <cstring>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_state.h"
#include "document/tag_search.h"

namespace {

using tag_reader_state::input;

bool plainStepsOn = true;

constexpr std::string_view kCdataOpen = "<![CDATA[";
constexpr std::string_view kCdataClose = "]]>";
// Texts that are read past without being kept (a zid) are accepted up to this length.
constexpr std::size_t kSkippedTextLimit = 1024;
// Longest value attribute accepted.
constexpr std::size_t kRightsValueLimit = 64;

// A walk over the input from the reader's position; no byte at or past `limit` decides anything.
struct Cursor {
  const char *data = nullptr;
  std::size_t at = 0;
  std::size_t limit = 0;

  // Whether the input at `at` is `text`; steps over it when it is.
  bool literal(std::string_view text) {
    if (limit - at < text.size() || std::memcmp(data + at, text.data(), text.size()) != 0)
      return false;
    at += text.size();
    return true;
  }

  // A text up to the next '<', or one CDATA section (its bytes up to the first "]]>"), of at most
  // size - 1 bytes, copied into out (NUL-terminated) when out is given.
  bool text(char *out, std::size_t size) {
    std::size_t begin = at;
    std::size_t end = 0;
    if (literal(kCdataOpen)) {
      begin = at;
      const std::string_view rest(data, at + std::min(limit - at, size - 1 + kCdataClose.size()));
      end = findTag(rest, kCdataClose, at);
      if (end == std::string_view::npos) return false;
      at = end + kCdataClose.size();
    } else {
      const void *next = std::memchr(data + at, '<', std::min(limit - at, size));
      if (next == nullptr) return false;
      end = at = static_cast<std::size_t>(static_cast<const char *>(next) - data);
    }
    if (out != nullptr) {
      std::memcpy(out, data + begin, end - begin);
      out[end - begin] = '\0';
    }
    return true;
  }

  // The element `<tag>TEXT</tag>`, given as its two tags.
  bool element(std::string_view open, std::string_view close, char *out, std::size_t size) {
    return literal(open) && text(out, size) && literal(close);
  }
  // The same for an element that may be left out.
  bool optionalElement(std::string_view open, std::string_view close, char *out, std::size_t size) {
    return !literal(open) || (text(out, size) && literal(close));
  }

  // The end of a tag name that starts at `at` (as the reader finds it: at '>', '/' or a blank; no
  // NUL byte lies before the limit), when it lies within `most` bytes; `at` when not.
  std::size_t nameEndWithin(std::size_t most) const {
    const std::size_t end = std::min(limit, at + most);
    std::size_t found = at;
    while (found < end && !tag_reader_state::endsName(data[found]))
      ++found;
    return found < end ? found : at;
  }

  // Right elements <x/> up to endTag ("</name>"), copied into out as getRights gathers them: the
  // elements' own bytes, which follow one another. A name is whatever the reader takes for one,
  // save a CDATA section's opening.
  bool rights(char *out, std::string_view endTag) {
    const std::size_t first = at;
    std::size_t end = at;
    while (!literal(endTag)) {
      if (!literal("<") || data[at] == '!') return false;
      const std::size_t nameStart = at;
      at = nameEndWithin(kTagNameSize);
      const std::string_view name(data + nameStart, at - nameStart);
      // An empty element of the list's own name would end the list.
      if (name.empty() || name.size() >= kTagNameSize ||
          name == endTag.substr(2, endTag.size() - 3) || !literal("/>") ||
          at - first >= kRightsListSize)
        return false;
      end = at;
    }
    std::memcpy(out, data + first, end - first);
    out[end - first] = '\0';
    return true;
  }
};

// A cursor at the reader's position, when a fast step may read from there.
inline bool startAtPosition(Cursor &cursor) {
  if (!plainStepsOn || debug != 0 || input.pendingEmptyEnd || input.inCdata ||
      input.position >= input.windowEnd || input.windowEnd - input.windowStart != kInputWindowSize)
    return false;
  if (input.loaded <= input.position + kInputWindowSize) return false;
  // Where the last search for a NUL byte stopped short: search on (as the next shift would).
  if (input.nextNul <= input.position + kInputWindowSize) tag_reader_state::searchNulOn();
  const std::size_t reach = std::min(input.loaded, input.nextNul);
  if (reach <= input.position + kInputWindowSize) return false;
  cursor.data = input.data;
  cursor.at = input.position;
  cursor.limit = reach - kInputWindowSize;
  return true;
}

// Leaves the reader after the stretch just read, whose last tag starts at lastTag.
void moveReaderPast(const Cursor &cursor, std::size_t lastTag) {
  input.windowStart = lastTag;
  input.windowEnd = input.windowStart + kInputWindowSize;
  input.position = cursor.at;
}

bool readTrusteeBody(Cursor &cursor, char *name, char *id, char *rights) {
  if (!cursor.element("<name>", "</name>", name, kNameTextSize)) return false;
  if (!cursor.optionalElement("<id>", "</id>", id, kIdTextSize)) return false;
  // The value's bytes (and its closing quote) run up to the tag's '>', with nothing the reader
  // would stop at before it.
  if (!cursor.literal("<rights value=\"")) return false;
  cursor.at = cursor.nameEndWithin(kRightsValueLimit);
  return cursor.literal(">") && cursor.rights(rights, "</rights>") && cursor.literal("</trustee>");
}

}  // namespace

bool readPlainTrustee(char *name, char *id, char *rights) {
  name[0] = id[0] = rights[0] = '\0';
  Cursor cursor;
  if (!startAtPosition(cursor)) return false;
  if (!readTrusteeBody(cursor, name, id, rights)) {
    name[0] = id[0] = rights[0] = '\0';
    return false;
  }
  moveReaderPast(cursor, cursor.at - std::string_view("</trustee>").size());
  return true;
}

bool readPlainFileHead(char *path, std::size_t pathSize) {
  Cursor cursor;
  if (!startAtPosition(cursor)) return false;
  if (!cursor.optionalElement("<zid>", "</zid>", nullptr, kSkippedTextLimit) ||
      !cursor.element("<path>", "</path>", path, pathSize))
    return false;
  moveReaderPast(cursor, cursor.at - std::string_view("</path>").size());
  return true;
}

bool readPlainRights(char *rights, std::string_view endTag) {
  Cursor cursor;
  if (!startAtPosition(cursor) || !cursor.rights(rights, endTag)) return false;
  moveReaderPast(cursor, cursor.at - endTag.size());
  return true;
}

namespace {

// Gives tag the name `name` (a constant: copied with its size known).
template <std::size_t size>
bool giveTag(Tag &tag, const char (&name)[size], unsigned long isEndTag) {
  std::memcpy(tag.name, name, size);
  tag.length = size - 1;
  tag.isEndTag = isEndTag;
  return true;
}

// The tag at the cursor, when it is one that a save writes between entries.
bool betweenEntries(Cursor &cursor, Tag &tag) {
  if (cursor.limit - cursor.at < 2) return false;
  switch (cursor.data[cursor.at + 1]) {
  case 't':
    if (cursor.literal("<trustee>")) return giveTag(tag, "trustee", 0);
    return cursor.literal("<trustee type=\"adID\">") && giveTag(tag, kAdTrusteeElement, 0);
  case '/': return cursor.literal("</file>") && giveTag(tag, "file", 1);
  case 'f': return cursor.literal("<file>") && giveTag(tag, "file", 0);
  default: return false;
  }
}

}  // namespace

bool readPlainTag(Tag &tag) {
  Cursor cursor;
  if (!startAtPosition(cursor)) return false;
  cursor.literal("\n");
  const std::size_t tagStart = cursor.at;
  // Text up to the window's end would give a stale tag.
  if (tagStart >= input.windowEnd || !betweenEntries(cursor, tag)) return false;
  moveReaderPast(cursor, tagStart);
  return true;
}

void usePlainSteps(bool on) { plainStepsOn = on; }
