// An open-addressing table of 64-bit key hashes, each with a small value beside it in the same
// slot (the caller's reference to the key, or what it keeps of it), at most 3/4 full. A hash
// picks its first slot by its high bits scaled to the table's size, so a table may have any
// number of slots: it starts at 1,024 and grows to what its owner expects to hold (see
// expectedEntries()), else to twice its size. Only hashes are kept: the caller decides, through
// a `same(value)` test, whether a slot of the same hash holds its key. EntryIndex and KeySet are
// built on it.
#pragma once
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "model/table_memory.h"

// The 64-bit hash of an entry key that the tables use (never 0, which marks a free slot).
std::uint64_t keyHash(std::string_view key);

// How many entries a document of the descriptor `fd` may hold in all, judged from the `count`
// met in its first `offset` bytes, with a little to spare; 0 when its size is unknown (not a
// regular file) or tells nothing more.
std::size_t expectedEntries(std::size_t count, unsigned long long offset, int fd);

template <class Value> class HashSlots {
public:
  HashSlots() = default;
  HashSlots(HashSlots &&other) noexcept { swap(other); }
  HashSlots &operator=(HashSlots &&other) noexcept {
    HashSlots(std::move(other)).swap(*this);
    return *this;
  }
  ~HashSlots() { table_memory::release(slots_, slotCount_); }

  // The value under `hash` that `same` accepts, or null.
  template <class Same> Value *find(std::uint64_t hash, Same &&same) {
    if (slotCount_ == 0) return nullptr;
    for (Slot *slot = &slots_[home(hash)]; !slot->free(); slot = next(slot))
      if (slot->holds(hash) && same(slot->value)) return &slot->value;
    return nullptr;
  }

  // The first value under `hash`, whatever key it stands for, or null.
  const Value *first(std::uint64_t hash) const {
    if (slotCount_ == 0) return nullptr;
    for (const Slot *slot = &slots_[home(hash)]; !slot->free(); slot = next(slot))
      if (slot->holds(hash)) return &slot->value;
    return nullptr;
  }

  // What find() gives, with `added` false; else a new slot for `hash` holding `value`, with
  // `added` true. The pointer is valid until the next call that adds.
  template <class Same>
  Value *findOrAdd(std::uint64_t hash, Same &&same, Value value, bool &added) {
    if (full()) grow(0);
    Slot *slot = &slots_[home(hash)];
    for (; !slot->free(); slot = next(slot)) {
      if (slot->holds(hash) && same(slot->value)) {
        added = false;
        return &slot->value;
      }
    }
    slot->put(hash, value);
    ++count_;
    added = true;
    return &slot->value;
  }

  std::size_t size() const { return count_; }
  // Whether the next key added makes the table grow.
  bool full() const { return (count_ + 1) * 4 > slotCount_ * 3; }
  // Makes room for the next key of a document read `offset` bytes into on `fd`: a full table
  // grows once to what the document's size promises (see expectedEntries()), not again and
  // again, since each larger table is fresh memory.
  void makeRoom(unsigned long long offset, int fd) {
    if (full()) grow(expectedEntries(count_, offset, fd));
  }
  // Grows the table now, to hold `expected` keys if that is more than twice what it holds.
  void grow(std::size_t expected) {
    std::size_t count = slotCount_ == 0 ? kFirstSlots : slotCount_ * 2;
    if (expected / 3 * 4 + 4 > count) count = expected / 3 * 4 + 4;
    rehash(count);
  }

  // Forgets every key; the table's memory is kept for the next ones.
  void clear() {
    if (slotCount_ != 0) std::memset(static_cast<void *>(slots_), 0, slotCount_ * sizeof *slots_);
    count_ = 0;
  }

  // Asks the processor for the slot of `hash`, to be looked up a little later: a lookup in a
  // large table otherwise waits for memory.
  void prefetch(std::uint64_t hash) const {
    if (slotCount_ == 0) return;
    const Slot *slot = &slots_[home(hash)];
    __builtin_prefetch(slot, 1);
    // A slot may straddle two cache lines.
    __builtin_prefetch(reinterpret_cast<const char *>(slot + 1) - 1, 1);
  }

private:
  static constexpr std::size_t kFirstSlots = 1024;

  // The hash in two halves, so that a slot of a 4-byte value takes 12 bytes.
  struct Slot {
    std::uint32_t high, low;  // both 0 when free
    Value value;
    bool free() const { return (high | low) == 0; }
    bool holds(std::uint64_t hash) const {
      return high == static_cast<std::uint32_t>(hash >> 32) &&
             low == static_cast<std::uint32_t>(hash);
    }
    std::uint64_t hash() const { return std::uint64_t(high) << 32 | low; }
    void put(std::uint64_t hash, const Value &what) {
      high = static_cast<std::uint32_t>(hash >> 32);
      low = static_cast<std::uint32_t>(hash);
      value = what;
    }
  };

  std::size_t home(std::uint64_t hash) const {
    return static_cast<std::size_t>((static_cast<unsigned __int128>(hash) * slotCount_) >> 64);
  }
  Slot *next(Slot *slot) const { return ++slot == slots_ + slotCount_ ? slots_ : slot; }
  const Slot *next(const Slot *slot) const { return ++slot == slots_ + slotCount_ ? slots_ : slot; }

  void swap(HashSlots &other) noexcept {
    std::swap(slots_, other.slots_);
    std::swap(slotCount_, other.slotCount_);
    std::swap(count_, other.count_);
  }

  // `count` slots (fresh tables come zeroed: a free slot is a zero hash), every hash moved.
  void rehash(std::size_t count) {
    HashSlots larger;
    larger.slotCount_ = count;
    larger.slots_ = table_memory::allocateZeroed<Slot>(count);
    larger.count_ = count_;
    for (std::size_t old = 0; old < slotCount_; ++old) {
      const Slot &moved = slots_[old];
      if (moved.free()) continue;
      Slot *slot = &larger.slots_[larger.home(moved.hash())];
      while (!slot->free())
        slot = larger.next(slot);
      *slot = moved;
    }
    swap(larger);
  }

  Slot *slots_ = nullptr;
  std::size_t slotCount_ = 0;  // 0 before the first key
  std::size_t count_ = 0;
};
