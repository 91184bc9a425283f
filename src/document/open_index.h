// Where the '<' bytes of a buffer are, found ahead of a reader a stretch at a time, so that the
// reader finds its next tag without scanning the text before it, and its steps do not wait on
// one another.
#pragma once
#include <cstddef>
#include <cstdint>

class OpenIndex {
public:
  static constexpr std::size_t kNone = ~std::size_t{0};

  // The first '<' of data at or after `from`, looking no further than `loaded` (and reading
  // whole 64-byte blocks before it), or kNone.
  std::size_t next(const char *data, std::size_t loaded, std::size_t from) {
    for (;;) {
      for (; next_ < count_; ++next_)
        if (opens_[next_] >= from) return opens_[next_];
      if (!indexMore(data, loaded, indexedTo_ > from ? indexedTo_ : from)) return kNone;
    }
  }

  // The first '<' indexed and not yet passed, without looking further: kNone when the index is
  // used up. It may lie before where the reader stands; next() then skips it.
  std::size_t peek() const { return next_ < count_ ? opens_[next_] : kNone; }

  // The '<' that next() gave last is passed.
  void pass() { ++next_; }

  // The buffer's bytes from `from` on have changed: forget what the index says of them.
  void forgetFrom(std::size_t from);

  // The buffer's contents have moved: forget everything.
  void forget() { next_ = count_ = indexedTo_ = 0; }

private:
  bool indexMore(const char *data, std::size_t loaded, std::size_t from);

  static constexpr std::size_t kCapacity = 2048;
  std::uint32_t opens_[kCapacity];  // ascending; [next_, count_) not yet passed
  std::size_t next_ = 0;
  std::size_t count_ = 0;
  std::size_t indexedTo_ = 0;  // the bytes before it have been looked at
};
