#include "model/entry_index.h"

#include <cstring>

namespace {

// A stored entry starts with its kind, the AD mark, its rights (two bytes) and whether a
// document entry matched it; its texts follow.
constexpr std::size_t kMatchedByte = 4;
constexpr std::size_t kHeadSize = 5;

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
  const std::size_t size = kHeadSize + 4 * sizeof(std::uint32_t) + entry.path.size() +
                           entry.name.size() + entry.id.size() + entry.amount.size();
  if (used_ + size > kBlockSize) {
    blocks_.push_back(std::make_unique<char[]>(size > kBlockSize ? size : kBlockSize));
    filled_.push_back(0);
    used_ = 0;
  }
  const std::uint64_t ref = (std::uint64_t(blocks_.size() - 1) << 20) | used_;
  char *at = blocks_.back().get() + used_;
  at[0] = static_cast<char>(entry.kind);
  at[1] = entry.ad ? 1 : 0;
  const RightsSet rights = entry.rights;
  std::memcpy(at + 2, &rights, sizeof rights);
  at[kMatchedByte] = 0;
  at += kHeadSize;
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
  RightsSet rights = 0;
  std::memcpy(&rights, start + 2, sizeof rights);
  entry.rights = rights;
  const char *at = getText(start + kHeadSize, entry.path);
  at = getText(at, entry.name);
  at = getText(at, entry.id);
  at = getText(at, entry.amount);
  return static_cast<std::size_t>(at - start);
}

bool EntryIndex::holdsKey(std::uint64_t ref) {
  load(recordAt(ref), scratch_);
  entryKey(scratch_, otherKey_);
  return otherKey_ == key_;
}

bool EntryIndex::add(const Entry &entry) {
  entryKey(entry, key_);
  bool added = false;
  std::uint64_t *ref = refs_.findOrAdd(
      keyHash(key_), [this](std::uint64_t at) { return holdsKey(at); }, 0, added);
  // The record is stored only once the key is known to be new.
  if (added) *ref = store(entry);
  return added;
}

void EntryIndex::prefetch(const Entry &entry) const {
  if (refs_.size() == 0) return;
  entryKey(entry, key_);
  refs_.prefetch(keyHash(key_));
}

bool EntryIndex::match(const Entry &entry, Entry &stored) {
  if (refs_.size() == 0) return false;  // an empty volume: no key to make
  entryKey(entry, key_);
  const std::uint64_t *ref =
      refs_.find(keyHash(key_), [this](std::uint64_t at) { return holdsKey(at); });
  if (ref == nullptr) return false;
  stored = scratch_;
  recordAt(*ref)[kMatchedByte] = 1;
  return true;
}

void EntryIndex::forEachUnmatched(const std::function<void(const Entry &)> &visit) const {
  Entry entry;
  for (std::size_t block = 0; block < blocks_.size(); ++block) {
    const char *at = blocks_[block].get();
    for (std::size_t offset = 0; offset < filled_[block];) {
      const std::size_t size = load(at + offset, entry);
      if (at[offset + kMatchedByte] == 0) visit(entry);
      offset += size;
    }
  }
}
