#include "ctl/record_ring.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kBlock = RecordRing::kBlockSize;
constexpr std::size_t kBlocks = RecordRing::kBlocks;

// Runs `body` in a child process with the other end of `ring` (the ring is open); the child
// ends with the status `body` returns. This process keeps the other side.
pid_t forkSide(RecordRing &ring, bool childWrites, const std::function<int()> &body) {
  const pid_t child = fork();
  if (child == 0) {
    if (childWrites)
      ring.becomeWriter();
    else
      ring.becomeReader();
    _exit(body());
  }
  if (childWrites)
    ring.becomeReader();
  else
    ring.becomeWriter();
  return child;
}

// How a child ended: its exit status, or 100 + the signal that ended it.
int ending(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? 100 + WTERMSIG(status) : WEXITSTATUS(status);
}

// A record as the writer makes it: `size` bytes of `fill`, or false when there is no room.
bool writeRecord(RecordRing &ring, std::size_t size, char fill) {
  char *const room = ring.reserve(size);
  if (room == nullptr) return false;
  std::memset(room, fill, size);
  ring.commit(size);
  return true;
}

// Every block the reader gets, as its bytes, until the writer's end.
std::vector<std::string> readAll(RecordRing &ring) {
  std::vector<std::string> blocks;
  std::string_view bytes;
  while (ring.next(bytes))
    blocks.emplace_back(bytes);
  return blocks;
}

bool sendPacket(int end, const void *bytes, std::size_t size) {
  return send(end, bytes, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

// The test records: 3,000 of 1,000 to 1,999 bytes (about 4.5 MB, some four times the ring).
constexpr int kRecords = 3000;
std::size_t recordSize(int record) { return 1000 + static_cast<std::size_t>(record % 1000); }
char recordFill(int record) { return static_cast<char>('a' + record % 26); }

TEST(RecordRing, RecordsComeInOrderAndNoneStraddlesABlock) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t writer = forkSide(ring, true, [&ring] {
    for (int record = 0; record < kRecords; ++record)
      if (!writeRecord(ring, recordSize(record), recordFill(record))) return 1;
    return ring.handOver() ? 0 : 2;
  });
  const std::vector<std::string> blocks = readAll(ring);
  EXPECT_EQ(ending(writer), 0);
  ASSERT_GT(blocks.size(), 3 * kBlocks);
  int record = 0;
  for (const std::string &block : blocks) {
    std::size_t at = 0;
    // Each block is whole records; a record that would not fit starts the next block.
    while (at < block.size() && record < kRecords) {
      const std::size_t size = recordSize(record);
      ASSERT_LE(at + size, block.size());
      EXPECT_EQ(block.substr(at, size), std::string(size, recordFill(record)));
      at += size;
      ++record;
    }
    EXPECT_EQ(at, block.size());
    if (&block != &blocks.back()) {
      EXPECT_GT(at + recordSize(record), kBlock);
    }
  }
  EXPECT_EQ(record, kRecords);
}

TEST(RecordRing, ARecordOfAWholeBlockFitsOneLargerDoesNot) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t writer = forkSide(ring, true, [&ring] {
    if (ring.reserve(kBlock + 1) != nullptr) return 1;
    if (!writeRecord(ring, kBlock, 'x') || !writeRecord(ring, 1, 'y')) return 2;
    return ring.handOver() ? 0 : 3;
  });
  const std::vector<std::string> blocks = readAll(ring);
  EXPECT_EQ(ending(writer), 0);
  EXPECT_EQ(blocks, (std::vector<std::string>{std::string(kBlock, 'x'), "y"}));
}

TEST(RecordRing, APartialBlockIsHandedOverOnceAndAnEmptyOneNever) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t writer = forkSide(ring, true, [&ring] {
    if (!ring.handOver()) return 1;  // nothing reserved yet
    if (!writeRecord(ring, 3, 'a') || !writeRecord(ring, 2, 'b')) return 2;
    if (!ring.handOver() || !ring.handOver()) return 3;            // the second has nothing to hand
    if (ring.reserve(0) == nullptr || !ring.handOver()) return 4;  // a block, still empty
    return 0;
  });
  const std::vector<std::string> blocks = readAll(ring);
  EXPECT_EQ(ending(writer), 0);
  EXPECT_EQ(blocks, std::vector<std::string>{"aaabb"});
}

TEST(RecordRing, AWriterThatDiesLeavesWhatItHadHandedOver) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  // Two full blocks handed over, a third being filled when the writer is killed.
  const pid_t writer = forkSide(ring, true, [&ring] {
    for (const char fill : {'a', 'b', 'c'})
      if (!writeRecord(ring, kBlock, fill)) return 1;
    std::raise(SIGKILL);
    return 2;
  });
  const std::vector<std::string> blocks = readAll(ring);
  EXPECT_EQ(ending(writer), 100 + SIGKILL);
  EXPECT_EQ(blocks, (std::vector<std::string>{std::string(kBlock, 'a'), std::string(kBlock, 'b')}));
}

TEST(RecordRing, AFullRingWaitsForTheReaderAndEndsWhenItGoes) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  int progress[2];
  ASSERT_EQ(pipe(progress), 0);
  // The writer fills block after block and says so; it ends with the number of the first block
  // it was refused.
  const pid_t writer = forkSide(ring, true, [&ring, &progress] {
    close(progress[0]);
    for (int block = 0;; ++block) {
      if (!writeRecord(ring, kBlock, static_cast<char>('0' + block))) return block;
      if (write(progress[1], "+", 1) != 1) return 99;
    }
  });
  close(progress[1]);
  // The reader takes the first block and keeps it: the writer can fill the ring's other blocks
  // and no more, and what it fills never lands in the block the reader holds.
  std::string_view first;
  ASSERT_TRUE(ring.next(first));
  char told[kBlocks];
  std::size_t count = 0;
  while (count < kBlocks) {
    const ssize_t got = read(progress[0], told + count, kBlocks - count);
    ASSERT_GT(got, 0);
    count += static_cast<std::size_t>(got);
  }
  EXPECT_EQ(first, std::string(kBlock, '0'));
  ring.close();
  EXPECT_EQ(ending(writer), static_cast<int>(kBlocks));
  close(progress[0]);
}

TEST(RecordRing, AReaderThatHandsBlocksBackLetsTheWriterGoOnForever) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const int rounds = 5 * static_cast<int>(kBlocks);
  const pid_t writer = forkSide(ring, true, [&ring, rounds] {
    for (int block = 0; block < rounds; ++block)
      if (!writeRecord(ring, kBlock, static_cast<char>('A' + block))) return 1;
    return ring.handOver() ? 0 : 2;
  });
  const std::vector<std::string> blocks = readAll(ring);
  EXPECT_EQ(ending(writer), 0);
  ASSERT_EQ(blocks.size(), static_cast<std::size_t>(rounds));
  for (int block = 0; block < rounds; ++block)
    EXPECT_EQ(blocks[block], std::string(kBlock, static_cast<char>('A' + block)));
}

// A writer that sends `packet` as its first token; the reader must refuse it.
void expectReaderRefuses(const void *packet, std::size_t size) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t writer = forkSide(ring, true, [&ring, packet, size] {
    if (!sendPacket(ring.sendEnd(), packet, size)) return 1;
    char any;
    return recv(ring.receiveEnd(), &any, 1, 0) == 0 ? 0 : 2;  // until the reader goes
  });
  std::string_view bytes;
  EXPECT_FALSE(ring.next(bytes));
  ring.close();
  EXPECT_EQ(ending(writer), 0);
}

TEST(RecordRing, TheReaderRefusesABlockOutOfRange) {
  const std::uint32_t token[2] = {static_cast<std::uint32_t>(kBlocks), 10};
  expectReaderRefuses(token, sizeof token);
}

TEST(RecordRing, TheReaderRefusesASizeOverTheBlocks) {
  const std::uint32_t token[2] = {0, static_cast<std::uint32_t>(kBlock + 1)};
  expectReaderRefuses(token, sizeof token);
}

TEST(RecordRing, TheReaderRefusesATokenOfAnotherLength) {
  const std::uint32_t shorter[1] = {0};
  expectReaderRefuses(shorter, sizeof shorter);
  const std::uint32_t longer[3] = {0, 10, 0};
  expectReaderRefuses(longer, sizeof longer);
}

TEST(RecordRing, TheReaderTakesAWholeBlockAndAnEmptyOne) {
  for (const std::uint32_t size : {static_cast<std::uint32_t>(kBlock), std::uint32_t{0}}) {
    RecordRing ring;
    ASSERT_TRUE(ring.open());
    const pid_t writer = forkSide(ring, true, [&ring, size] {
      const std::uint32_t token[2] = {static_cast<std::uint32_t>(kBlocks - 1), size};
      return sendPacket(ring.sendEnd(), token, sizeof token) ? 0 : 1;
    });
    std::string_view bytes;
    ASSERT_TRUE(ring.next(bytes));
    EXPECT_EQ(bytes.size(), size);
    EXPECT_FALSE(ring.next(bytes));
    EXPECT_EQ(ending(writer), 0);
  }
}

// A reader that takes the ring's every block and then frees with `packet`; the writer, which
// waits for it, must refuse it.
void expectWriterRefuses(const void *packet, std::size_t size) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t reader = forkSide(ring, false, [&ring, packet, size] {
    std::uint32_t token[2];
    for (std::size_t block = 0; block < kBlocks; ++block)
      if (recv(ring.receiveEnd(), token, sizeof token, 0) != sizeof token) return 1;
    if (!sendPacket(ring.sendEnd(), packet, size)) return 2;
    return recv(ring.receiveEnd(), token, sizeof token, 0) == 0 ? 0 : 3;  // until the writer goes
  });
  for (std::size_t block = 0; block < kBlocks; ++block)
    ASSERT_TRUE(writeRecord(ring, kBlock, 'w'));
  EXPECT_EQ(ring.reserve(1), nullptr);
  ring.close();
  EXPECT_EQ(ending(reader), 0);
}

TEST(RecordRing, TheWriterRefusesAFreedBlockOutOfRange) {
  const std::uint32_t token = static_cast<std::uint32_t>(kBlocks);
  expectWriterRefuses(&token, sizeof token);
}

TEST(RecordRing, TheWriterRefusesAFreedTokenOfAnotherLength) {
  const std::uint32_t token[2] = {0, 0};
  expectWriterRefuses(token, sizeof token);
}

TEST(RecordRing, AWriterWhoseReaderIsGoneIsRefusedAtOnce) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t reader = forkSide(ring, false, [] { return 0; });
  EXPECT_EQ(ending(reader), 0);
  ASSERT_TRUE(writeRecord(ring, 5, 'z'));  // a block of its own needs no reader
  EXPECT_FALSE(ring.handOver());
}

TEST(RecordRing, AReaderWhoseWriterIsGoneGetsNothing) {
  RecordRing ring;
  ASSERT_TRUE(ring.open());
  const pid_t writer = forkSide(ring, true, [] { return 0; });
  EXPECT_EQ(ending(writer), 0);
  std::string_view bytes;
  EXPECT_FALSE(ring.next(bytes));
}

}  // namespace
