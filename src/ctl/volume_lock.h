// One apply per volume at a time: an exclusive flock on the volume's mount point, held until the
// process ends. Whoever holds it is found in /proc/locks by the mount point's inode.
#pragma once
#include <string>

class VolumeLock {
public:
  VolumeLock() = default;
  ~VolumeLock();
  VolumeLock(const VolumeLock &) = delete;
  VolumeLock &operator=(const VolumeLock &) = delete;

  // Takes the lock on `mountPoint`. When another process holds it: with `wait`, says so on
  // standard error and waits; without, fails. False after a message naming the holder.
  bool take(const std::string &volume, const std::string &mountPoint, bool wait);

private:
  int fd_ = -1;
};
