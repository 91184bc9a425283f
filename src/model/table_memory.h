// Memory for the large lookup tables of the model (the duplicate set, the entry index), zeroed:
// from 2 MiB up, mapped on its own (the system hands it out zeroed, so it is not written twice)
// and offered huge pages, so that a lookup at a random place does not also miss the processor's
// address cache. Smaller tables come zeroed from the usual heap.
#pragma once
#include <sys/mman.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>

namespace table_memory {

inline constexpr std::size_t kHugePage = std::size_t(2) << 20;

inline std::size_t mapped(std::size_t bytes) {
  return (bytes + kHugePage - 1) / kHugePage * kHugePage;
}

// `count` zeroed objects of a type for which all-zero bytes are a value.
template <typename T> T *allocateZeroed(std::size_t count) {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
  const std::size_t bytes = count * sizeof(T);
  if (bytes < kHugePage) {
    void *area = std::calloc(count, sizeof(T));
    if (area == nullptr) throw std::bad_alloc();
    return static_cast<T *>(area);
  }
  void *area =
      mmap(nullptr, mapped(bytes), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (area == MAP_FAILED) throw std::bad_alloc();
  madvise(area, mapped(bytes), MADV_HUGEPAGE);
  return static_cast<T *>(area);
}

// Gives back what allocateZeroed(count) gave (null is let be).
template <typename T> void release(T *table, std::size_t count) {
  if (table == nullptr) return;
  const std::size_t bytes = count * sizeof(T);
  if (bytes < kHugePage)
    std::free(table);
  else
    munmap(table, mapped(bytes));
}

}  // namespace table_memory
