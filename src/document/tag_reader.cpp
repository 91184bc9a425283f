// The streaming tag reader.
//
// What the reader sees at every step is an 8,192-byte window over the input: each pass begins by
// topping the window up to 8,192 bytes, and the window's start moves forward ("shifts") only when
// a '<' is met past its first byte or when the scan reaches the window's end. A tag is therefore
// parsed only with its '<' at the window's start, and a text that runs past the window's end is
// cut there. When the window shifts, its unread rest is carried over as a NUL-terminated string:
// everything after a NUL byte in that rest turns into NULs.
//
// The window is kept as offsets into a larger read-ahead buffer, so that a tag costs no copy:
// shifting moves an offset, and the buffer is compacted only when the read-ahead runs out.
// Reading ahead does not change what the window holds, because the window's extent is computed
// from its start, never from how much the last read() returned.
#include "document/tag_reader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "document/name_scan.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader_state.h"

tag_reader_state::InputState tag_reader_state::input;

namespace {

// Compact when less than this much room is left behind the loaded data.
constexpr std::size_t kCompactBelow = 64 * 1024;
constexpr char kCdataOpen[] = "<![CDATA[";
constexpr std::size_t kCdataOpenLength = sizeof kCdataOpen - 1;
constexpr char kAdMarker[] = "type=\"adID\"";
constexpr std::size_t kAdMarkerLength = sizeof kAdMarker - 1;

using tag_reader_state::input;
using tag_reader_state::kReadAheadSize;
using tag_reader_state::searchNulOn;

inline bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');  // the C locale's white space
}

inline bool startsWith(std::size_t at, const char *text, std::size_t length) {
  return at + length <= input.windowEnd && std::memcmp(input.data + at, text, length) == 0;
}

// Moves the unread input to the front of the read-ahead buffer.
void compact() {
  const std::size_t offset = input.windowStart;
  std::memmove(input.data, input.data + offset, input.loaded - offset);
  input.loaded -= offset;
  input.windowStart = 0;
  input.windowEnd -= offset;
  input.position -= offset;
  if (input.pendingEmptyEnd) input.emptyEndPosition -= offset;
  input.nextNul = input.nextNul > offset ? input.nextNul - offset : 0;
}

// Reads ahead until the loaded input reaches the window's full extent or the input ends: in large
// blocks, or with windowOnly up to the window's end and no further. Returns 0, or the errno of a
// failed read after its message.
int readAhead() {
  if (kReadAheadSize - input.loaded < kCompactBelow) compact();
  const std::size_t before = input.loaded;
  const std::size_t extent = input.windowStart + kInputWindowSize;
  while (input.loaded < extent) {
    const std::size_t room = (input.windowOnly ? extent : kReadAheadSize) - input.loaded;
    const ssize_t count = read(inputFd, input.data + input.loaded, room);
    if (count == 0) break;
    if (count < 0) {
      if (input.loaded > before) break;  // use what came; the next refill meets the error again
      const int error = errno;
      std::fprintf(stderr, "Error %m reading the input file.\n");
      return error;
    }
    input.loaded += static_cast<std::size_t>(count);
  }
  return 0;
}

// Tops the window up to 8,192 bytes. Returns 0, or the errno of a failed read.
inline int refill() {
  if (input.loaded < input.windowStart + kInputWindowSize) [[unlikely]] {
    if (const int error = readAhead(); error != 0) return error;
  }
  input.windowEnd = std::min(input.windowStart + kInputWindowSize, input.loaded);
  return 0;
}

}  // namespace

void tag_reader_state::searchNulOn() {
  const std::size_t from = std::max(input.position, input.nextNul);
  const void *nul = std::memchr(input.data + from, 0, input.loaded - from);
  input.nextNul = nul != nullptr
                      ? static_cast<std::size_t>(static_cast<const char *>(nul) - input.data)
                      : input.loaded;
}

namespace {

// A NUL byte lies in the window's unread rest, or the last search for one stopped short of the
// window's end: search on through the read-ahead, and turn the bytes of the rest that follow its
// first NUL into NULs.
[[gnu::noinline]] void carryRestAsString() {
  searchNulOn();
  if (input.nextNul < input.windowEnd)
    std::memset(input.data + input.nextNul, 0, input.windowEnd - input.nextNul);
}

// The window starts again at `position`; its unread rest is carried over as a string.
inline void shift() {
  if (input.nextNul < input.windowEnd) [[unlikely]]
    carryRestAsString();
  input.windowStart = input.position;
}

// shift and refill at once, when the window shifted to `position` is full at once and no NUL is
// near: start and end become the new window's. False, with nothing changed, otherwise.
inline bool shiftWithinLoaded(std::size_t position, std::size_t &start, std::size_t &end) {
  if (input.nextNul < end || input.loaded < position + kInputWindowSize) [[unlikely]]
    return false;
  start = input.windowStart = position;
  end = input.windowEnd = position + kInputWindowSize;
  return true;
}

// A scan's copy of the window's offsets, the position and the CDATA state, held in locals (stores
// into the caller's text may then not be taken as changing them).
struct Scan {
  const char *data = input.data;
  std::size_t start = input.windowStart;
  std::size_t end = input.windowEnd;
  std::size_t position = input.position;
  bool inCdata = input.inCdata;

  // Whether the byte c at the position is a '<' past the window's start that the caller must
  // shift the window to (one that shiftWithinLoaded cannot shift to at once).
  bool leavesWindow(char c) {
    return c == '<' && position > start && !shiftWithinLoaded(position, start, end);
  }
};

// Tops the window up when it is short of 8,192 bytes (a full one needs nothing: what is loaded
// reaches at least its end). Returns 0, kEndOfInput for an empty window, or an errno value.
inline int topUp() {
  if (input.windowEnd - input.windowStart == kInputWindowSize) [[likely]]
    return 0;
  if (const int error = refill(); error != 0) return error;
  return input.windowEnd == input.windowStart ? kEndOfInput : 0;
}

// Appends to a tag name, keeping at most kTagNameSize - 1 bytes.
void appendName(char *name, std::size_t &length, const char *bytes, std::size_t count) {
  const std::size_t room = kTagNameSize - 1 - length;
  if (count > room) count = room;
  std::memcpy(name + length, bytes, count);
  length += count;
}

// The rest of a tag after its name: only the type="adID" marker after a blank (with that blank)
// joins the name, up to the '>' or '/' or the window's end. Returns where that scan stopped.
std::size_t scanAttributes(char *name, std::size_t &length, std::size_t at) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  while (at < end) {
    at = nameEnd(data, at, end);
    if (at == end || data[at] == '>' || data[at] == '/') break;
    if (isBlank(data[at]) && startsWith(at + 1, kAdMarker, kAdMarkerLength)) {
      appendName(name, length, data + at, 1 + kAdMarkerLength);
      at += 1 + kAdMarkerLength;
    } else {
      ++at;  // a blank, or a NUL byte (an ordinary byte here)
    }
  }
  return at;
}

// The name of a tag that holds a NUL byte before its end: gathered byte by byte, as a string.
[[gnu::noinline]] std::size_t gatherNulName(char *name, std::size_t &length,
                                            std::size_t nameStart) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  std::size_t at = nameStart;
  for (; at < end && data[at] != '>' && data[at] != '/' && !isBlank(data[at]); ++at)
    if (length < kTagNameSize - 1) name[length++] = data[at];
  return at;
}

// The tag just parsed, whose name starts at nameStart, ends with the '/' at `at`: an empty
// element, whose end tag the next readTag gives (see readEmptyElementEnd).
inline int awaitEmptyEnd(std::size_t nameStart, std::size_t at) {
  input.pendingEmptyEnd = true;
  input.emptyEndPosition = at;
  input.position = nameStart;
  return 0;
}

// A tag whose name is followed by something else than '>': its attributes, a tag cut off by the
// window's end, or an empty element (whose end tag comes next, see readEmptyElementEnd).
[[gnu::noinline]] int parseTagRest(char *name, std::size_t nameStart, std::size_t at,
                                   std::size_t &nameLength) {
  std::size_t length = std::min(at - nameStart, kTagNameSize - 1);
  const bool nulInName = at < input.windowEnd && input.data[at] == '\0';
  if (nulInName) {
    length = 0;
    at = gatherNulName(name, length, nameStart);
  }
  at = scanAttributes(name, length, at);
  name[length] = '\0';
  nameLength = nulInName ? std::strlen(name) : length;
  input.position = at;
  // A tag cut off by the end of the data is taken as ending there.
  if (at == input.windowEnd) return 0;
  if (input.data[at] == '>') {
    ++input.position;
    return 0;
  }
  return awaitEmptyEnd(nameStart, at);
}

// Parses the tag whose '<' is at `position` (the window's start). Sets nameLength. The window's
// offsets are held in locals: stores into name may not be taken as changing them.
inline int parseTag(std::size_t position, char *name, unsigned long *isEndTag,
                    std::size_t &nameLength) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  std::size_t at = position + 1;
  unsigned long endTag = 0;
  if (at < end && data[at] == '/') {
    endTag = 1;
    ++at;
  }
  *isEndTag = endTag;
  const std::size_t nameStart = at;
  at = nameEnd(data, at, end);
  // The name proper is copied whole (the buffer's padding keeps this inside it), then cut; a
  // short name in one 16-byte copy.
  if (at - nameStart < 16)
    std::memcpy(name, data + nameStart, 16);
  else
    std::memcpy(name, data + nameStart, kTagNameSize);
  if (at < end && (data[at] == '>' || data[at] == '/')) [[likely]] {
    const std::size_t length = std::min(at - nameStart, kTagNameSize - 1);
    name[length] = '\0';
    nameLength = length;
    if (data[at] == '/') return awaitEmptyEnd(nameStart, at);
    input.position = at + 1;
    return 0;
  }
  return parseTagRest(name, nameStart, at, nameLength);
}

// The end tag of the empty element just read: its name again, from the same bytes.
int readEmptyElementEnd(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  std::size_t length = 0;
  appendName(name, length, input.data + input.position, input.emptyEndPosition - input.position);
  name[length] = '\0';
  nameLength = std::strlen(name);  // the name may hold a NUL byte
  input.position = std::min(input.emptyEndPosition + 2, input.windowEnd);
  input.pendingEmptyEnd = false;
  *isEndTag = 1;
  return 0;
}

// Where the scan for the next tag stopped.
enum class Found { tag, onlyText, nextWindow };

// Moves the position on to the next tag: a '<' at the window's start that opens no CDATA section
// (Found::tag, the position then left to the caller in `position`), a '<' past the window's
// start, where the window must shift (Found::nextWindow), or the window's end
// (Found::onlyText). Text skipped on the way makes *isEndTag 0 (a tag returned stale after it is
// a start tag).
inline Found scanForTag(unsigned long *isEndTag, std::size_t &position) {
  const char *const data = input.data;
  std::size_t start = input.windowStart;
  std::size_t end = input.windowEnd;
  position = input.position;
  bool inCdata = input.inCdata;
  bool textSeen = false;
  Found found = Found::onlyText;
  while (position != end) {
    const char c = data[position];
    // The window shifts to a '<' past its start: here when it can, else by the caller.
    if (c == '<' && position > start && !shiftWithinLoaded(position, start, end)) {
      found = Found::nextWindow;
      break;
    }
    if (inCdata) [[unlikely]] {
      if (c == ']' && startsWith(position, "]]>", 3)) {
        inCdata = false;
        position += 3;
      } else {
        ++position;
      }
      continue;
    }
    if (c == '<') {
      if (position + 1 < end && data[position + 1] == '!' &&
          startsWith(position, kCdataOpen, kCdataOpenLength)) [[unlikely]] {
        inCdata = true;
        ++position;
        continue;
      }
      found = Found::tag;
      break;
    }
    textSeen = true;
    const void *next = std::memchr(data + position, '<', end - position);
    position =
        next != nullptr ? static_cast<std::size_t>(static_cast<const char *>(next) - data) : end;
  }
  if (found != Found::tag) input.position = position;
  input.inCdata = inCdata;
  if (textSeen) *isEndTag = 0;
  return found;
}

// readTag without the -d trace; also gives the name's length.
[[gnu::always_inline]] inline int readTagGeneral(char *name, unsigned long *isEndTag,
                                                 std::size_t &nameLength) {
  if (input.pendingEmptyEnd) [[unlikely]]
    return readEmptyElementEnd(name, isEndTag, nameLength);
  for (;;) {
    if (const int result = topUp(); result != 0) [[unlikely]] {
      if (result == kEndOfInput) {
        name[0] = '\0';
        nameLength = 0;
      }
      return result;
    }
    std::size_t position = 0;
    const Found found = scanForTag(isEndTag, position);
    if (found == Found::tag) return parseTag(position, name, isEndTag, nameLength);
    shift();
    if (found == Found::onlyText) {
      // Only text was left: the caller gets the previous tag again.
      nameLength = std::strlen(name);
      return 0;
    }
  }
}

// readTag with the name's length and the -d trace.
[[gnu::always_inline]] inline int readTagMeasured(char *name, unsigned long *isEndTag,
                                                  const char *label, std::size_t &nameLength) {
  const int result = readTagGeneral(name, isEndTag, nameLength);
  if (debug) [[unlikely]]
    std::printf("**%s** ccode=%d  endtag=%lu  tag=%s\n", label, result, *isEndTag, name);
  return result;
}

// A text being gathered into the caller's field: at most size - 1 bytes are kept, the rest is
// read past and marks the text as too long.
struct TextField {
  char *text;
  std::size_t size;
  bool *tooLong;
  std::size_t length = 0;

  void append(const char *bytes, std::size_t count) {
    const std::size_t room = size - 1 - length;
    if (count > room) {
      if (tooLong != nullptr) *tooLong = true;
      count = room;
    }
    std::memcpy(text + length, bytes, count);
    length += count;
  }
  int finish(int result) {
    text[length] = '\0';
    return result;
  }
};

// Gathers the text from the position into field, up to the tag that ends it (Found::tag; a
// CDATA section's end leaves the position on its second ']'), a '<' past the window's start
// (Found::nextWindow) or the window's end (Found::onlyText). As scanForTag, it shifts the window
// itself when the shifted window is full at once.
Found scanContents(TextField &field) {
  Scan scan;
  const char *const data = scan.data;
  Found found = Found::onlyText;
  while (scan.position != scan.end) {
    const std::size_t at = scan.position;
    const char c = data[at];
    if (scan.leavesWindow(c)) {
      found = Found::nextWindow;
      break;
    }
    if (scan.inCdata) {
      if (c == ']' && startsWith(at, "]]>", 3)) {
        scan.inCdata = false;
        scan.position += 1;  // left on the second ']'
        found = Found::tag;
        break;
      }
      // Inside CDATA a '<' past the window's start still shifts the window (above).
      const void *bracket = std::memchr(data + at + 1, ']', scan.end - at - 1);
      std::size_t stop = bracket != nullptr
                             ? static_cast<std::size_t>(static_cast<const char *>(bracket) - data)
                             : scan.end;
      if (const void *open = std::memchr(data + at + 1, '<', stop - at - 1))
        stop = static_cast<std::size_t>(static_cast<const char *>(open) - data);
      field.append(data + at, stop - at);
      scan.position = stop;
      continue;
    }
    if (c != '<') {
      const void *next = std::memchr(data + at, '<', scan.end - at);
      const std::size_t stop =
          next != nullptr ? static_cast<std::size_t>(static_cast<const char *>(next) - data)
                          : scan.end;
      field.append(data + at, stop - at);
      scan.position = stop;
      continue;
    }
    if (at + 1 < scan.end && data[at + 1] == '!' && startsWith(at, kCdataOpen, kCdataOpenLength)) {
      scan.inCdata = true;
      scan.position += kCdataOpenLength;
      continue;
    }
    found = Found::tag;
    break;
  }
  input.position = scan.position;
  input.inCdata = scan.inCdata;
  return found;
}

int readContentsGeneral(TextField &field) {
  for (;;) {
    if (const int result = topUp(); result == kEndOfInput) {
      field.text[0] = '\0';
      return kEndOfInput;
    } else if (result != 0) {
      return field.finish(result);
    }
    const Found found = scanContents(field);
    if (found == Found::tag) return field.finish(0);
    shift();
    if (found == Found::onlyText) return field.finish(0);
  }
}

}  // namespace

int readTag(char *name, unsigned long *isEndTag, const char *label) {
  std::size_t nameLength = 0;
  return readTagMeasured(name, isEndTag, label, nameLength);
}

int readTag(Tag &tag, const char *label) {
  return readTagMeasured(tag.name, &tag.isEndTag, label, tag.length);
}

int readContents(char *text, std::size_t textSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  if (input.pendingEmptyEnd) {
    text[0] = '\0';
    return 0;
  }
  TextField field{text, textSize, tooLong};
  return readContentsGeneral(field);
}

void readOnlyWithinWindow(bool windowOnly) { input.windowOnly = windowOnly; }

void resetTagReader() {
  input.loaded = input.windowStart = input.windowEnd = input.position = 0;
  input.inCdata = false;
  input.pendingEmptyEnd = false;
  input.emptyEndPosition = 0;
  input.nextNul = 0;
  input.windowOnly = false;
}
