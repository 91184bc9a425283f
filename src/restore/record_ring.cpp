#include "restore/record_ring.h"

#include <cstring>

namespace {

// The 8 bytes before each record: its size, and whether it only fills the ring's end (the next
// record then starts at the ring's start).
struct RecordStart {
  std::uint32_t size;
  std::uint32_t fillsEnd;
};
constexpr std::size_t kStartSize = sizeof(RecordStart);
static_assert(kStartSize == 8);

// A record's whole extent in the ring: its start, its bytes, rounded up to 8.
constexpr std::size_t extent(std::size_t size) {
  return kStartSize + ((size + 7) & ~std::size_t{7});
}

// How long a side spins on the other's position before it goes to sleep.
constexpr int kSpins = 4000;

}  // namespace

char *RecordRing::reserve(std::size_t size) {
  std::size_t offset = writerAt_ % kCapacity;
  if (kCapacity - offset < extent(size)) {
    // The record does not fit before the ring's end: fill the end and start again at 0.
    const std::size_t fill = kCapacity - offset;
    waitForRoom(fill);
    const RecordStart start{static_cast<std::uint32_t>(fill), 1};
    std::memcpy(bytes_ + offset, &start, kStartSize);
    writerAt_ += fill;  // published with the record that follows
    offset = 0;
  }
  waitForRoom(extent(size));
  return bytes_ + offset + kStartSize;
}

void RecordRing::commit(std::size_t size) {
  const RecordStart start{static_cast<std::uint32_t>(size), 0};
  std::memcpy(bytes_ + writerAt_ % kCapacity, &start, kStartSize);
  writerAt_ += extent(size);
  if (++unpublished_ == kBatch) publish();
}

void RecordRing::publish() {
  unpublished_ = 0;
  written_.store(writerAt_, std::memory_order_seq_cst);
  if (readerAsleep_.load(std::memory_order_seq_cst)) {
    std::lock_guard<std::mutex> lock(sleep_);
    wake_.notify_all();
  }
}

// Spins until ready() holds (ready() also refreshes the side's view of the other's position),
// then sleeps, flagged in `asleep`, until awake() holds, and looks again.
template <typename Ready, typename Awake>
void RecordRing::waitUntil(Ready ready, std::atomic<bool> &asleep, Awake awake) {
  for (int spin = 0; !ready(); ++spin) {
    if (spin < kSpins) {
#if defined(__x86_64__) || defined(__i386__)
      __builtin_ia32_pause();
#endif
    } else {
      std::unique_lock<std::mutex> lock(sleep_);
      asleep.store(true, std::memory_order_seq_cst);
      wake_.wait(lock, awake);
      asleep.store(false, std::memory_order_relaxed);
    }
  }
}

void RecordRing::waitForRoom(std::size_t needed) {
  if (writerAt_ + needed - readSeen_ <= kCapacity) return;
  publish();
  // Asleep, the writer waits until half the ring is free, so that the two sides do not wake
  // each other for every record.
  waitUntil(
      [&] {
        readSeen_ = read_.load(std::memory_order_acquire);
        return writerAt_ + needed - readSeen_ <= kCapacity;
      },
      writerAsleep_,
      [&] { return writerAt_ - read_.load(std::memory_order_seq_cst) <= kCapacity / 2; });
}

const char *RecordRing::next(std::size_t &size) {
  for (;;) {
    waitForRecord();
    const char *at = bytes_ + readerAt_ % kCapacity;
    RecordStart start;
    std::memcpy(&start, at, kStartSize);
    if (start.fillsEnd == 0) {
      size = start.size;
      readerRecordSize_ = extent(start.size);
      return at + kStartSize;
    }
    readerAt_ += start.size;  // freed with the record that follows
  }
}

void RecordRing::release() {
  readerAt_ += readerRecordSize_;
  if (++unreleased_ == kBatch) publishRead();
}

void RecordRing::publishRead() {
  unreleased_ = 0;
  read_.store(readerAt_, std::memory_order_seq_cst);
  if (writerAsleep_.load(std::memory_order_seq_cst) &&
      written_.load(std::memory_order_relaxed) - readerAt_ <= kCapacity / 2) {
    std::lock_guard<std::mutex> lock(sleep_);
    wake_.notify_all();
  }
}

void RecordRing::waitForRecord() {
  if (writtenSeen_ > readerAt_) return;
  publishRead();
  waitUntil(
      [&] {
        writtenSeen_ = written_.load(std::memory_order_acquire);
        return writtenSeen_ != readerAt_;
      },
      readerAsleep_, [&] { return written_.load(std::memory_order_seq_cst) != readerAt_; });
}
