#include "save/element_feed.h"

#include <sched.h>

#include "save/idle_processor.h"

namespace {

// Below this size the thread costs more than it saves.
constexpr std::size_t kDefaultMinimum = 16 << 20;

std::size_t minimumSize = kDefaultMinimum;
bool onlyWhenIdle = true;

// Waits a little for the other thread: briefly on the processor, then giving it up.
void pauseFor(unsigned &rounds) {
  if (++rounds < 64) {
#if defined(__x86_64__)
    __builtin_ia32_pause();
#endif
  } else {
    sched_yield();
  }
}

}  // namespace

void setElementFeed(std::size_t minimum, bool whenIdle) {
  minimumSize = minimum;
  onlyWhenIdle = whenIdle;
}

void resetElementFeed() { setElementFeed(kDefaultMinimum, true); }

ElementFeed::ElementFeed(const ElementSearch &search, const char *text, std::size_t from,
                         std::size_t size)
    : search_(search), text_(text), size_(size), from_(from) {
  if (size < minimumSize || (onlyWhenIdle && !processorIdle())) return;
  running_ = pthread_create(&thread_, nullptr, &ElementFeed::run, this) == 0;
}

void ElementFeed::stop() {
  done_ = true;
  if (!running_) return;
  stopping_.store(true, std::memory_order_relaxed);
  pthread_join(thread_, nullptr);
  running_ = false;
}

const ElementPlaces *ElementFeed::next(std::size_t *count) {
  *count = 0;
  if (done_) return nullptr;
  if (!running_) {
    own_.count = findElements(search_, text_, from_, size_, own_.places, kBatch);
    if (own_.count == 0) {
      done_ = true;
      return nullptr;
    }
    from_ = own_.places[own_.count - 1].end;
    *count = own_.count;
    return own_.places;
  }
  const std::size_t taken = taken_.load(std::memory_order_relaxed);
  unsigned rounds = 0;
  while (found_.load(std::memory_order_acquire) == taken)
    pauseFor(rounds);
  const Slot &slot = ring_[taken % kSlots];
  // The slot given last time may now be filled again.
  taken_.store(taken + 1, std::memory_order_release);
  if (slot.count == 0) {
    stop();
    return nullptr;
  }
  *count = slot.count;
  return slot.places;
}

void *ElementFeed::run(void *self) {
  static_cast<ElementFeed *>(self)->produce();
  return nullptr;
}

// Fills the ring a batch at a time; a slot is reused only once the batch after the one it held has
// been asked for, so that the batch given last stays intact.
void ElementFeed::produce() {
  std::size_t from = from_;
  for (std::size_t found = 0;; ++found) {
    unsigned rounds = 0;
    while (found - taken_.load(std::memory_order_acquire) + 1 >= kSlots) {
      if (stopping_.load(std::memory_order_relaxed)) return;
      pauseFor(rounds);
    }
    if (stopping_.load(std::memory_order_relaxed)) return;
    Slot &slot = ring_[found % kSlots];
    slot.count = findElements(search_, text_, from, size_, slot.places, kBatch);
    found_.store(found + 1, std::memory_order_release);
    if (slot.count == 0) return;
    from = slot.places[slot.count - 1].end;
  }
}
