#include "model/hash_slots.h"

#include <functional>

std::uint64_t keyHash(std::string_view key) {
  std::uint64_t hash = std::hash<std::string_view>{}(key);
  // A final mix, so that the low bits that pick a slot depend on every bit of the key.
  hash ^= hash >> 33;
  hash *= 0xff51afd7ed558ccdULL;
  hash ^= hash >> 33;
  return hash == 0 ? 1 : hash;
}
