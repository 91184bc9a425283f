// Filters that cut elements out of an info file's text before it is copied into the Metadata
// document. Texts are NUL-terminated buffers with a separately carried length; the text ends at
// its first NUL.
#pragma once

#include <cstddef>

// Removes every element that starts with <startName> and ends with the next </endName>, each
// with the line feed right after it. The tags are matched literally, so <trustee> does not match
// <trustee type="adID">. Returns 0, or kOwnFailure for a missing argument or after "Missing end
// tag : %s" (the elements before the unmatched one are removed all the same).
int removeElements(char *text, int *length, const char *startName, const char *endName);

// Removes every <elementName> element whose path does not begin with `path`. The path value
// starts 15 characters after "<path>" for "file" (past the CDATA opener) and 6 for "directory".
// "<path>" is searched from the element's start without regard to its end, so an element without
// a path of its own is judged by the next one's. From an element without an end tag on, the text
// is left as it is; that rest is copied into scratch (room for *length + 2 bytes) and its length
// taken off *length.
void filterByPath(char *text, int *length, const char *path, char *scratch,
                  const char *elementName);

// The same filters for a text known to hold no NUL before *length, so that its size is not
// measured again. filterByPathWhole returns the size of the text left in place, which is *length
// plus the unfiltered rest (see above).
int removeElementsWhole(char *text, int *length, const char *startName, const char *endName);
std::size_t filterByPathWhole(char *text, int *length, const char *path, char *scratch,
                              const char *elementName);

// Deletes count characters at position, and the line feed right after them if there is one; the
// rest of the text moves down, terminator included, and the characters removed come off *length.
void removeRange(char *position, int count, int *length);

// The bounded tag texts of the filters (characters, without the terminator).
inline constexpr int kRemoveStartTagMax = 24;
inline constexpr int kRemoveEndTagMax = 10;
inline constexpr int kFilterStartTagMax = 11;
inline constexpr int kFilterEndTagMax = 12;
inline constexpr int kFilePathValueOffset = 15;      // "<path>" + "<![CDATA["
inline constexpr int kDirectoryPathValueOffset = 6;  // "<path>"
