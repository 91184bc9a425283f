#include "legacy/quoted_fields.h"

#include <cstring>

char *splitAtQuotedComma(char *text, char separator, char **cursor) {
  char *start = text != nullptr ? text : *cursor;
  if (start[0] == '\0') {
    *cursor = start;
    return nullptr;
  }
  // The first character is never a separator.
  char *scan = start + 1;
  while (*scan != '\0') {
    if (*scan != separator) {
      ++scan;
      continue;
    }
    if (scan[1] == '"') {
      *scan = '\0';
      *cursor = scan + 1;
      return start;
    }
    // The character after a comma that is not a separator is never looked at; a comma that ends
    // the text stops the scan there.
    scan += scan[1] != '\0' ? 2 : 1;
  }
  *cursor = scan;
  return start;
}

char *nextQuotedField(char *line, char separator, char **cursor) {
  char *raw = splitAtQuotedComma(line, separator, cursor);
  if (raw == nullptr) return nullptr;
  const std::size_t length = std::strlen(raw);
  if (length < 2) return nullptr;
  raw[length - 1] = '\0';
  return raw + 1;
}
