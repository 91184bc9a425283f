// The 64-bit hash of an entry key, made over the key's parts as they stand (a path, a user's
// name) without joining them into one string first: the same value as over the joined bytes.
#pragma once
#include <cstdint>
#include <cstring>
#include <string_view>

class KeyHasher {
public:
  // Adds the bytes of `text` after those added so far.
  KeyHasher &add(std::string_view text) {
    const char *byte = text.data();
    std::size_t left = text.size();
    for (; left >= 8; byte += 8, left -= 8) {
      std::uint64_t word;
      std::memcpy(&word, byte, 8);
      push(word);
    }
    if (left > 0) pushTail(tailOf(byte, left), left);
    length_ += text.size();
    return *this;
  }
  KeyHasher &add(char byte) {
    pushTail(static_cast<unsigned char>(byte), 1);
    ++length_;
    return *this;
  }
  // Adds `text` with every '\' read as '/'.
  KeyHasher &addSlashed(std::string_view text);

  // The hash of everything added (never 0, which marks a free slot in the tables).
  std::uint64_t finish() const {
    std::uint64_t hash = mix(hash_ ^ carry_) ^ length_;
    hash ^= hash >> 33;
    hash *= 0xff51afd7ed558ccdULL;
    hash ^= hash >> 33;
    hash *= 0xc4ceb9fe1a85ec53ULL;
    hash ^= hash >> 33;
    return hash == 0 ? 1 : hash;
  }

private:
  static constexpr std::uint64_t kMultiplier = 0xc6a4a7935bd1e995ULL;

  static std::uint64_t mix(std::uint64_t word) {
    word *= kMultiplier;
    word ^= word >> 47;
    return word * kMultiplier;
  }
  // The last `count` (1 to 7) bytes of a text, as the low bytes of a word.
  static std::uint64_t tailOf(const char *byte, std::size_t count) {
    std::uint64_t word = 0;
    std::memcpy(&word, byte, count);
    return word;
  }
  // Eight more bytes: with those carried over from before, a whole word is hashed.
  void push(std::uint64_t word) {
    if (carried_ == 0) {
      absorb(word);
      return;
    }
    const unsigned shift = carried_ * 8;
    absorb(carry_ | word << shift);
    carry_ = word >> (64 - shift);
  }
  // One to seven more bytes.
  void pushTail(std::uint64_t word, std::size_t count) {
    const unsigned shift = carried_ * 8;
    carry_ |= word << shift;
    carried_ += static_cast<unsigned>(count);
    if (carried_ < 8) return;
    absorb(carry_);
    carried_ -= 8;
    carry_ = carried_ == 0 ? 0 : word >> (64 - shift);
  }
  void absorb(std::uint64_t word) { hash_ = (hash_ ^ mix(word)) * kMultiplier; }

  std::uint64_t hash_ = 0x9E3779B97F4A7C15ULL;
  std::uint64_t carry_ = 0;  // the bytes of a word not yet whole, low bytes first
  unsigned carried_ = 0;     // how many: 0 to 7
  std::uint64_t length_ = 0;
};
