// An open-addressing table of 64-bit key hashes, each with a small value beside it (the caller's
// reference to the key, or what it keeps of it), at most 3/4 full, doubling from 1,024 slots.
// Only hashes are kept: the caller decides, through a `same(value)` test, whether a slot of the
// same hash holds its key. EntryIndex and KeySet are built on it.
#pragma once
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "model/table_memory.h"

// The 64-bit hash of an entry key that the tables use (never 0, which marks a free slot).
std::uint64_t keyHash(std::string_view key);

template <class Value> class HashSlots {
public:
  HashSlots() = default;
  HashSlots(HashSlots &&other) noexcept { swap(other); }
  HashSlots &operator=(HashSlots &&other) noexcept {
    HashSlots(std::move(other)).swap(*this);
    return *this;
  }
  ~HashSlots() {
    table_memory::release(hashes_, slots_);
    table_memory::release(values_, slots_);
  }

  // The value under `hash` that `same` accepts, or null.
  template <class Same> Value *find(std::uint64_t hash, Same &&same) {
    if (slots_ == 0) return nullptr;
    const std::size_t mask = slots_ - 1;
    for (std::size_t slot = hash & mask; hashes_[slot] != 0; slot = (slot + 1) & mask)
      if (hashes_[slot] == hash && same(values_[slot])) return &values_[slot];
    return nullptr;
  }

  // The first value under `hash`, whatever key it stands for, or null.
  const Value *first(std::uint64_t hash) const {
    if (slots_ == 0) return nullptr;
    const std::size_t mask = slots_ - 1;
    for (std::size_t slot = hash & mask; hashes_[slot] != 0; slot = (slot + 1) & mask)
      if (hashes_[slot] == hash) return &values_[slot];
    return nullptr;
  }

  // What find() gives, with `added` false; else a new slot for `hash` holding `value`, with
  // `added` true. The pointer is valid until the next call that adds.
  template <class Same>
  Value *findOrAdd(std::uint64_t hash, Same &&same, Value value, bool &added) {
    if ((count_ + 1) * 4 > slots_ * 3) grow();
    const std::size_t mask = slots_ - 1;
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

  // Forgets every key; the table's memory is kept for the next ones.
  void clear() {
    if (slots_ != 0) {
      std::memset(hashes_, 0, slots_ * sizeof *hashes_);
      std::memset(static_cast<void *>(values_), 0, slots_ * sizeof *values_);
    }
    count_ = 0;
  }

  // Asks the processor for the slot of `hash`, to be looked up a little later: a lookup in a
  // large table otherwise waits for memory.
  void prefetch(std::uint64_t hash) const {
    if (slots_ == 0) return;
    const std::size_t slot = hash & (slots_ - 1);
    __builtin_prefetch(&hashes_[slot], 1);
    __builtin_prefetch(&values_[slot], 1);
  }

private:
  void swap(HashSlots &other) noexcept {
    std::swap(hashes_, other.hashes_);
    std::swap(values_, other.values_);
    std::swap(slots_, other.slots_);
    std::swap(count_, other.count_);
  }

  // Twice the slots (fresh tables come zeroed: a free slot is a zero hash), every hash moved.
  void grow() {
    HashSlots larger;
    larger.slots_ = slots_ == 0 ? 1024 : slots_ * 2;
    larger.hashes_ = table_memory::allocateZeroed<std::uint64_t>(larger.slots_);
    larger.values_ = table_memory::allocateZeroed<Value>(larger.slots_);
    larger.count_ = count_;
    const std::size_t mask = larger.slots_ - 1;
    for (std::size_t old = 0; old < slots_; ++old) {
      if (hashes_[old] == 0) continue;
      std::size_t slot = hashes_[old] & mask;
      while (larger.hashes_[slot] != 0)
        slot = (slot + 1) & mask;
      larger.hashes_[slot] = hashes_[old];
      larger.values_[slot] = values_[old];
    }
    swap(larger);
  }

  std::uint64_t *hashes_ = nullptr;  // 0 marks a free slot
  Value *values_ = nullptr;
  std::size_t slots_ = 0;  // a power of two, or 0 before the first key
  std::size_t count_ = 0;
};
