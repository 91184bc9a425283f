// The streaming tag reader: pulls a Metadata document off inputFd one tag at a time through an
// 8,192-byte window. One reading state for the whole process.
#pragma once
#include <cstddef>
#include <cstring>
#include <string_view>

#include "document/completion_codes.h"
#include "document/records.h"

inline constexpr std::size_t kInputWindowSize = 8192;

// Reads the next tag into name (kTagNameSize bytes, cut to 63). Returns 0 when a tag was read
// (or, when only text was left in the window, with name and *isEndTag as they were), kEndOfInput
// at the end of input, or an errno value. `label` names the caller in the -d trace.
int readTag(char *name, unsigned long *isEndTag, const char *label);

// A tag as the walkers read it: its name with the name's length, and whether it is an end tag.
struct Tag {
  Tag() { name[0] = '\0'; }  // the bytes after the name's NUL are never looked at

  char name[kTagNameSize];
  std::size_t length = 0;  // strlen(name)
  unsigned long isEndTag = 0;

  bool is(std::string_view text) const {
    // The text's own size, often a constant: the comparison is then inlined.
    return length == text.size() && std::memcmp(name, text.data(), text.size()) == 0;
  }
  // Whether this is the end tag of `text`.
  bool isEnd(std::string_view text) const { return isEndTag != 0 && is(text); }
};

// readTag into a Tag.
int readTag(Tag &tag, const char *label);

// Copies the current element's text (up to the next tag) into text. Returns 0, kEndOfInput or an
// errno value. A text longer than textSize - 1 is still read past as usual, but only its first
// textSize - 1 bytes are kept and *tooLong (when given) is set, so that the caller can refuse it.
int readContents(char *text, std::size_t textSize, bool *tooLong = nullptr);

// Reads and drops tags up to the end tag `name`. Returns 0, or kOwnFailure after "Unable to find
// end tag".
int goPastEndTag(std::string_view name);

// Gathers the child elements of a <rights> or <inheritedRightsFilter> as "<read/><write/>..."
// into out, up to the end tag endName or a reader failure. *tooLong as for readContents.
void getRights(char *out, std::string_view endName, std::size_t outSize, bool *tooLong = nullptr);

// With windowOnly, the reader reads no further ahead than its window's end, so that the input's
// file offset never runs more than one window past what has been read (restore -n sets it: a
// process that goes on as a copy of this one then shares the rest of the input through that
// offset). Without it (the default), the input is read ahead in large blocks.
void readOnlyWithinWindow(bool windowOnly);

// Puts the reading state back to its start-of-run state. For tests.
void resetTagReader();
