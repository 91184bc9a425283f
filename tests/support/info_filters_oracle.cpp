#include "info_filters_oracle.h"

#include <cstdio>
#include <cstring>
#include <string.h>
#include <string_view>

namespace oracle {

void removeRange(char *position, int count, int *length) {
  if (position[count] == '\n') ++count;
  std::memmove(position, position + count, std::strlen(position + count) + 1);
  *length -= count;
}

int removeElements(char *text, int *length, const char *startName, const char *endName) {
  if (text == nullptr || length == nullptr || startName == nullptr || endName == nullptr) return -1;
  text[*length] = '\0';
  char startTag[25];
  char endTag[11];
  std::snprintf(startTag, sizeof startTag, "<%s>", startName);
  std::snprintf(endTag, sizeof endTag, "</%s>", endName);
  char *start = std::strstr(text, startTag);
  if (start == nullptr) return 0;
  for (;;) {
    char *end = std::strstr(start, endTag);
    if (end == nullptr) {
      std::fprintf(stderr, "Missing end tag : %s\n", endTag);
      return -1;
    }
    removeRange(start, static_cast<int>(end + std::strlen(endTag) - start), length);
    start = std::strstr(start, startTag);
    if (start == nullptr) return 0;
  }
}

void filterByPath(char *text, int *length, const char *path, char *scratch,
                  const char *elementName) {
  if (text == nullptr || length == nullptr || path == nullptr || scratch == nullptr ||
      elementName == nullptr || *length < 1)
    return;
  text[*length] = '\0';
  scratch[0] = '\0';
  char startTag[12];
  char endTag[13];
  std::snprintf(startTag, sizeof startTag, "<%s>", elementName);
  std::snprintf(endTag, sizeof endTag, "</%s>", elementName);
  const int offset = std::strcmp(elementName, "file") == 0 ? 15 : 6;
  char *p = std::strstr(text, startTag);
  if (p == nullptr) return;
  for (;;) {
    char *e = std::strstr(p, endTag);
    if (e == nullptr) {
      std::strcpy(scratch, p);
      *length -= static_cast<int>(std::strlen(scratch));
      return;
    }
    char *open = std::strstr(p, "<path>");
    char *close = std::strstr(p, "</path>");
    if (open != nullptr && close != nullptr) {
      // The value: (distance between the tags - 6) characters from the offset, cut at the end
      // of the text; none when that count is negative or the offset lies past the end.
      long long valueLength = (close - open) - 6;
      if (valueLength < 0) valueLength = 0;
      std::string_view valueText;
      if (strnlen(open, static_cast<std::size_t>(offset)) == static_cast<std::size_t>(offset)) {
        const char *value = open + offset;
        valueText = std::string_view(value, strnlen(value, static_cast<std::size_t>(valueLength)));
      }
      if (!valueText.starts_with(path)) {
        removeRange(p, static_cast<int>(e + std::strlen(endTag) - p), length);
        e = p;
      }
    }
    p = std::strstr(e, startTag);
    if (p == nullptr) return;
  }
}

}  // namespace oracle
