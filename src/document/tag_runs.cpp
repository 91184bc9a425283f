// Runs of tags read with readTag: skipping to an end tag, and gathering the elements of a rights
// list.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "document/completion_codes.h"
#include "document/tag_reader.h"  // declares both

int goPastEndTag(std::string_view name) {
  Tag tag;
  for (;;) {
    if (readTag(tag, "goPastEndTag") != 0) {
      std::fprintf(stderr, "Unable to find end tag: %.*s\n", static_cast<int>(name.size()),
                   name.data());
      return kOwnFailure;
    }
    if (tag.isEnd(name)) return 0;
  }
}

void getRights(char *out, std::string_view endName, std::size_t outSize, bool *tooLong) {
  if (tooLong != nullptr) *tooLong = false;
  out[0] = '\0';
  std::size_t length = 0;
  Tag tag;
  while (readTag(tag, "getRights") == 0) {
    if (tag.isEndTag == 0) {
      if (length + tag.length + 3 < outSize) {
        out[length] = '<';
        std::memcpy(out + length + 1, tag.name, tag.length);
        std::memcpy(out + length + 1 + tag.length, "/>", 3);
        length += tag.length + 3;
      } else if (tooLong != nullptr) {
        *tooLong = true;
      }
    } else if (tag.isEnd(endName)) {
      break;
    }
  }
}
