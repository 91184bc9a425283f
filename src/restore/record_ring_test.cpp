#include "restore/record_ring.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace {

// The bytes of record number n: its size and contents follow from n alone.
std::size_t sizeOf(std::uint64_t n) {
  if (n % 97 == 0) return RecordRing::kLargestRecord;
  if (n % 13 == 0) return 0;
  return static_cast<std::size_t>((n * 2654435761u) % 5000);
}
char byteOf(std::uint64_t n, std::size_t at) { return static_cast<char>((n * 31 + at * 7) & 0xff); }

void writeRecord(RecordRing &ring, std::uint64_t n) {
  const std::size_t size = sizeOf(n);
  char *record = ring.reserve(size);
  for (std::size_t at = 0; at < size; ++at)
    record[at] = byteOf(n, at);
  ring.commit(size);
}

// Reads record n and tells whether its size and bytes are the ones written.
bool readRecord(RecordRing &ring, std::uint64_t n) {
  std::size_t size = 0;
  const char *record = ring.next(size);
  bool same = size == sizeOf(n);
  for (std::size_t at = 0; same && at < size; ++at)
    same = record[at] == byteOf(n, at);
  ring.release();
  return same;
}

TEST(RecordRing, RecordsArriveWholeAndInOrderAcrossManyTurnsOfTheRing) {
  auto ring = std::make_unique<RecordRing>();
  constexpr std::uint64_t kRecords = 20000;  // about 60 turns of the ring
  std::thread writer([&] {
    for (std::uint64_t n = 0; n < kRecords; ++n)
      writeRecord(*ring, n);
    ring->publish();
  });
  std::uint64_t wrong = 0;
  for (std::uint64_t n = 0; n < kRecords; ++n)
    wrong += readRecord(*ring, n) ? 0 : 1;
  writer.join();
  EXPECT_EQ(wrong, 0u);
}

TEST(RecordRing, ASlowReaderPutsTheWriterToSleepAndWakesIt) {
  auto ring = std::make_unique<RecordRing>();
  constexpr std::uint64_t kRecords = 40;
  std::atomic<std::uint64_t> written{0};
  std::thread writer([&] {
    for (std::uint64_t n = 0; n < kRecords; ++n) {
      char *record = ring->reserve(RecordRing::kLargestRecord);
      std::memset(record, static_cast<int>(n), RecordRing::kLargestRecord);
      ring->commit(RecordRing::kLargestRecord);
      written = n + 1;
    }
    ring->publish();
  });
  std::uint64_t wrong = 0;
  for (std::uint64_t n = 0; n < kRecords; ++n) {
    if (n % 8 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    std::size_t size = 0;
    const char *record = ring->next(size);
    if (size != RecordRing::kLargestRecord || record[0] != static_cast<char>(n) ||
        record[size - 1] != static_cast<char>(n))
      ++wrong;
    ring->release();
    // Two records of half the ring never stand in it at once beyond what was read.
    EXPECT_LE(written.load(), n + 3);
  }
  writer.join();
  EXPECT_EQ(wrong, 0u);
}

TEST(RecordRing, ASlowWriterPutsTheReaderToSleepAndWakesIt) {
  auto ring = std::make_unique<RecordRing>();
  constexpr std::uint64_t kRecords = 6;
  std::thread writer([&] {
    for (std::uint64_t n = 0; n < kRecords; ++n) {
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      writeRecord(*ring, n + 1);
      ring->publish();
    }
  });
  std::uint64_t wrong = 0;
  for (std::uint64_t n = 0; n < kRecords; ++n)
    wrong += readRecord(*ring, n + 1) ? 0 : 1;
  writer.join();
  EXPECT_EQ(wrong, 0u);
}

TEST(RecordRing, PublishShowsRecordsBeforeABatchIsFull) {
  auto ring = std::make_unique<RecordRing>();
  std::atomic<bool> firstRead{false};
  std::atomic<bool> secondWritten{false};
  std::thread writer([&] {
    writeRecord(*ring, 1);
    ring->publish();
    // Wait (a few seconds at most) for the reader to have the first record, then go on.
    for (int wait = 0; wait < 500 && !firstRead; ++wait)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    secondWritten = true;
    writeRecord(*ring, 2);
    ring->publish();
  });
  EXPECT_TRUE(readRecord(*ring, 1));
  EXPECT_FALSE(secondWritten.load()) << "the first record came only with the second";
  firstRead = true;
  EXPECT_TRUE(readRecord(*ring, 2));
  writer.join();
}

TEST(RecordRing, UnpublishedRecordsStayWithTheWriterUntilABatchIsFull) {
  auto ring = std::make_unique<RecordRing>();
  std::atomic<int> committed{0};
  std::thread writer([&] {
    for (int n = 0; n < 64; ++n) {
      writeRecord(*ring, 1);
      committed = n + 1;
      if (n == 3) std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ring->publish();
  });
  // The first records show only once a whole batch (more than four) is committed.
  EXPECT_TRUE(readRecord(*ring, 1));
  EXPECT_GT(committed.load(), 4);
  for (int n = 1; n < 64; ++n)
    EXPECT_TRUE(readRecord(*ring, 1));
  writer.join();
}

}  // namespace
