#include "save/read_helper.h"

#include <sched.h>
#include <sys/mman.h>

#include "save/idle_processor.h"

namespace {

// Pages are made ready this many bytes at a time, so that new text to search, or a stop, is
// noticed soon.
constexpr std::size_t kStretch = 4 << 20;

}  // namespace

void ReadHelper::start(char *data, std::size_t size, bool whenIdle) {
  if (running_ || (whenIdle && !processorIdle())) return;
  data_ = data;
  size_ = size;
  published_ = filled_;
  finishing_ = false;
  stopping_ = false;
  running_ = pthread_create(&thread_, nullptr, &ReadHelper::run, this) == 0;
}

void ReadHelper::filledTo(char *data, std::size_t filled) {
  filled_ = filled;
  if (running_)
    published_.store(filled, std::memory_order_release);
  else
    searchTo(data, filled);
}

void ReadHelper::stop() {
  if (!running_) return;
  stopping_.store(true, std::memory_order_relaxed);
  pthread_join(thread_, nullptr);
  running_ = false;
}

void ReadHelper::finish(char *data) {
  if (running_) {
    finishing_.store(true, std::memory_order_release);
    pthread_join(thread_, nullptr);
    running_ = false;
  }
  searchTo(data, filled_);
}

// Nothing after the first NUL is part of the text, so the search ends there.
void ReadHelper::searchTo(char *data, std::size_t filled) {
  if (firstNul_ != WrapperTags::kNotFound || searched_ >= filled) return;
  firstNul_ = wrapper_.scan(data, searched_, filled);
  searched_ = filled;
}

void *ReadHelper::run(void *self) {
  static_cast<ReadHelper *>(self)->help();
  return nullptr;
}

// Searches what has been filled as it comes, and between searches makes the next stretch of
// pages ready, from the start of the buffer on. Once the reading is over, only the search goes on.
void ReadHelper::help() {
  std::size_t ready = 0;
  unsigned idle = 0;
  while (!stopping_.load(std::memory_order_relaxed)) {
    const bool finishing = finishing_.load(std::memory_order_acquire);
    const std::size_t filled = published_.load(std::memory_order_acquire);
    bool worked = false;
    if (firstNul_ == WrapperTags::kNotFound && searched_ < filled) {
      searchTo(data_, filled);
      worked = true;
    } else if (finishing) {
      return;
    }
    if (!finishing && ready < size_) {
      const std::size_t length = size_ - ready < kStretch ? size_ - ready : kStretch;
      // Systems that cannot do this say so at once; the reads then fault the pages in themselves.
      if (madvise(data_ + ready, length, MADV_POPULATE_WRITE) != 0)
        ready = size_;
      else
        ready += length;
      worked = true;
    }
    if (worked) {
      idle = 0;
    } else if (++idle < 64) {
#if defined(__x86_64__)
      __builtin_ia32_pause();
#endif
    } else {
      sched_yield();
    }
  }
}
