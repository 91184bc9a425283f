// Capture of what the code under test writes on a descriptor, raw writes and stdio alike.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "file_text.h"

namespace testing_support {

// Sends one descriptor to an unnamed temporary file until take() is called (or the object ends).
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

  // Puts the descriptor back and returns everything written to it meanwhile.
  std::string take() {
    restore();
    return readWhole(file_);
  }

  // Returns everything written so far and empties the file; the capture stays on.
  std::string drain() {
    std::fflush(nullptr);
    std::string bytes = readWhole(file_);
    if (ftruncate(file_, 0) != 0) bytes += "<capture not emptied>";
    lseek(file_, 0, SEEK_SET);
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

// Captures descriptors 1 and 2 from construction until finish(), which fills `out` and `err`.
class Output {
public:
  void finish() {
    err = err_.take();
    out = out_.take();
  }
  std::string out;
  std::string err;

private:
  CapturedFd out_{1};
  CapturedFd err_{2};
};

}  // namespace testing_support
