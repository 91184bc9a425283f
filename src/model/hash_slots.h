// An open-addressing table of 64-bit key hashes, each with a small value beside it (the caller's
// reference to the key, or what it keeps of it), at most 3/4 full, doubling from 1,024 slots.
// Only hashes are kept: the caller decides, through a `same(value)` test, whether a slot of the
// same hash holds its key. EntryIndex and KeySet are built on it.
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

#include "model/table_memory.h"

// The 64-bit hash of an entry key that the tables use (never 0, which marks a free slot).
std::uint64_t keyHash(std::string_view key);

template <class Value> class HashSlots {
public:
  // The value under `hash` that `same` accepts, or null.
  template <class Same> Value *find(std::uint64_t hash, Same &&same) {
    if (hashes_.empty()) return nullptr;
    const std::size_t mask = hashes_.size() - 1;
    for (std::size_t slot = hash & mask; hashes_[slot] != 0; slot = (slot + 1) & mask)
      if (hashes_[slot] == hash && same(values_[slot])) return &values_[slot];
    return nullptr;
  }

  // What find() gives, with `added` false; else a new slot for `hash` holding `value`, with
  // `added` true. The pointer is valid until the next call that adds.
  template <class Same>
  Value *findOrAdd(std::uint64_t hash, Same &&same, Value value, bool &added) {
    if ((count_ + 1) * 4 > hashes_.size() * 3) grow();
    const std::size_t mask = hashes_.size() - 1;
    std::size_t slot = hash & mask;
    for (; hashes_[slot] != 0; slot = (slot + 1) & mask) {
      if (hashes_[slot] == hash && same(values_[slot])) {
        added = false;
        return &values_[slot];
      }
    }
    hashes_[slot] = hash;
    values_[slot] = value;
    ++count_;
    added = true;
    return &values_[slot];
  }

  std::size_t size() const { return count_; }

  // Asks the processor for the slot of `hash`, to be looked up a little later: a lookup in a
  // large table otherwise waits for memory.
  void prefetch(std::uint64_t hash) const {
    if (hashes_.empty()) return;
    const std::size_t slot = hash & (hashes_.size() - 1);
    __builtin_prefetch(&hashes_[slot], 1);
    __builtin_prefetch(&values_[slot], 1);
  }

private:
  void grow() {
    decltype(hashes_) hashes(hashes_.empty() ? 1024 : hashes_.size() * 2, 0);
    decltype(values_) values(hashes.size(), Value{});
    const std::size_t mask = hashes.size() - 1;
    for (std::size_t old = 0; old < hashes_.size(); ++old) {
      if (hashes_[old] == 0) continue;
      std::size_t slot = hashes_[old] & mask;
      while (hashes[slot] != 0)
        slot = (slot + 1) & mask;
      hashes[slot] = hashes_[old];
      values[slot] = values_[old];
    }
    hashes_.swap(hashes);
    values_.swap(values);
  }

  std::vector<std::uint64_t, TableMemory<std::uint64_t>> hashes_;  // 0 marks a free slot
  std::vector<Value, TableMemory<Value>> values_;
  std::size_t count_ = 0;
};
