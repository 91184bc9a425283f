#include "model/hash_slots.h"

#include "model/key_hash.h"

std::uint64_t keyHash(std::string_view key) { return bytesHash(key.data(), key.size()); }
