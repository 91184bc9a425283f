#include "model/hash_slots.h"

#include "model/key_hasher.h"

std::uint64_t keyHash(std::string_view key) { return KeyHasher().add(key).finish(); }
