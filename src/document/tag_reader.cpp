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
#include <string_view>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader_state.h"

tag_reader_state::InputState tag_reader_state::input;

namespace {

// Compact when less than this much room is left behind the loaded data.
constexpr std::size_t kCompactBelow = 64 * 1024;
constexpr std::string_view kCdataOpen = "<![CDATA[";
constexpr std::string_view kAdMarker = "type=\"adID\"";

using tag_reader_state::endsName;
using tag_reader_state::input;
using tag_reader_state::isBlank;
using tag_reader_state::kReadAheadSize;

inline bool startsWith(std::size_t at, std::string_view text) {
  return at + text.size() <= input.windowEnd &&
         std::memcmp(input.data + at, text.data(), text.size()) == 0;
}

// The offset of the first byte c in [from, to), or `to`.
std::size_t find(char c, std::size_t from, std::size_t to) {
  const void *hit = std::memchr(input.data + from, c, to - from);
  return hit != nullptr ? static_cast<std::size_t>(static_cast<const char *>(hit) - input.data)
                        : to;
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
    input.consumed += static_cast<std::size_t>(count);
  }
  return 0;
}

// Tops the window up to 8,192 bytes. Returns 0, kEndOfInput for an empty window, or the errno of
// a failed read.
int topUp() {
  if (input.loaded < input.windowStart + kInputWindowSize) {
    if (const int error = readAhead(); error != 0) return error;
  }
  input.windowEnd = std::min(input.windowStart + kInputWindowSize, input.loaded);
  return input.windowEnd == input.windowStart ? kEndOfInput : 0;
}

}  // namespace

void tag_reader_state::searchNulOn() {
  const std::size_t from = std::max(input.position, input.nextNul);
  input.nextNul = find('\0', from, input.loaded);
}

namespace {

// The window starts again at the position; its unread rest is carried over as a string: when a
// NUL byte may lie in that rest, the bytes after the first one turn into NULs.
void shift() {
  if (input.nextNul < input.windowEnd) {
    tag_reader_state::searchNulOn();
    if (input.nextNul < input.windowEnd)
      std::memset(input.data + input.nextNul, 0, input.windowEnd - input.nextNul);
  }
  input.windowStart = input.position;
}

// Appends to a tag name, keeping at most kTagNameSize - 1 bytes.
void appendName(char *name, std::size_t &length, const char *bytes, std::size_t count) {
  const std::size_t room = kTagNameSize - 1 - length;
  if (count > room) count = room;
  std::memcpy(name + length, bytes, count);
  length += count;
}

// Parses the tag whose '<' is at the position (the window's start). The name runs up to '>', '/'
// or a blank (a NUL byte in it ends it as a string); of the rest, only the type="adID" marker
// after a blank (with that blank) joins the name. A tag cut off by the window's end is taken as
// ending there; one that ends with '/' is an empty element.
int parseTag(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  std::size_t at = input.position + 1;
  *isEndTag = 0;
  if (at < end && data[at] == '/') {
    *isEndTag = 1;
    ++at;
  }
  const std::size_t nameStart = at;
  std::size_t length = 0;
  for (; at < end && !endsName(data[at]); ++at)
    if (length < kTagNameSize - 1) name[length++] = data[at];
  for (; at < end && data[at] != '>' && data[at] != '/'; ++at) {
    if (isBlank(data[at]) && startsWith(at + 1, kAdMarker)) {
      appendName(name, length, data + at, 1 + kAdMarker.size());
      at += kAdMarker.size();
    }
  }
  name[length] = '\0';
  nameLength = std::strlen(name);
  input.position = at;
  if (at == end) return 0;
  if (data[at] == '>') {
    ++input.position;
    return 0;
  }
  // An empty element: the next readTag gives its end tag (see readEmptyElementEnd).
  input.pendingEmptyEnd = true;
  input.emptyEndPosition = at;
  input.position = nameStart;
  return 0;
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
// (Found::tag), a '<' past the window's start, where the window must shift (Found::nextWindow),
// or the window's end (Found::onlyText). Text skipped on the way makes *isEndTag 0 (a tag
// returned stale after it is a start tag).
Found scanForTag(unsigned long *isEndTag) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  std::size_t &position = input.position;
  while (position != end) {
    const char c = data[position];
    if (c == '<' && position > input.windowStart) return Found::nextWindow;
    if (input.inCdata) {
      if (c == ']' && startsWith(position, "]]>")) {
        input.inCdata = false;
        position += 3;
      } else {
        ++position;
      }
    } else if (c != '<') {
      *isEndTag = 0;
      position = find('<', position, end);
    } else if (startsWith(position, kCdataOpen)) {
      input.inCdata = true;
      ++position;
    } else {
      return Found::tag;
    }
  }
  return Found::onlyText;
}

// readTag without the -d trace; also gives the name's length.
int readTagGeneral(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  if (input.pendingEmptyEnd) return readEmptyElementEnd(name, isEndTag, nameLength);
  for (;;) {
    if (const int result = topUp(); result != 0) {
      if (result == kEndOfInput) {
        name[0] = '\0';
        nameLength = 0;
      }
      return result;
    }
    const Found found = scanForTag(isEndTag);
    if (found == Found::tag) return parseTag(name, isEndTag, nameLength);
    shift();
    if (found == Found::onlyText) {
      // Only text was left: the caller gets the previous tag again.
      nameLength = std::strlen(name);
      return 0;
    }
  }
}

// readTag with the name's length.
int readTagTraced(char *name, unsigned long *isEndTag, const char *label, std::size_t &nameLength) {
  const int result = readTagGeneral(name, isEndTag, nameLength);
  if (debug) std::printf("**%s** ccode=%d  endtag=%lu  tag=%s\n", label, result, *isEndTag, name);
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
// (Found::nextWindow) or the window's end (Found::onlyText).
Found scanContents(TextField &field) {
  const char *const data = input.data;
  const std::size_t end = input.windowEnd;
  std::size_t &position = input.position;
  while (position != end) {
    const std::size_t at = position;
    const char c = data[at];
    // Inside CDATA too, a '<' past the window's start shifts the window.
    if (c == '<' && at > input.windowStart) return Found::nextWindow;
    if (input.inCdata) {
      if (c == ']' && startsWith(at, "]]>")) {
        input.inCdata = false;
        position += 1;  // left on the second ']'
        return Found::tag;
      }
      position = find('<', at + 1, find(']', at + 1, end));
    } else if (c != '<') {
      position = find('<', at, end);
    } else if (startsWith(at, kCdataOpen)) {
      input.inCdata = true;
      position += kCdataOpen.size();
      continue;
    } else {
      return Found::tag;
    }
    field.append(data + at, position - at);
  }
  return Found::onlyText;
}

}  // namespace

int readTag(char *name, unsigned long *isEndTag, const char *label) {
  std::size_t nameLength = 0;
  return readTagTraced(name, isEndTag, label, nameLength);
}

int readTag(Tag &tag, const char *label) {
  return readTagTraced(tag.name, &tag.isEndTag, label, tag.length);
}

int readContents(char *text, std::size_t textSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  if (input.pendingEmptyEnd) {
    text[0] = '\0';
    return 0;
  }
  TextField field{text, textSize, tooLong};
  for (;;) {
    if (const int result = topUp(); result == kEndOfInput) {
      text[0] = '\0';
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

// Runs of tags: skipping to an end tag, and gathering the elements of a rights list.

int goPastEndTag(std::string_view name) {
  Tag tag;
  for (;;) {
    if (readTag(tag, "goPastEndTag") != 0) {
      std::fprintf(stderr, "Unable to find end tag: %.*s\n", static_cast<int>(name.size()),
                   name.data());
      return kOwnFailure;
    }
    if (tag.isEnd(name)) return 0;
  }
}

void getRights(char *out, std::string_view endName, std::size_t outSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  out[0] = '\0';
  std::size_t length = 0;
  Tag tag;
  while (readTag(tag, "getRights") == 0) {
    if (tag.isEndTag == 0) {
      if (length + tag.length + 3 < outSize) {
        out[length] = '<';
        std::memcpy(out + length + 1, tag.name, tag.length);
        std::memcpy(out + length + 1 + tag.length, "/>", 3);
        length += tag.length + 3;
      } else if (tooLong != nullptr) {
        *tooLong = true;
      }
    } else if (tag.isEnd(endName)) {
      break;
    }
  }
}

void readOnlyWithinWindow(bool windowOnly) { input.windowOnly = windowOnly; }

void resetTagReader() {
  input.consumed = input.loaded = input.windowStart = input.windowEnd = input.position = 0;
  input.inCdata = false;
  input.pendingEmptyEnd = false;
  input.emptyEndPosition = 0;
  input.nextNul = 0;
  input.windowOnly = false;
}
