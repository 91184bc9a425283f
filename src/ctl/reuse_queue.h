// A first-in first-out queue that keeps its elements, storage and all, for reuse: taking
// elements off the front does not destroy them, and pushBack hands a slot out again with what
// its last use left in it, so that a steady stream through the queue allocates nothing.
#pragma once
#include <algorithm>
#include <cstddef>
#include <vector>

template <typename T> class ReuseQueue {
public:
  bool empty() const { return size_ == 0; }
  std::size_t size() const { return size_; }
  T &operator[](std::size_t index) { return slots_[(head_ + index) & (slots_.size() - 1)]; }
  const T &operator[](std::size_t index) const {
    return slots_[(head_ + index) & (slots_.size() - 1)];
  }
  T &back() { return (*this)[size_ - 1]; }
  const T &back() const { return (*this)[size_ - 1]; }

  // A slot at the back, holding whatever it held before.
  T &pushBack() {
    if (size_ == slots_.size()) grow();
    ++size_;
    return back();
  }
  void popBack() { --size_; }
  void popFront(std::size_t count) {
    head_ = (head_ + count) & (slots_.size() - 1);
    size_ -= count;
  }
  void clear() { head_ = size_ = 0; }

private:
  // Twice the slots (a power of two, so that an index wraps with a mask), the live ones first.
  void grow() {
    std::rotate(slots_.begin(), slots_.begin() + static_cast<std::ptrdiff_t>(head_), slots_.end());
    head_ = 0;
    slots_.resize(slots_.empty() ? 16 : slots_.size() * 2);
  }

  std::vector<T> slots_;
  std::size_t head_ = 0;
  std::size_t size_ = 0;
};
