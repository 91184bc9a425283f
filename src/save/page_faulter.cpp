#include "save/page_faulter.h"

#include <sys/mman.h>

#include "save/idle_processor.h"

namespace {

// Pages are made ready this many bytes at a time, so that a stop is noticed soon.
constexpr std::size_t kStretch = 8 << 20;

}  // namespace

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
