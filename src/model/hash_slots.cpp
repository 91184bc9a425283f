#include "model/hash_slots.h"

#include <sys/stat.h>

#include "model/key_hash.h"

std::uint64_t keyHash(std::string_view key) { return bytesHash(key.data(), key.size()); }

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
