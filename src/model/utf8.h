// Writing a Unicode code point as UTF-8.
#pragma once
#include <string>

// Appends the UTF-8 bytes of `code` (at most 0x10FFFF) to `out`.
void appendUtf8(std::string &out, char32_t code);
