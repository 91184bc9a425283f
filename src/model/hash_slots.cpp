#include "model/hash_slots.h"

#include <sys/stat.h>

#include <functional>

std::uint64_t keyHash(std::string_view key) {
  std::uint64_t hash = std::hash<std::string_view>{}(key);
  // A final mix, so that the bits that pick a slot depend on every bit of the key.
  hash ^= hash >> 33;
  hash *= 0xff51afd7ed558ccdULL;
  hash ^= hash >> 33;
  return hash == 0 ? 1 : hash;
}

std::size_t expectedEntries(std::size_t count, unsigned long long offset, int fd) {
  struct stat status {};
  if (count == 0 || offset == 0 || fd < 0 || fstat(fd, &status) != 0 || !S_ISREG(status.st_mode))
    return 0;
  const auto size = static_cast<unsigned long long>(status.st_size);
  if (size <= offset) return 0;
  // The rest of the document as dense as what was read, and 1/16 more: a table that grows
  // once more than needed touches as much fresh memory again as it holds.
  const double expected = static_cast<double>(count) * static_cast<double>(size) /
                          static_cast<double>(offset) * (17.0 / 16.0);
  // No entry is shorter than a few bytes: a bound whatever the first ones were like.
  const double bound = static_cast<double>(size / 16);
  return static_cast<std::size_t>(expected < bound ? expected : bound);
}
