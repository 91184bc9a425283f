#include "save/page_faulter.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

// Pages are made ready this many bytes at a time, so that a stop is noticed soon.
constexpr std::size_t kStretch = 8 << 20;

}  // namespace

// The system's count of threads running or ready to run, this one among them, is below the
// number of processors. The count is the fourth field of /proc/loadavg ("running/total"); when it
// cannot be read, a processor is taken to be idle.
bool PageFaulter::processorIdle() {
  const long processors = sysconf(_SC_NPROCESSORS_ONLN);
  if (processors < 2) return false;
  const int fd = open("/proc/loadavg", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return true;
  char line[128];
  const ssize_t count = read(fd, line, sizeof line - 1);
  close(fd);
  if (count <= 0) return true;
  line[count] = '\0';
  const char *field = line;
  for (int skip = 0; skip < 3 && field != nullptr; ++skip) {
    field = std::strchr(field, ' ');
    if (field != nullptr) ++field;
  }
  if (field == nullptr) return true;
  char *after = nullptr;
  const long running = std::strtol(field, &after, 10);
  if (after == field || *after != '/') return true;
  return running < processors;
}

void PageFaulter::start(char *data, std::size_t size, bool whenIdle) {
  if (running_ || (whenIdle && !processorIdle())) return;
  data_ = data;
  size_ = size;
  stopping_ = false;
  running_ = pthread_create(&thread_, nullptr, &PageFaulter::run, this) == 0;
}

void PageFaulter::stop() {
  if (!running_) return;
  stopping_ = true;
  pthread_join(thread_, nullptr);
  running_ = false;
}

void *PageFaulter::run(void *self) {
  PageFaulter &faulter = *static_cast<PageFaulter *>(self);
  for (std::size_t at = 0; at < faulter.size_ && !faulter.stopping_; at += kStretch) {
    const std::size_t length = faulter.size_ - at < kStretch ? faulter.size_ - at : kStretch;
    // Systems that cannot do this say so at once; the reads then fault the pages in themselves.
    if (madvise(faulter.data_ + at, length, MADV_POPULATE_WRITE) != 0) break;
  }
  return nullptr;
}
