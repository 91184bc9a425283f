// A first-in first-out queue whose slots are reused: an item is built in place in the slot after
// the last (keeping whatever buffers the slot's previous item left there), then pushed. The ring
// grows, its items kept in order, only when every slot is taken.
#pragma once
#include <algorithm>
#include <cstddef>
#include <vector>

template <typename T> class SlotRing {
public:
  bool empty() const { return count_ == 0; }
  std::size_t size() const { return count_; }
  T &front() { return slots_[first_]; }

  // The slot after the last item, to be filled and then pushed (or left for the next time).
  // It stays where it is until the next call of next().
  T &next() {
    if (count_ == slots_.size()) grow();
    std::size_t at = first_ + count_;
    if (at >= slots_.size()) at -= slots_.size();
    return slots_[at];
  }
  // Makes the slot given by next() the last item.
  void push() { ++count_; }
  void pop() {
    if (++first_ == slots_.size()) first_ = 0;
    --count_;
  }

private:
  // Twice the slots (one at first), the items moved to the front in their order: a ring
  // that grows one slot at a time would move every item again at each slot.
  void grow() {
    std::rotate(slots_.begin(), slots_.begin() + static_cast<long>(first_), slots_.end());
    first_ = 0;
    slots_.resize(slots_.empty() ? 1 : slots_.size() * 2);
  }

  std::vector<T> slots_;
  std::size_t first_ = 0;
  std::size_t count_ = 0;
};
