// A fresh directory under $TMPDIR (or /tmp) for one test, removed with everything in it.
#pragma once

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace testing_support {

class TempDir {
public:
  TempDir() {
    const char *base = std::getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/trovan-test-XXXXXX";
    path_ = mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;

  const std::string &path() const { return path_; }
  // The directory with a trailing slash, as an info directory is named.
  std::string dir() const { return path_ + "/"; }
  std::string file(const std::string &name) const { return path_ + "/" + name; }
  // Writes `bytes` to the file `name` in the directory, replacing any earlier one.
  void write(const std::string &name, const std::string &bytes) const {
    std::ofstream out(file(name), std::ios::binary | std::ios::trunc);
    out << bytes;
  }

private:
  std::string path_;
};

}  // namespace testing_support
