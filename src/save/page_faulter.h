// Faulting in a large fresh buffer on a second thread while the first one fills it.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>

// The system clears every fresh page of memory before its first use. For a buffer of hundreds of
// megabytes that clearing costs about as much as copying a file into it; a PageFaulter has it
// done on another thread, from the start of the buffer on, so that the two overlap. It only asks
// the system to make the pages ready and never touches their contents, so the reads that fill the
// buffer meanwhile are unaffected wherever they are.
class PageFaulter {
 public:
  PageFaulter() = default;
  PageFaulter(const PageFaulter &) = delete;
  PageFaulter &operator=(const PageFaulter &) = delete;
  ~PageFaulter() { stop(); }

  // Starts on [data, data + size); does nothing when no thread can be had or, with
  // `whenIdle`, when no other processor is idle (the thread would then only take turns with the
  // filling on a busy processor). The buffer must stay where it is until stop().
  void start(char *data, std::size_t size, bool whenIdle = true);
  // Waits for the thread to give up; the buffer may then move.
  void stop();

 private:
  static void *run(void *self);

  char *data_ = nullptr;
  std::size_t size_ = 0;
  std::atomic<bool> stopping_{false};
  pthread_t thread_{};
  bool running_ = false;
};
