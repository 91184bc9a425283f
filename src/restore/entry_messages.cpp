#include "restore/entry_messages.h"

#include <cstdio>

void reportUnrecognizedTag(const char *tag) { std::fprintf(stderr, "Unrecognized tag: %s\n", tag); }

void reportValueTooLong(const char *element) {
  std::fprintf(stderr, "Value too long in element %s; entry skipped.\n", element);
}

void reportNoPath(const char *element) {
  std::fprintf(stderr, "No path for the entry <%s>; entry skipped.\n", element);
}
