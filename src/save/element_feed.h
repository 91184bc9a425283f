// The elements of a large info-file text, found ahead on a second thread while the first one
// judges and compacts the ones already found.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>

#include "save/tag_search.h"

// Gives the batches that findElements gives when each is asked for from the end tag of the last
// element of the one before, the first from `from`. On a second thread, when the text is large
// and a processor is idle, the batches are found ahead into a ring; otherwise each is found when
// asked for. The thread only reads the text from the last element given on, so the text before
// that may be changed meanwhile.
class ElementFeed {
public:
  static constexpr std::size_t kBatch = 64;

  ElementFeed(const ElementSearch &search, const char *text, std::size_t from, std::size_t size);
  ElementFeed(const ElementFeed &) = delete;
  ElementFeed &operator=(const ElementFeed &) = delete;
  ~ElementFeed() { stop(); }

  // The next batch (at most kBatch places), valid until the next call; its size in *count, 0
  // when no more elements are found. After 0, stop() or a change of the text after the last
  // element given, nothing more is given.
  const ElementPlaces *next(std::size_t *count);
  // Waits for the thread to give up; from then on the text may change anywhere.
  void stop();
  bool threaded() const { return running_; }

private:
  static constexpr std::size_t kSlots = 16;
  struct Slot {
    ElementPlaces places[kBatch];
    std::size_t count;
  };

  static void *run(void *self);
  void produce();

  const ElementSearch &search_;
  const char *text_;
  std::size_t size_;
  std::size_t from_;
  bool done_ = false;
  Slot own_{};
  Slot ring_[kSlots];
  // Batches found and batches taken; the ring holds those in between.
  std::atomic<std::size_t> found_{0};
  std::atomic<std::size_t> taken_{0};
  std::atomic<bool> stopping_{false};
  pthread_t thread_{};
  bool running_ = false;
};

// Which texts get the second thread: those of at least `minimumSize` bytes, and only while a
// processor is idle unless `whenIdle` is false. Tests use it to run the thread on small texts;
// resetElementFeed() restores the choice of the save.
void setElementFeed(std::size_t minimumSize, bool whenIdle);
void resetElementFeed();
