#include "model/key_set.h"

#include <functional>

namespace {

std::uint64_t hashOf(std::string_view key) {
  std::uint64_t hash = std::hash<std::string_view>{}(key);
  // A final mix, so that the low bits that pick a slot depend on every bit of the key.
  hash ^= hash >> 33;
  hash *= 0xff51afd7ed558ccdULL;
  hash ^= hash >> 33;
  return hash == 0 ? 1 : hash;
}

}  // namespace

unsigned long KeySet::insert(std::string_view key, unsigned long line) {
  if ((count_ + 1) * 4 > hashes_.size() * 3) grow();
  const std::uint64_t hash = hashOf(key);
  const std::size_t mask = hashes_.size() - 1;
  for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    if (hashes_[slot] == 0) {
      hashes_[slot] = hash;
      lines_[slot] = static_cast<std::uint32_t>(line);
      ++count_;
      return 0;
    }
    if (hashes_[slot] == hash) return lines_[slot] == 0 ? 1 : lines_[slot];
  }
}

void KeySet::grow() {
  std::vector<std::uint64_t> hashes(hashes_.empty() ? 1024 : hashes_.size() * 2, 0);
  std::vector<std::uint32_t> lines(hashes.size(), 0);
  const std::size_t mask = hashes.size() - 1;
  for (std::size_t old = 0; old < hashes_.size(); ++old) {
    if (hashes_[old] == 0) continue;
    std::size_t slot = hashes_[old] & mask;
    while (hashes[slot] != 0)
      slot = (slot + 1) & mask;
    hashes[slot] = hashes_[old];
    lines[slot] = lines_[old];
  }
  hashes_.swap(hashes);
  lines_.swap(lines);
}
