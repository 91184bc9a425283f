// Whole-file reads and writes for tests: by name, or from a descriptor's start.
#pragma once

#include <unistd.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>

namespace testing_support {

// Every byte of the file, or nothing when it cannot be opened.
inline std::optional<std::string> readFile(const std::string &name) {
  std::ifstream in(name, std::ios::binary);
  if (!in) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Every byte behind the descriptor, read from offset 0.
inline std::string readWhole(int fd) {
  std::string out;
  char chunk[65536];
  lseek(fd, 0, SEEK_SET);
  for (ssize_t n; (n = read(fd, chunk, sizeof chunk)) > 0;)
    out.append(chunk, static_cast<std::size_t>(n));
  return out;
}

inline void writeFile(const std::string &name, const std::string &bytes) {
  std::ofstream out(name, std::ios::binary | std::ios::trunc);
  out << bytes;
}

}  // namespace testing_support
