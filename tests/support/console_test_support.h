// Helpers for tests of the console paths: fake commands put first on PATH, and the runner's fixed
// temporary file "/tmp/trovan<pid>", which every test removes afterwards.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "document/run_settings.h"
#include "file_text.h"
#include "temp_directory.h"

namespace testing_support {

// Writes an executable shell script `name` into `dir`.
inline void writeScript(const TempDir &dir, const std::string &name, const std::string &body) {
  const std::string file = dir.file(name);
  writeFile(file, "#!/bin/sh\n" + body + "\n");
  chmod(file.c_str(), 0755);
}

// Puts a directory first on PATH for the lifetime of the guard.
class PathGuard {
public:
  explicit PathGuard(const std::string &first) {
    const char *old = std::getenv("PATH");
    hadPath_ = old != nullptr;
    if (hadPath_) oldPath_ = old;
    const std::string path = hadPath_ ? first + ":" + oldPath_ : first;
    setenv("PATH", path.c_str(), 1);
  }
  ~PathGuard() {
    if (hadPath_)
      setenv("PATH", oldPath_.c_str(), 1);
    else
      unsetenv("PATH");
  }
  PathGuard(const PathGuard &) = delete;
  PathGuard &operator=(const PathGuard &) = delete;

private:
  bool hadPath_ = false;
  std::string oldPath_;
};

// The name the console runner gives its temporary file in this process.
inline std::string consoleTempName(pid_t pid = getpid()) {
  return "/tmp/trovan" + std::to_string(pid);
}

// Removes the runner's temporary file (a file, a link or an empty directory) if present.
inline void removeConsoleTempFile(pid_t pid = getpid()) {
  const std::string name = consoleTempName(pid);
  if (unlink(name.c_str()) != 0) rmdir(name.c_str());
}

inline bool exists(const std::string &name) {
  struct stat info;
  return lstat(name.c_str(), &info) == 0;
}

// A test of a console path: the run settings reset, a folder of fake commands first on PATH, and
// no runner temporary file before or after each case.
class ConsoleTest : public testing::Test {
protected:
  void SetUp() override {
    resetRunSettings();
    ASSERT_FALSE(dir_.path().empty());
    removeConsoleTempFile();
  }
  void TearDown() override { removeConsoleTempFile(); }

  TempDir dir_;
  PathGuard path_{dir_.path()};
};

}  // namespace testing_support
