// A second thread that helps while a large info file is read into its buffer.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>

#include "save/info_wrapper.h"

// The system clears every fresh page of memory before its first use, and the text read must then
// be searched for its first NUL and for the reply wrapper's tags. For a buffer of hundreds of
// megabytes both cost about as much as the reading itself. A ReadHelper has the pages made ready
// ahead of the reading, and what has been read searched behind it, on another thread (when
// another processor is idle). Without the thread, the search is done by the reading thread as each
// piece arrives. The thread only asks the system to make pages ready and reads what has been
// filled, so the reads meanwhile are unaffected.
class ReadHelper {
public:
  explicit ReadHelper(WrapperTagFinder &wrapper) : wrapper_(wrapper) {}
  ReadHelper(const ReadHelper &) = delete;
  ReadHelper &operator=(const ReadHelper &) = delete;
  ~ReadHelper() { stop(); }

  // Starts the thread on a buffer of `size` bytes at `data`: does nothing when no thread can be
  // had or, with `whenIdle`, when no other processor is idle. The buffer must stay where it is
  // until stop() or finish().
  void start(char *data, std::size_t size, bool whenIdle = true);
  // The buffer at `data` now holds `filled` bytes, the ones after the last call new.
  void filledTo(char *data, std::size_t filled);
  // The thread gives up at once; the reading thread searches whatever it had not. The buffer may
  // then move.
  void stop();
  // Every byte filled has been searched (by the thread, then by the caller if need be).
  void finish(char *data);
  // The first NUL in what has been searched, or WrapperTags::kNotFound.
  std::size_t firstNul() const { return firstNul_; }
  bool running() const { return running_; }

private:
  static void *run(void *self);
  void help();
  void searchTo(char *data, std::size_t filled);

  WrapperTagFinder &wrapper_;
  char *data_ = nullptr;
  std::size_t size_ = 0;
  // Searched up to here, and the first NUL found; the thread's while it runs.
  std::size_t searched_ = 0;
  std::size_t firstNul_ = WrapperTags::kNotFound;
  std::size_t filled_ = 0;
  std::atomic<std::size_t> published_{0};
  std::atomic<bool> finishing_{false};
  std::atomic<bool> stopping_{false};
  pthread_t thread_{};
  bool running_ = false;
};
