#include "document/open_index.h"

#include <climits>

#include "document/byte_vectors.h"

// Indexes 64 bytes at a time from `from`, as far as the loaded bytes and the index's room
// allow. Returns false when no whole block was left to index.
bool OpenIndex::indexMore(const char *data, std::size_t loaded, std::size_t from) {
  constexpr std::size_t kBlock = 64;
  next_ = count_ = 0;
  std::size_t at = from;
  while (at + kBlock <= loaded && count_ <= kCapacity - kBlock && at + kBlock <= UINT32_MAX) {
    for (std::uint64_t mask = bytes16::equal64(data + at, '<'); mask != 0; mask &= mask - 1)
      opens_[count_++] =
          static_cast<std::uint32_t>(at + static_cast<std::size_t>(__builtin_ctzll(mask)));
    at += kBlock;
  }
  indexedTo_ = at;
  return at > from;
}

void OpenIndex::forgetFrom(std::size_t from) {
  if (indexedTo_ <= from) return;
  while (count_ > next_ && opens_[count_ - 1] >= from)
    --count_;
  indexedTo_ = from;
}
