#include "model/key_set.h"

unsigned long KeySet::insert(std::string_view key, unsigned long line) {
  return insertHash(keyHash(key), line);
}

unsigned long KeySet::insertHash(std::uint64_t hash, unsigned long line) {
  bool added = false;
  // Keys are told apart by their hash alone: a slot of the same hash holds the same key.
  const std::uint32_t *first = lines_.findOrAdd(
      hash, [](std::uint32_t) { return true; }, static_cast<std::uint32_t>(line), added);
  if (added) return 0;
  return *first == 0 ? 1 : *first;
}
