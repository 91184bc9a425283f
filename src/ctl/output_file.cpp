#include "ctl/output_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

OutputFile::OutputFile(std::string name) : name_(std::move(name)) {
  // A name that is no regular file (/dev/null, a pipe) is written directly: renamed over, the
  // device or pipe would be replaced by a plain file.
  struct stat info;
  if (stat(name_.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
    fd_ = open(name_.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd_ < 0) error_ = name_ + ": " + std::strerror(errno);
    direct_ = true;
    return;
  }
  const std::size_t slash = name_.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : name_.substr(0, slash + 1);
  const std::string base = slash == std::string::npos ? name_ : name_.substr(slash + 1);
  temporary_ = folder + "." + base + ".XXXXXX";
  std::vector<char> pattern(temporary_.begin(), temporary_.end());
  pattern.push_back('\0');
  fd_ = mkostemp(pattern.data(), O_CLOEXEC);
  if (fd_ < 0) {
    error_ = name_ + ": " + std::strerror(errno);
    return;
  }
  temporary_.assign(pattern.data());
  // mkstemp makes the file 0600; a document is as readable as any file the user makes.
  const mode_t mask = umask(0);
  umask(mask);
  fchmod(fd_, 0666 & ~mask);
}

OutputFile::~OutputFile() {
  if (fd_ >= 0) close(fd_);
  if (!committed_ && !direct_ && !temporary_.empty() && fd_ >= 0) unlink(temporary_.c_str());
}

int OutputFile::commit() {
  if (fd_ < 0) return EBADF;
  if (direct_) {
    committed_ = true;
    return 0;
  }
  int error = 0;
  if (fsync(fd_) != 0 && errno != EINVAL) error = errno;
  if (error == 0 && rename(temporary_.c_str(), name_.c_str()) != 0) error = errno;
  if (error != 0) {
    error_ = name_ + ": " + std::strerror(error);
    return error;
  }
  committed_ = true;
  return 0;
}
