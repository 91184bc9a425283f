// Finding a fixed tag text in a large info-file text.
#pragma once

#include <cstddef>
#include <string_view>

// The first occurrence of needle in [begin, end), or nullptr. NUL bytes are ordinary bytes here.
// An empty needle is found at begin.
const char *findTag(const char *begin, const char *end, std::string_view needle);
