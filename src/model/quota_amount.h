// Quota amounts: the decimal integers the file system writes.
#pragma once
#include <string_view>

// Whether `text` is a quota amount: 1 to 19 decimal digits, at most 9223372036854775807 (the
// file system's "no quota"). No sign, blank or other character.
bool isQuotaAmount(std::string_view text);
