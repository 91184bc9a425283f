// Fast steps of the tag reader over the parts of a trustee section in the plain form a save
// writes. A step either reads its whole stretch at once, giving the texts and leaving the reader
// exactly where the general reader would be after reading the same tags and texts one at a time
// (readTag, readContents, goPastEndTag, getRights), or reads nothing and returns false; the caller
// then reads the stretch the general way. A step reads nothing with -d (the trace shows every
// tag), near the end of the input or of the read-ahead, near a NUL byte, or when a value would not
// fit its field.
#pragma once
#include <cstddef>
#include <string_view>

#include "document/tag_reader.h"

// After a trustee's start tag: <name>TEXT</name>, optionally <id>TEXT</id>, then
// <rights value="LETTERS">, its right elements as <x/>, and </rights></trustee>. A TEXT is plain
// text or one CDATA section. Fills name (kNameTextSize bytes), id (kIdTextSize; "" when there is no
// id) and rights (kRightsListSize) as the general reader would; on false all three are "".
bool readPlainTrustee(char *name, char *id, char *rights);

// After a file's start tag: optionally <zid>TEXT</zid>, then <path>TEXT</path>. Fills path
// (pathSize bytes) with the path's text as readContents would.
bool readPlainFileHead(char *path, std::size_t pathSize);

// After a start tag whose rights list follows: its right elements as <x/>, then the end tag
// `endTag` (written whole, "</inheritedRightsFilter>" say). Fills rights (kRightsListSize bytes)
// as getRights would.
bool readPlainRights(char *rights, std::string_view endTag);

// After at most one line end, one of the tags a save writes between entries (<file>, </file>,
// <trustee>, <trustee type="adID">), read into tag as readTag would read it.
bool readPlainTag(Tag &tag);

// Turns the fast steps off (every step then returns false) or on again (the default). For tests
// that compare them with the general reader.
void usePlainSteps(bool on);
