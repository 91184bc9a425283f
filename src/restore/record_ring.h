// A ring of variable-size records handed from one thread (the writer) to another (the reader),
// in order. Each side shows its progress to the other a batch of records at a time, and whenever
// it is about to wait: the writer before it waits for room (or calls publish()), the reader
// before it waits for records. A side waits only when the ring is full or empty: first spinning
// briefly, so that a steady stream of records never puts either side to sleep, then on a
// condition variable.
#pragma once
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

class RecordRing {
public:
  static constexpr std::size_t kCapacity = std::size_t{1} << 20;
  // The largest record that may be written: somewhat less than half the ring, so that a record
  // always finds room once the reader has caught up.
  static constexpr std::size_t kLargestRecord = kCapacity / 2 - 64;

  RecordRing() = default;
  RecordRing(const RecordRing &) = delete;
  RecordRing &operator=(const RecordRing &) = delete;

  // Writer: room for a record of `size` bytes (at most kLargestRecord), contiguous and aligned
  // to 8 bytes, waiting for the reader to free room when needed. Then commit(size) hands it over.
  char *reserve(std::size_t size);
  void commit(std::size_t size);
  // Writer: shows the reader every record committed so far.
  void publish();

  // Reader: the next record and its size, waiting for the writer when none is there. Then
  // release() frees it.
  const char *next(std::size_t &size);
  void release();

private:
  // Apart enough that one side's writes never reach the other side's lines: processors fetch
  // lines in pairs, so 64 bytes apart is not enough.
  static constexpr std::size_t kLineSpan = 128;
  static constexpr unsigned kBatch = 32;  // records between two showings of progress
  template <typename Ready, typename Awake>
  void waitUntil(Ready ready, std::atomic<bool> &asleep, Awake awake);
  void waitForRoom(std::size_t needed);
  void waitForRecord();
  void publishRead();

  alignas(kLineSpan) std::atomic<std::uint64_t> written_{0};  // bytes committed so far
  std::atomic<bool> writerAsleep_{false};
  alignas(kLineSpan) std::atomic<std::uint64_t> read_{0};  // bytes released so far
  std::atomic<bool> readerAsleep_{false};
  // Each side's own position and the last position of the other side it saw.
  alignas(kLineSpan) std::uint64_t writerAt_ = 0;
  std::uint64_t readSeen_ = 0;
  unsigned unpublished_ = 0;
  alignas(kLineSpan) std::uint64_t readerAt_ = 0;
  std::uint64_t writtenSeen_ = 0;
  std::uint64_t readerRecordSize_ = 0;
  unsigned unreleased_ = 0;
  // Taken only to sleep and to wake, on lines of their own: a side going to sleep must not take
  // the other side's positions from its cache.
  alignas(kLineSpan) std::mutex sleep_;
  alignas(kLineSpan) std::condition_variable wake_;
  alignas(kLineSpan) char bytes_[kCapacity];
};
