// A literal tag reader kept only as a test reference: it copies the 8,192-byte window through a
// scratch area at every shift, exactly as the window rules are written, and reads straight into
// the window. Given the input in one piece (a regular file), it must agree with the reader.
#pragma once
#include <cstddef>

namespace oracle {

int readTag(char *name, unsigned long *isEndTag, const char *label);
int readContents(char *text, std::size_t textSize, bool *tooLong = nullptr);
int goPastEndTag(const char *name);
void getRights(char *out, const char *endName, std::size_t outSize, bool *tooLong = nullptr);
void resetTagReader();

}  // namespace oracle
