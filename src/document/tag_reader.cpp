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
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "document/records.h"
#include "document/run_settings.h"

namespace {

constexpr std::size_t kReadAheadSize = std::size_t{1} << 20;
// Compact when less than this much room is left behind the loaded data.
constexpr std::size_t kCompactBelow = 64 * 1024;
constexpr char kCdataOpen[] = "<![CDATA[";
constexpr std::size_t kCdataOpenLength = sizeof kCdataOpen - 1;
constexpr char kAdMarker[] = "type=\"adID\"";
constexpr std::size_t kAdMarkerLength = sizeof kAdMarker - 1;

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
};
InputState input;

// Character classes of the tag-name scan: a name runs up to '>', '/' or a blank; a NUL byte
// ends the name as a string, and is left to the general scan.
enum : unsigned char { kNameByte = 0, kNameStop = 1, kNameBlank = 2, kNameNul = 3 };
constexpr auto kNameClass = [] {
  std::array<unsigned char, 256> table{};
  table['>'] = table['/'] = kNameStop;
  for (const unsigned char c : {' ', '\t', '\n', '\v', '\f', '\r'})
    table[c] = kNameBlank;
  table[0] = kNameNul;
  return table;
}();

inline bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');  // the C locale's white space
}

bool startsWith(std::size_t at, const char *text, std::size_t length) {
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

// Searches the read-ahead for the next NUL byte from where the last search stopped (or from the
// position, when that is further on); nextNul becomes that NUL, or the end of what is loaded.
void searchNulOn() {
  const std::size_t from = std::max(input.position, input.nextNul);
  const void *nul = std::memchr(input.data + from, 0, input.loaded - from);
  input.nextNul = nul != nullptr
                      ? static_cast<std::size_t>(static_cast<const char *>(nul) - input.data)
                      : input.loaded;
}

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

// Appends to a tag name, keeping at most kTagNameSize - 1 bytes.
void appendName(char *name, std::size_t &length, const char *bytes, std::size_t count) {
  const std::size_t room = kTagNameSize - 1 - length;
  if (count > room) count = room;
  std::memcpy(name + length, bytes, count);
  length += count;
}

// Parses the tag whose '<' is at `position` (the window's start). Sets nameLength.
inline int parseTag(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  ++input.position;
  if (input.position < input.windowEnd && input.data[input.position] == '/') {
    *isEndTag = 1;
    ++input.position;
  }
  const std::size_t nameStart = input.position;
  const char *at = input.data + input.position;
  const char *const end = input.data + input.windowEnd;
  // The name proper: up to '>', '/', a blank or the data's end. A name holding a NUL byte is
  // left to the general scan below.
  while (at < end && kNameClass[static_cast<unsigned char>(*at)] == kNameByte)
    ++at;
  std::size_t length = 0;
  const bool nulInName = at < end && kNameClass[static_cast<unsigned char>(*at)] == kNameNul;
  if (!nulInName) [[likely]] {
    length = std::min(static_cast<std::size_t>(at - (input.data + nameStart)), kTagNameSize - 1);
    std::memcpy(name, input.data + nameStart, length);
    if (at < end && *at == '>') [[likely]] {
      name[length] = '\0';
      nameLength = length;
      input.position = static_cast<std::size_t>(at - input.data) + 1;
      return 0;
    }
  } else {
    at = input.data + nameStart;
    while (at < end && *at != '>' && *at != '/' && !isBlank(*at)) {
      if (length < kTagNameSize - 1) name[length++] = *at;
      ++at;
    }
  }
  // After a blank only the type="adID" marker (with its blank) joins the name.
  bool blankSeen = false;
  while (at < end && *at != '>' && *at != '/') {
    if (isBlank(*at)) {
      blankSeen = true;
      if (startsWith(static_cast<std::size_t>(at - input.data) + 1, kAdMarker, kAdMarkerLength)) {
        appendName(name, length, at, 1 + kAdMarkerLength);
        at += 1 + kAdMarkerLength;
        continue;
      }
    } else if (!blankSeen) {
      appendName(name, length, at, 1);
    }
    ++at;
  }
  name[length] = '\0';
  nameLength = nulInName ? std::strlen(name) : length;
  input.position = static_cast<std::size_t>(at - input.data);
  // A tag cut off by the end of the data is taken as ending there.
  if (input.position == input.windowEnd) return 0;
  if (input.data[input.position] == '>') {
    ++input.position;
    return 0;
  }
  input.pendingEmptyEnd = true;
  input.emptyEndPosition = input.position;
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

// readTag without the -d trace; also gives the name's length.
int readTagGeneral(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  if (input.pendingEmptyEnd) return readEmptyElementEnd(name, isEndTag, nameLength);
  for (;;) {
    if (const int error = refill(); error != 0) [[unlikely]]
      return error;
    if (input.windowEnd == input.windowStart) [[unlikely]] {
      name[0] = '\0';
      nameLength = 0;
      return kEndOfInput;
    }
    for (;;) {
      if (input.position == input.windowEnd) [[unlikely]] {
        // Only text was left: the caller gets the previous tag again.
        shift();
        nameLength = std::strlen(name);
        return 0;
      }
      const char c = input.data[input.position];
      if (c == '<' && input.position > input.windowStart) {
        shift();
        break;
      }
      if (input.inCdata) [[unlikely]] {
        if (c == ']' && startsWith(input.position, "]]>", 3)) {
          input.inCdata = false;
          input.position += 3;
        } else {
          ++input.position;
        }
        continue;
      }
      if (c == '<') {
        if (input.position + 1 < input.windowEnd && input.data[input.position + 1] == '!' &&
            startsWith(input.position, kCdataOpen, kCdataOpenLength)) [[unlikely]] {
          input.inCdata = true;
          ++input.position;
          continue;
        }
        *isEndTag = 0;
        return parseTag(name, isEndTag, nameLength);
      }
      // Text between tags (a tag returned stale after it is a start tag): skip to the next '<'
      // or the window's end.
      *isEndTag = 0;
      const void *next =
          std::memchr(input.data + input.position, '<', input.windowEnd - input.position);
      input.position = next != nullptr
                           ? static_cast<std::size_t>(static_cast<const char *>(next) - input.data)
                           : input.windowEnd;
    }
  }
}

// readTag with the name's length and the -d trace.
int readTagMeasured(char *name, unsigned long *isEndTag, const char *label,
                    std::size_t &nameLength) {
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

int readContentsGeneral(TextField &field) {
  for (;;) {
    if (const int error = refill(); error != 0) {
      return field.finish(error);
    }
    if (input.windowEnd == input.windowStart) {
      field.text[0] = '\0';
      return kEndOfInput;
    }
    for (;;) {
      if (input.position == input.windowEnd) {
        shift();
        return field.finish(0);
      }
      const char c = input.data[input.position];
      if (c == '<' && input.position > input.windowStart) {
        shift();
        break;
      }
      if (input.inCdata) {
        if (c == ']' && startsWith(input.position, "]]>", 3)) {
          input.inCdata = false;
          input.position += 1;  // left on the second ']'
          return field.finish(0);
        }
        // Inside CDATA a '<' past the window's start still shifts the window (above).
        std::size_t end = input.position + 1;
        if (const void *bracket = std::memchr(input.data + end, ']', input.windowEnd - end);
            bracket != nullptr)
          end = static_cast<std::size_t>(static_cast<const char *>(bracket) - input.data);
        else
          end = input.windowEnd;
        if (const void *open =
                std::memchr(input.data + input.position + 1, '<', end - input.position - 1);
            open != nullptr)
          end = static_cast<std::size_t>(static_cast<const char *>(open) - input.data);
        field.append(input.data + input.position, end - input.position);
        input.position = end;
        continue;
      }
      if (c != '<') {
        const void *next =
            std::memchr(input.data + input.position, '<', input.windowEnd - input.position);
        const std::size_t end =
            next != nullptr ? static_cast<std::size_t>(static_cast<const char *>(next) - input.data)
                            : input.windowEnd;
        field.append(input.data + input.position, end - input.position);
        input.position = end;
        continue;
      }
      if (startsWith(input.position, kCdataOpen, kCdataOpenLength)) {
        input.inCdata = true;
        input.position += kCdataOpenLength;
        continue;
      }
      return field.finish(0);
    }
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
  input.loaded = input.windowStart = input.windowEnd = input.position = 0;
  input.inCdata = false;
  input.pendingEmptyEnd = false;
  input.emptyEndPosition = 0;
  input.nextNul = 0;
  input.windowOnly = false;
}
