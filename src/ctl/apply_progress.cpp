#include "ctl/apply_progress.h"

#include <unistd.h>

#include <cstdio>

namespace {

double secondsNow() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

}  // namespace

ApplyProgress::ApplyProgress(int fd, unsigned long total)
    : fd_(fd), total_(total), start_(secondsNow()) {}

void ApplyProgress::update(unsigned long done, unsigned long refused) {
  if (fd_ < 0) return;
  const double now = secondsNow();
  if (drawnAt_ >= 0 && now - drawnAt_ < 0.2) return;
  draw(done, refused, now);
}

void ApplyProgress::end(unsigned long done, unsigned long refused) {
  if (fd_ < 0 || drawnAt_ < 0) return;
  draw(done, refused, secondsNow());
  (void)!write(fd_, "\n", 1);
}

void ApplyProgress::draw(unsigned long done, unsigned long refused, double now) {
  drawnAt_ = now;
  const double elapsed = now - start_;
  const double rate = elapsed > 0 ? static_cast<double>(done) / elapsed : 0;
  const unsigned long left =
      rate > 0 ? static_cast<unsigned long>(static_cast<double>(total_ - done) / rate) : 0;
  char line[160];
  const int length = std::snprintf(
      line, sizeof line, "\rapply: %lu/%lu requests, %.0f/s, %lu:%02lu left, %lu refused ", done,
      total_, rate, left / 60, left % 60, refused);
  if (length > 0) (void)!write(fd_, line, static_cast<std::size_t>(length));
}
