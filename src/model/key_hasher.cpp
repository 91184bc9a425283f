#include "model/key_hasher.h"

KeyHasher &KeyHasher::addSlashed(std::string_view text) {
  char chunk[8];
  for (std::size_t at = 0; at < text.size(); at += sizeof chunk) {
    const std::size_t count = text.size() - at < sizeof chunk ? text.size() - at : sizeof chunk;
    for (std::size_t byte = 0; byte < count; ++byte)
      chunk[byte] = text[at + byte] == '\\' ? '/' : text[at + byte];
    add(std::string_view(chunk, count));
  }
  return *this;
}
