#include "model/key_set.h"

#include "model/entry_index.h"

unsigned long KeySet::insert(std::string_view key, unsigned long line) {
  return insertHash(keyHash(key), line);
}

void KeySet::prefetch(std::uint64_t hash) const {
  if (hashes_.empty()) return;
  const std::size_t slot = hash & (hashes_.size() - 1);
  __builtin_prefetch(&hashes_[slot], 1);
  __builtin_prefetch(&lines_[slot], 1);
}

unsigned long KeySet::insertHash(std::uint64_t hash, unsigned long line) {
  if ((count_ + 1) * 4 > hashes_.size() * 3) grow();
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
  decltype(hashes_) hashes(hashes_.empty() ? 1024 : hashes_.size() * 2, 0);
  decltype(lines_) lines(hashes.size(), 0);
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
