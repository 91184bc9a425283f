// Helpers of the save tests: a temporary directory and the capture of descriptors 1 and 2 (the
// save writes its document with raw writes to descriptor 1).
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace savetest {

class TempDir {
public:
  TempDir() {
    const char *base = std::getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/trovan-save-XXXXXX";
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
  void write(const std::string &name, const std::string &bytes) const {
    std::ofstream out(file(name), std::ios::binary);
    out << bytes;
  }

private:
  std::string path_;
};

inline std::string readFile(const std::string &name) {
  std::ifstream in(name, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// Sends one descriptor to a temporary file until take() is called (or the object ends).
class CapturedFd {
public:
  explicit CapturedFd(int fd) : fd_(fd) {
    std::fflush(nullptr);
    char name[] = "/tmp/trovan-capture-XXXXXX";
    file_ = mkstemp(name);
    unlink(name);
    saved_ = dup(fd_);
    dup2(file_, fd_);
  }
  ~CapturedFd() {
    restore();
    if (file_ >= 0) close(file_);
  }
  CapturedFd(const CapturedFd &) = delete;
  CapturedFd &operator=(const CapturedFd &) = delete;

  std::string take() {
    restore();
    std::string bytes;
    char chunk[65536];
    lseek(file_, 0, SEEK_SET);
    for (ssize_t count; (count = read(file_, chunk, sizeof chunk)) > 0;)
      bytes.append(chunk, static_cast<std::size_t>(count));
    return bytes;
  }

private:
  void restore() {
    if (saved_ < 0) return;
    std::fflush(nullptr);
    dup2(saved_, fd_);
    close(saved_);
    saved_ = -1;
  }
  int fd_;
  int file_ = -1;
  int saved_ = -1;
};

}  // namespace savetest
