#include "document/xml_text.h"

#include <unistd.h>

#include <cstring>

#include "document/completion_codes.h"

namespace {

struct Entity {
  const char *reference;
  int length;
  char character;
};

constexpr Entity kEntities[] = {
    {"&lt;", 4, '<'}, {"&gt;", 4, '>'}, {"&amp;", 5, '&'}, {"&apos;", 6, '\''}, {"&quot;", 6, '"'},
};

// The walk cannot step over an '&' that begins no known reference: it stays there for good.
[[noreturn]] void staySteppingOnAmpersand() {
  for (;;)
    pause();
}

}  // namespace

int unescapeXml(char *s) {
  if (s == nullptr) return kOwnFailure;
  const std::size_t length = std::strlen(s);
  int replaced = 0;
  for (std::size_t i = 0; i < length;) {
    if (s[i] != '&') {
      ++i;
      continue;
    }
    const Entity *match = nullptr;
    for (const Entity &entity : kEntities) {
      if (std::strncmp(s + i, entity.reference, entity.length) == 0) {
        match = &entity;
        break;
      }
    }
    if (match == nullptr) staySteppingOnAmpersand();
    s[i] = match->character;
    std::memset(s + i + 1, 0, match->length - 1);
    replaced += match->length;
    i += match->length;
  }
  if (replaced != 0 && length >= 2) {
    // Close the gaps the filler NULs left, keeping the bytes in order.
    std::size_t write = 0;
    for (std::size_t read = 0; read < length; ++read)
      if (s[read] != '\0') s[write++] = s[read];
    std::memset(s + write, 0, length - write);
  }
  return replaced;
}

void toTypelessName(char *s) {
  unescapeXml(s);
  if (std::strchr(s, '=') == nullptr) {
    if (s[0] == '.') std::memmove(s, s + 1, std::strlen(s));
    return;
  }
  std::size_t read = s[0] == '.' ? 1 : 0;
  std::size_t write = 0;
  std::size_t componentStart = 0;
  while (s[read] != '\0') {
    const char byte = s[read];
    s[write++] = byte;
    if (byte == '.') componentStart = write;
    if (s[read + 1] == '=') {
      // Drop the component's type label ("cn=", "ou=", ...), whatever its length.
      read += 2;
      write = componentStart;
    } else {
      ++read;
    }
  }
  s[write] = '\0';
}

bool replaceTreeName(char *name, const char *tree, std::size_t capacity) {
  if (tree == nullptr) return true;
  const std::size_t length = std::strlen(name);
  if (length < 3 || name[length - 1] != '.') return true;
  std::size_t dot = length - 2;
  while (dot >= 1 && name[dot] != '.')
    --dot;
  if (dot == 0) return true;
  const std::size_t treeLength = std::strlen(tree);
  if (dot + 1 + treeLength + 1 + 1 > capacity) return false;
  std::memcpy(name + dot + 1, tree, treeLength);
  name[dot + 1 + treeLength] = '.';
  name[dot + 2 + treeLength] = '\0';
  return true;
}
