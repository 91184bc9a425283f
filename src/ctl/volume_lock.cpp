#include "ctl/volume_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "ctl/output.h"

namespace {

// The process that holds a flock on the file of `fd`, from /proc/locks; 0 when not found.
long lockHolder(int fd) {
  struct stat info;
  if (fstat(fd, &info) != 0) return 0;
  char device[64];
  std::snprintf(device, sizeof device, "%02x:%02x:%llu", major(info.st_dev), minor(info.st_dev),
                static_cast<unsigned long long>(info.st_ino));
  std::FILE *locks = std::fopen("/proc/locks", "re");
  if (locks == nullptr) return 0;
  char line[512];
  long holder = 0;
  while (holder == 0 && std::fgets(line, sizeof line, locks) != nullptr) {
    char kind[32], place[64];
    long pid;
    if (std::sscanf(line, "%*s %31s %*s %*s %ld %63s", kind, &pid, place) == 3 &&
        std::strcmp(kind, "FLOCK") == 0 && std::strcmp(place, device) == 0)
      holder = pid;
  }
  std::fclose(locks);
  return holder;
}

std::string holderText(long pid) {
  return pid > 0 ? "process " + std::to_string(pid) : "another process";
}

}  // namespace

VolumeLock::~VolumeLock() {
  if (fd_ >= 0) close(fd_);
}

bool VolumeLock::take(const std::string &volume, const std::string &mountPoint, bool wait) {
  fd_ = open(mountPoint.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd_ < 0) {
    reportError("apply: " + mountPoint + ": " + std::strerror(errno));
    return false;
  }
  if (flock(fd_, LOCK_EX | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK) {
    reportError("apply: cannot lock " + mountPoint + ": " + std::strerror(errno));
    return false;
  }
  const std::string holder = holderText(lockHolder(fd_));
  if (!wait) {
    reportError("apply: volume " + volume + " is locked by " + holder +
                " (an apply in progress); nothing sent");
    return false;
  }
  reportError("apply: volume " + volume + " is locked by " + holder + "; waiting");
  while (flock(fd_, LOCK_EX) != 0) {
    if (errno != EINTR) {
      reportError("apply: cannot lock " + mountPoint + ": " + std::strerror(errno));
      return false;
    }
  }
  return true;
}
