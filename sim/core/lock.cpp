#include "lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace qs {

StateLock::~StateLock() {
  if (fd_ >= 0 && owner_ == ::getpid()) ::close(fd_);
}

bool StateLock::lock() {
  // A flock belongs to the open file description, which a forked child shares: a child takes
  // a description of its own so that it and its parent exclude each other.
  if (fd_ >= 0 && owner_ != ::getpid()) {
    ::close(fd_);
    fd_ = -1;
  }
  if (fd_ < 0) {
    fd_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd_ < 0) return false;
    owner_ = ::getpid();
  }
  while (::flock(fd_, LOCK_EX) != 0)
    if (errno != EINTR) return false;
  return true;
}

void StateLock::unlock() {
  if (fd_ >= 0) ::flock(fd_, LOCK_UN);
}

}  // namespace qs
