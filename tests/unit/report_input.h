// Test support for the legacy report conversion: standard input fed from given bytes, and a
// temporary directory for the output document.
#pragma once
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

// Puts a file holding `bytes` on descriptor 0 for the guard's lifetime, then puts the old one back.
class StdinFromBytes {
public:
  StdinFromBytes(const std::string &directory, std::string_view bytes) {
    const std::string path = directory + "/stdin";
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const int fd = open(path.c_str(), O_RDONLY);
    savedStdin_ = dup(0);
    dup2(fd, 0);
    close(fd);
  }
  ~StdinFromBytes() {
    dup2(savedStdin_, 0);
    close(savedStdin_);
  }
  StdinFromBytes(const StdinFromBytes &) = delete;
  StdinFromBytes &operator=(const StdinFromBytes &) = delete;

private:
  int savedStdin_ = -1;
};

// A fresh directory from mkdtemp, removed with everything in it.
class TemporaryDirectory {
public:
  TemporaryDirectory() {
    char pattern[] = "/tmp/trovan-test-XXXXXX";
    path_ = mkdtemp(pattern) != nullptr ? pattern : "";
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory &) = delete;
  TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
  const std::string &path() const { return path_; }

private:
  std::string path_;
};

inline std::string fileBytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}
