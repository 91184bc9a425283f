#include "model/entry_index.h"

#include <cstring>

std::uint64_t keyHash(std::string_view key) {
  std::uint64_t hash = std::hash<std::string_view>{}(key);
  // A final mix, so that the low bits that pick a slot depend on every bit of the key.
  hash ^= hash >> 33;
  hash *= 0xff51afd7ed558ccdULL;
  hash ^= hash >> 33;
  return hash == 0 ? 1 : hash;
}

namespace {

void putText(char *&at, const std::string &text) {
  const auto size = static_cast<std::uint32_t>(text.size());
  std::memcpy(at, &size, sizeof size);
  std::memcpy(at + sizeof size, text.data(), text.size());
  at += sizeof size + text.size();
}

const char *getText(const char *at, std::string &text) {
  std::uint32_t size;
  std::memcpy(&size, at, sizeof size);
  text.assign(at + sizeof size, size);
  return at + sizeof size + size;
}

}  // namespace

std::uint64_t EntryIndex::store(const Entry &entry) {
  const std::size_t size = 4 + 4 * sizeof(std::uint32_t) + entry.path.size() + entry.name.size() +
                           entry.id.size() + entry.amount.size();
  if (used_ + size > kBlockSize) {
    blocks_.push_back(std::make_unique<char[]>(size > kBlockSize ? size : kBlockSize));
    filled_.push_back(0);
    used_ = 0;
  }
  const std::uint64_t ref = (std::uint64_t(blocks_.size() - 1) << 20) | used_;
  char *at = blocks_.back().get() + used_;
  at[0] = static_cast<char>(entry.kind);
  at[1] = entry.ad ? 1 : 0;
  at[3] = 0;  // matched
  std::memcpy(at + 2, &entry.rights, sizeof entry.rights);
  at += 4;
  putText(at, entry.path);
  putText(at, entry.name);
  putText(at, entry.id);
  putText(at, entry.amount);
  used_ += size;
  filled_.back() = used_;
  return ref;
}

char *EntryIndex::recordAt(std::uint64_t ref) const {
  return blocks_[ref >> 20].get() + (ref & (kBlockSize - 1));
}

std::size_t EntryIndex::load(const char *start, Entry &entry) {
  entry.kind = static_cast<EntryKind>(start[0]);
  entry.ad = start[1] != 0;
  std::memcpy(&entry.rights, start + 2, sizeof entry.rights);
  const char *at = getText(start + 4, entry.path);
  at = getText(at, entry.name);
  at = getText(at, entry.id);
  at = getText(at, entry.amount);
  return static_cast<std::size_t>(at - start);
}

std::size_t EntryIndex::find(std::uint64_t hash, const std::string &key) const {
  if (slots_.empty()) return SIZE_MAX;
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask; slots_[slot].hash != 0; slot = (slot + 1) & mask) {
    if (slots_[slot].hash != hash) continue;
    load(recordAt(slots_[slot].ref), scratch_);
    entryKey(scratch_, otherKey_);
    if (otherKey_ == key) return slot;
  }
  return SIZE_MAX;
}

bool EntryIndex::add(const Entry &entry) {
  entryKey(entry, key_);
  const std::uint64_t hash = keyHash(key_);
  if (find(hash, key_) != SIZE_MAX) return false;
  if ((count_ + 1) * 4 > slots_.size() * 3) grow();
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot].hash != 0)
    slot = (slot + 1) & mask;
  slots_[slot] = {hash, store(entry)};
  ++count_;
  return true;
}

void EntryIndex::prefetch(const Entry &entry) const {
  if (slots_.empty()) return;
  entryKey(entry, key_);
  __builtin_prefetch(&slots_[keyHash(key_) & (slots_.size() - 1)]);
}

bool EntryIndex::match(const Entry &entry, Entry &stored) {
  entryKey(entry, key_);
  const std::size_t slot = find(keyHash(key_), key_);
  if (slot == SIZE_MAX) return false;
  stored = scratch_;
  recordAt(slots_[slot].ref)[3] = 1;
  return true;
}

void EntryIndex::forEachUnmatched(const std::function<void(const Entry &)> &visit) const {
  Entry entry;
  for (std::size_t block = 0; block < blocks_.size(); ++block) {
    const char *at = blocks_[block].get();
    for (std::size_t offset = 0; offset < filled_[block];) {
      const std::size_t size = load(at + offset, entry);
      if (at[offset + 3] == 0) visit(entry);
      offset += size;
    }
  }
}

void EntryIndex::grow() {
  decltype(slots_) slots(slots_.empty() ? 1024 : slots_.size() * 2);
  const std::size_t mask = slots.size() - 1;
  for (const Slot &old : slots_) {
    if (old.hash == 0) continue;
    std::size_t slot = old.hash & mask;
    while (slots[slot].hash != 0)
      slot = (slot + 1) & mask;
    slots[slot] = old;
  }
  slots_.swap(slots);
}
