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
//
// Most steps of a real document are short tags and texts far from the window's end, from the end
// of the read-ahead and from any NUL byte. Such a step cannot meet the window's end, needs no read
// and no NUL handling, so it is taken a vector of bytes at a time ("fast steps"); every other step,
// and any fast step that meets something unusual, goes the general way, byte by byte.
#include "document/tag_reader.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "document/byte_vectors.h"
#include "document/open_index.h"
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

constexpr std::size_t kNone = OpenIndex::kNone;

// The reading state, on cache lines of its own: a restore may read on one thread while another
// sends its requests, and nothing the other thread uses must share a line with what changes here
// at every tag. Processors fetch lines in pairs, hence 128 bytes.
struct alignas(128) InputState {
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
  // The length of that empty element's name when the fast step read it (its bytes are then
  // plain name bytes, fewer than 32); otherwise kNone, and the general step takes the end tag.
  std::size_t fastPendingLength = kNone;
  // The NUL rule costs nothing while no NUL byte is near: the read-ahead is searched for NULs in
  // large stretches, and `nextNul` remembers the result. No NUL lies in [position, nextNul) at
  // any shift (when position <= nextNul); nextNul is a NUL byte or where the last search
  // stopped.
  std::size_t nextNul = 0;
  // The '<' bytes of the read-ahead.
  OpenIndex opens;
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

inline bytes16::Vector loadAt(std::size_t at) { return bytes16::load(input.data + at); }

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
  input.opens.forget();
}

// Reads ahead in large blocks until the loaded input reaches the window's full extent or the
// input ends. Returns 0, or the errno of a failed read after its message.
int readAhead() {
  if (kReadAheadSize - input.loaded < kCompactBelow) compact();
  const std::size_t before = input.loaded;
  while (input.loaded < input.windowStart + kInputWindowSize) {
    const ssize_t count = read(inputFd, input.data + input.loaded, kReadAheadSize - input.loaded);
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
  if (input.nextNul < input.windowEnd) {
    std::memset(input.data + input.nextNul, 0, input.windowEnd - input.nextNul);
    input.opens.forgetFrom(input.nextNul);
  }
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

// The fast steps.
//
// A fast step starts only when the window is whole, holds no NUL byte, and the '<' it is going to
// stop at lies inside it, with a whole window and kStepReach bytes more loaded past that '<'. A
// shift to that '<' then needs no read and carries no NUL over, and the step reads nothing past
// the new window.
constexpr std::size_t kStepReach = 256;

// Searches on for NUL bytes when the last search stopped short of the window's end. True when
// the whole window is free of them.
[[gnu::noinline]] bool searchNulsAhead() {
  searchNulOn();
  return input.nextNul >= input.windowStart + kInputWindowSize;
}

// Where a fast step stops: the next '<', when the ground allows a fast step there, else kNone.
// Shifting the window there (shiftTo) then needs no read. Makes no call: when the '<' index is
// used up or behind, or the search for NUL bytes is behind the window, it gives kNone, and
// readyFastStep() catches up.
[[gnu::always_inline]] inline std::size_t fastStepTarget() {
  if (input.pendingEmptyEnd || input.inCdata) return kNone;
  const std::size_t end = input.windowStart + kInputWindowSize;
  if (input.nextNul < end) return kNone;
  // A target inside the window with a whole window and more loaded past it implies a whole
  // window now.
  const std::size_t open = input.opens.peek();
  if (open < input.position || open >= end || input.loaded < open + kInputWindowSize + kStepReach)
    return kNone;
  return open;
}

// Catches up with what fastStepTarget() does not do itself: searches on for NUL bytes, and
// indexes more '<' bytes. True when a fast step may be tried again.
[[gnu::noinline]] bool readyFastStep() {
  if (input.pendingEmptyEnd || input.inCdata) return false;
  const std::size_t end = input.windowStart + kInputWindowSize;
  if (input.loaded < end) return false;
  if (input.nextNul < end && !searchNulsAhead()) return false;
  return input.opens.next(input.data, input.loaded, input.position) != kNone;
}

// fastStepTarget(), having caught up first when needed.
inline std::size_t fastStepTargetReady() {
  const std::size_t open = fastStepTarget();
  if (open != kNone || !readyFastStep()) return open;
  return fastStepTarget();
}

// The window starts again at `at`, the target of a fast step: nothing to carry as a string, and
// the read-ahead already holds the whole new window. (When `at` is the window's start already,
// this stores what is there.)
inline void shiftTo(std::size_t at) {
  input.windowStart = at;
  input.windowEnd = at + kInputWindowSize;
  input.position = at;
}

// What a fast step of readTag came to.
enum class FastStep {
  taken,     // the tag is read
  notReady,  // nothing was done: the ground may allow a fast step once readyFastStep() ran
  general,   // the step has begun; the general way must go on from where it stopped
};

// Whether the type="adID" marker stands at `at`: two overlapping words, no call.
inline bool isAdMarkerAt(std::size_t at) {
  static_assert(kAdMarkerLength > 8 && kAdMarkerLength <= 12);
  constexpr std::size_t kTail = kAdMarkerLength - 4;
  std::uint64_t head;
  std::uint32_t tail;
  std::uint64_t markerHead;
  std::uint32_t markerTail;
  std::memcpy(&head, input.data + at, sizeof head);
  std::memcpy(&tail, input.data + at + kTail, sizeof tail);
  std::memcpy(&markerHead, kAdMarker, sizeof markerHead);
  std::memcpy(&markerTail, kAdMarker + kTail, sizeof markerTail);
  return head == markerHead && tail == markerTail;
}

// The attributes of a tag read by a fast step, from the blank after its name at `at`: appends
// each type="adID" marker that follows a blank to the name, and gives where the tag ends (its '>'
// or '/'), or kNone when that is not within 64 bytes.
inline std::size_t readAttributes(std::size_t at, char *name, std::size_t &length) {
  for (std::size_t block = at; block < at + 64; block += bytes16::kSize) {
    const bytes16::Vector bytes = loadAt(block);
    const unsigned ends = bytes16::equal(bytes, '>') | bytes16::equal(bytes, '/');
    unsigned blanks = bytes16::blanks(bytes);
    if (ends != 0) blanks &= (1u << __builtin_ctz(ends)) - 1;
    for (; blanks != 0; blanks &= blanks - 1) {
      const std::size_t blank = block + static_cast<std::size_t>(__builtin_ctz(blanks));
      if (isAdMarkerAt(blank + 1))
        appendName(name, length, input.data + blank, 1 + kAdMarkerLength);
    }
    if (ends != 0) return block + static_cast<std::size_t>(__builtin_ctz(ends));
  }
  return kNone;
}

// A fast readTag. Makes no call, so that the usual step saves no registers.
[[gnu::always_inline]] inline FastStep readTagFast(char *name, unsigned long *isEndTag,
                                                   std::size_t &nameLength) {
  if (input.pendingEmptyEnd) {
    // The end of an empty element whose name the fast step read: its bytes are still there, and
    // its "/>" lies inside the window.
    const std::size_t length = input.fastPendingLength;
    if (length == kNone) return FastStep::general;
    std::memcpy(name, input.data + input.position, 32);
    name[length] = '\0';
    nameLength = length;
    input.position = input.emptyEndPosition + 2;
    input.pendingEmptyEnd = false;
    *isEndTag = 1;
    return FastStep::taken;
  }
  const std::size_t open = fastStepTarget();
  if (open == kNone) return FastStep::notReady;
  if (open != input.position) *isEndTag = 0;  // as the general step leaves it after a text
  shiftTo(open);
  input.opens.pass();  // this '<' is passed, whichever way the tag is read
  const char first = input.data[open + 1];
  if (first == '!') return FastStep::general;  // CDATA, or a name that starts with '!'
  const unsigned long endTag = first == '/' ? 1 : 0;
  const std::size_t nameStart = open + 1 + endTag;
  // The name runs up to '>', '/', a blank or a NUL byte, all of them at most '>': look at those
  // bytes only. Names of more than 31 bytes go the general way.
  std::uint32_t candidates = bytes16::atMost(loadAt(nameStart), '>') |
                             bytes16::atMost(loadAt(nameStart + bytes16::kSize), '>')
                                 << bytes16::kSize;
  std::size_t length = 0;
  for (;; candidates &= candidates - 1) {
    if (candidates == 0) return FastStep::general;
    length = static_cast<std::size_t>(__builtin_ctz(candidates));
    if (kNameClass[static_cast<unsigned char>(input.data[nameStart + length])] != kNameByte) break;
  }
  std::memcpy(name, input.data + nameStart, 32);
  std::size_t at = nameStart + length;
  const char stop = input.data[at];
  if (stop == '>') {
    name[length] = '\0';
    nameLength = length;
    *isEndTag = endTag;
    input.position = at + 1;
    return FastStep::taken;
  }
  if (stop == '\0') return FastStep::general;
  if (stop != '/') {
    at = readAttributes(at, name, length);
    if (at == kNone) return FastStep::general;
  }
  name[length] = '\0';
  nameLength = length;
  *isEndTag = endTag;
  if (input.data[at] == '>') {
    input.position = at + 1;
  } else {  // an empty element: its end tag comes next
    input.pendingEmptyEnd = true;
    input.emptyEndPosition = at;
    input.fastPendingLength =
        at == nameStart + length ? length : kNone;  // no attributes in between
    input.position = nameStart;
  }
  return FastStep::taken;
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
  input.fastPendingLength = kNone;
  input.position = nameStart;
  return 0;
}

// readTag the general way, without the -d trace; also gives the name's length.
[[gnu::noinline]] int readTagGeneral(char *name, unsigned long *isEndTag, std::size_t &nameLength) {
  if (input.pendingEmptyEnd) {
    std::size_t length = 0;
    appendName(name, length, input.data + input.position, input.emptyEndPosition - input.position);
    name[length] = '\0';
    nameLength = std::strlen(name);  // the name may hold a NUL byte
    input.position = std::min(input.emptyEndPosition + 2, input.windowEnd);
    input.pendingEmptyEnd = false;
    *isEndTag = 1;
    return 0;
  }
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

// readTag after a fast step that was not taken, with the -d trace.
[[gnu::noinline]] int readTagSlow(FastStep step, char *name, unsigned long *isEndTag,
                                  const char *label, std::size_t &nameLength) {
  if (step == FastStep::notReady && readyFastStep()) step = readTagFast(name, isEndTag, nameLength);
  const int result = step == FastStep::taken ? 0 : readTagGeneral(name, isEndTag, nameLength);
  if (debug) [[unlikely]]
    std::printf("**%s** ccode=%d  endtag=%lu  tag=%s\n", label, result, *isEndTag, name);
  return result;
}

// readTag with the name's length, for the readers below. With -d every step goes through
// readTagSlow(), for its trace.
[[gnu::always_inline]] inline int readTagMeasured(char *name, unsigned long *isEndTag,
                                                  const char *label, std::size_t &nameLength) {
  const FastStep step = debug ? FastStep::notReady : readTagFast(name, isEndTag, nameLength);
  if (step == FastStep::taken) [[likely]]
    return 0;
  return readTagSlow(step, name, isEndTag, label, nameLength);
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
  // The same for bytes of the read-ahead in a fast step, which has at least 64 bytes past them:
  // a short text is copied as 64 bytes whenever the field has room for that.
  void appendFromReadAhead(const char *bytes, std::size_t count) {
    if (count <= 64 && size - length > 64) {
      for (std::size_t at = 0; at < 64; at += bytes16::kSize)
        bytes16::store(text + length + at, bytes16::load(bytes + at));
      length += count;
    } else {
      append(bytes, count);
    }
  }
  int finish(int result) {
    text[length] = '\0';
    return result;
  }
};

// The fast step of readContents: a text up to the next '<', or a CDATA text whose "]]>" stands
// just before the next '<' with no other ']' before it. Returns false when the general way must
// go on from where it stopped.
[[gnu::always_inline]] inline bool readContentsFast(TextField &field) {
  const std::size_t open = fastStepTargetReady();
  if (open == kNone) return false;
  field.appendFromReadAhead(input.data + input.position, open - input.position);
  shiftTo(open);
  if (!startsWith(open, kCdataOpen, kCdataOpenLength)) return true;
  input.inCdata = true;
  input.position = open + kCdataOpenLength;
  const std::size_t next = input.opens.next(input.data, input.loaded, input.position);
  if (next >= input.windowEnd || next < input.position + 3 || !startsWith(next - 3, "]]>", 3))
    return false;
  const std::size_t close = next - 3;
  for (std::size_t at = input.position; at < close; at += bytes16::kSize) {
    unsigned brackets = bytes16::equal(loadAt(at), ']');
    if (close - at < bytes16::kSize) brackets &= (1u << (close - at)) - 1;
    if (brackets != 0) return false;
  }
  field.appendFromReadAhead(input.data + input.position, close - input.position);
  input.inCdata = false;
  input.position = close + 1;  // left on the second ']'
  return true;
}

// readContents the general way, from where the fast step left the field.
[[gnu::noinline]] int readContentsGeneral(TextField &field) {
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
  if (readContentsFast(field)) [[likely]]
    return field.finish(0);
  return readContentsGeneral(field);
}

namespace {

// The usual case of goPastEndTag: its end tag comes next, as a plain "</name>" that a fast step
// would read. Passes it and returns true; false (nothing done) for any other case.
inline bool passEndTagFast(std::string_view name) {
  if (debug || name.size() >= 32) return false;
  const std::size_t open = fastStepTarget();
  if (open == kNone) return false;
  const char *const tag = input.data + open;
  if (tag[1] != '/' || tag[2 + name.size()] != '>') return false;
  // The same bytes, none of them one that ends a name (the fast step would stop there).
  for (std::size_t at = 0; at < name.size(); ++at)
    if (tag[2 + at] != name[at] || kNameClass[static_cast<unsigned char>(name[at])] != kNameByte)
      return false;
  shiftTo(open);
  input.opens.pass();
  input.position = open + 3 + name.size();
  return true;
}

// goPastEndTag after its usual case.
[[gnu::noinline]] int goPastEndTagSlow(std::string_view name) {
  Tag tag;
  for (;;) {
    if (readTagMeasured(tag.name, &tag.isEndTag, "goPastEndTag", tag.length) != 0) {
      std::fprintf(stderr, "Unable to find end tag: %.*s\n", static_cast<int>(name.size()),
                   name.data());
      return -1;
    }
    if (tag.isEnd(name)) return 0;
  }
}

}  // namespace

int goPastEndTag(std::string_view name) {
  if (passEndTagFast(name)) return 0;
  return goPastEndTagSlow(name);
}

void getRights(char *out, std::string_view endName, std::size_t outSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  out[0] = '\0';
  std::size_t length = 0;
  Tag tag;
  while (readTagMeasured(tag.name, &tag.isEndTag, "getRights", tag.length) == 0) {
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

void resetTagReader() {
  input.loaded = input.windowStart = input.windowEnd = input.position = 0;
  input.inCdata = false;
  input.pendingEmptyEnd = false;
  input.emptyEndPosition = 0;
  input.fastPendingLength = kNone;
  input.nextNul = 0;
  input.opens.forget();
}
