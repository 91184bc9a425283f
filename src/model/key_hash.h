// The 64-bit hash of an entry key's bytes: sixteen bytes a step, each step one 64 by 64 bit
// multiplication folded to 64 bits.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace key_hash {

inline std::uint64_t fold(std::uint64_t a, std::uint64_t b) {
  const unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

inline std::uint64_t load64(const char *byte) {
  std::uint64_t word;
  std::memcpy(&word, byte, sizeof word);
  return word;
}

inline std::uint64_t load32(const char *byte) {
  std::uint32_t word;
  std::memcpy(&word, byte, sizeof word);
  return word;
}

inline constexpr std::uint64_t kSecrets[] = {0xa0761d6478bd642fULL, 0xe7037ed1a0b428dbULL,
                                             0x8ebc6af09c88c6e3ULL, 0x589965cc75374cc3ULL};

}  // namespace key_hash

// The hash of `size` bytes (never 0, which marks a free slot in the tables).
inline std::uint64_t bytesHash(const char *bytes, std::size_t size) {
  using namespace key_hash;
  std::uint64_t hash = kSecrets[0] ^ size;
  std::size_t left = size;
  for (; left > 16; bytes += 16, left -= 16)
    hash = fold(load64(bytes) ^ kSecrets[1], load64(bytes + 8) ^ hash);
  // The last one to sixteen bytes, read as two words that may overlap: with the size, they
  // tell every tail apart.
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  if (left > 8) {
    first = load64(bytes);
    second = load64(bytes + left - 8);
  } else if (left >= 4) {
    first = load32(bytes);
    second = load32(bytes + left - 4);
  } else if (left > 0) {
    first = static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[0])) << 16 |
            static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[left / 2])) << 8 |
            static_cast<unsigned char>(bytes[left - 1]);
  }
  hash = fold(first ^ kSecrets[1], second ^ hash);
  hash = fold(hash ^ kSecrets[2], size ^ kSecrets[3]);
  return hash == 0 ? 1 : hash;
}
