// Memory for the large lookup tables of the model (the duplicate set, the entry index): from
// 2 MiB up, mapped on its own and offered huge pages, so that a lookup at a random place does
// not also miss the processor's address cache. Smaller tables come from the usual heap.
#pragma once
#include <sys/mman.h>

#include <cstddef>
#include <memory>
#include <new>

template <typename T> struct TableMemory {
  using value_type = T;
  static constexpr std::size_t kHugePage = std::size_t(2) << 20;

  TableMemory() = default;
  template <typename U> TableMemory(const TableMemory<U> &) {}

  T *allocate(std::size_t count) {
    const std::size_t bytes = count * sizeof(T);
    if (bytes < kHugePage) return std::allocator<T>().allocate(count);
    void *area =
        mmap(nullptr, mapped(bytes), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (area == MAP_FAILED) throw std::bad_alloc();
    madvise(area, mapped(bytes), MADV_HUGEPAGE);
    return static_cast<T *>(area);
  }
  void deallocate(T *table, std::size_t count) {
    const std::size_t bytes = count * sizeof(T);
    if (bytes < kHugePage)
      std::allocator<T>().deallocate(table, count);
    else
      munmap(table, mapped(bytes));
  }
  template <typename U> bool operator==(const TableMemory<U> &) const { return true; }

private:
  static std::size_t mapped(std::size_t bytes) {
    return (bytes + kHugePage - 1) / kHugePage * kHugePage;
  }
};
