#include "restore/entry_messages.h"

#include <cstdio>

#include "document/messages.h"

void reportUnrecognizedTag(const char *tag) { printMessage(stderr, "Unrecognized tag: %s\n", tag); }

void reportValueTooLong(const char *element) {
  printMessage(stderr, "Value too long in element %s; entry skipped.\n", element);
}

void reportNoPath(const char *element) {
  printMessage(stderr, "No path for the entry <%s>; entry skipped.\n", element);
}
