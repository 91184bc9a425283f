// The sandbox's one lock (sim/lock, flock): held while a request or a quillsim command reads and
// changes the volumes' state, so that clients running at once never lose each other's changes.
#pragma once

#include <string>
#include <sys/types.h>

namespace qs {

class StateLock {
public:
  explicit StateLock(const std::string &root) : path_(root + "/sim/lock") {}
  ~StateLock();
  StateLock(const StateLock &) = delete;
  StateLock &operator=(const StateLock &) = delete;

  /// Waits until the lock is held; false when the lock file cannot be opened.
  bool lock();
  void unlock();

private:
  std::string path_;
  int fd_ = -1;
  pid_t owner_ = 0;  // the process that opened fd_: a forked child opens its own
};

/// Holds a StateLock for a scope.
class Locked {
public:
  explicit Locked(StateLock &l) : lock_(l) { held_ = lock_.lock(); }
  ~Locked() {
    if (held_) lock_.unlock();
  }
  Locked(const Locked &) = delete;
  Locked &operator=(const Locked &) = delete;

private:
  StateLock &lock_;
  bool held_;
};

}  // namespace qs
