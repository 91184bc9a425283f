// A legacy report made ready for the report reader: copied into an unlinked temporary file as
// 8-bit text, without a UTF-8 byte-order mark, and with UTF-16 (little or big endian, known by its
// byte-order mark) turned into UTF-8. Line ends are kept, so line numbers stay the report's.
#pragma once
#include <string>

// Reads the whole of `fd` into a new temporary file. Returns its descriptor (at offset 0), or
// -1 after setting `problem` (a read or write error, UTF-16 that is not well formed).
int prepareReport(int fd, std::string &problem);
