#include "model/hash_slots.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

auto any = [](auto) { return true; };

}  // namespace

TEST(HashSlots, FindsNothingInAnEmptyTable) {
  HashSlots<int> slots;
  EXPECT_EQ(slots.find(7, any), nullptr);
  EXPECT_EQ(slots.size(), 0u);
}

TEST(HashSlots, AddsOnceAndFindsWhatWasAdded) {
  HashSlots<int> slots;
  bool added = false;
  EXPECT_EQ(*slots.findOrAdd(7, any, 70, added), 70);
  EXPECT_TRUE(added);
  EXPECT_EQ(*slots.findOrAdd(7, any, 71, added), 70);  // the first value stays
  EXPECT_FALSE(added);
  ASSERT_NE(slots.find(7, any), nullptr);
  EXPECT_EQ(*slots.find(7, any), 70);
  EXPECT_EQ(slots.find(8, any), nullptr);
  EXPECT_EQ(slots.size(), 1u);
}

TEST(HashSlots, KeepsValuesOfOneHashApartByTheCallersTest) {
  HashSlots<int> slots;
  bool added = false;
  slots.findOrAdd(
      5, [](int value) { return value == 1; }, 1, added);
  slots.findOrAdd(
      5, [](int value) { return value == 2; }, 2, added);
  EXPECT_TRUE(added);
  EXPECT_EQ(slots.size(), 2u);
  ASSERT_NE(slots.find(5, [](int value) { return value == 2; }), nullptr);
  EXPECT_EQ(slots.find(5, [](int value) { return value == 3; }), nullptr);
}

TEST(HashSlots, KeepsEveryEntryAcrossGrowth) {
  HashSlots<int> slots;
  bool added = false;
  // Hashes alike crowd one run of slots, before and after each doubling.
  for (int at = 1; at <= 5000; ++at)
    ASSERT_EQ(*slots.findOrAdd(std::uint64_t(at) << 16, any, at, added), at);
  EXPECT_EQ(slots.size(), 5000u);
  for (int at = 1; at <= 5000; ++at) {
    const int *value = slots.find(std::uint64_t(at) << 16, any);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, at);
  }
}

// Past 2 MiB a table is mapped on its own rather than taken from the heap: it too starts with
// every slot free.
TEST(HashSlots, LargeTablesStartFreeAndKeepEveryEntry) {
  HashSlots<std::uint32_t> slots;
  bool added = false;
  constexpr std::uint32_t kCount = 400000;  // 1 Mi slots of 12 bytes
  for (std::uint32_t at = 1; at <= kCount; ++at) {
    slots.findOrAdd(keyHash(std::to_string(at)), any, at, added);
    ASSERT_TRUE(added) << at;
  }
  EXPECT_EQ(slots.size(), kCount);
  for (std::uint32_t at = 1; at <= kCount; at += 997) {
    const std::uint32_t *value = slots.find(keyHash(std::to_string(at)), any);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, at);
  }
  EXPECT_EQ(slots.find(keyHash("0"), any), nullptr);
}

// Cleared, a table holds nothing (large tables too) and takes keys again.
TEST(HashSlots, ClearedTablesHoldNothingAndTakeKeysAgain) {
  HashSlots<std::uint32_t> slots;
  bool added = false;
  for (std::uint32_t at = 1; at <= 400000; ++at)
    slots.findOrAdd(keyHash(std::to_string(at)), any, at, added);
  slots.clear();
  EXPECT_EQ(slots.size(), 0u);
  for (std::uint32_t at = 1; at <= 400000; at += 997)
    ASSERT_EQ(slots.find(keyHash(std::to_string(at)), any), nullptr) << at;
  slots.findOrAdd(keyHash("7"), any, 70, added);
  EXPECT_TRUE(added);
  slots.findOrAdd(keyHash("7"), any, 71, added);
  EXPECT_FALSE(added);
  EXPECT_EQ(*slots.find(keyHash("7"), any), 70u);
  EXPECT_EQ(slots.size(), 1u);
}

TEST(HashSlots, MovedTablesKeepTheirSlots) {
  HashSlots<int> slots;
  bool added = false;
  slots.findOrAdd(3, any, 30, added);
  HashSlots<int> moved(std::move(slots));
  ASSERT_NE(moved.find(3, any), nullptr);
  EXPECT_EQ(*moved.find(3, any), 30);
  EXPECT_EQ(moved.size(), 1u);
  HashSlots<int> assigned;
  assigned.findOrAdd(4, any, 40, added);
  assigned = std::move(moved);
  EXPECT_EQ(assigned.find(4, any), nullptr);
  ASSERT_NE(assigned.find(3, any), nullptr);
  EXPECT_EQ(assigned.size(), 1u);
}

TEST(KeyHash, IsNeverZeroAndTellsKeysApart) {
  EXPECT_NE(keyHash(""), 0u);
  EXPECT_NE(keyHash("a"), keyHash("b"));
  EXPECT_EQ(keyHash("same"), keyHash("same"));
}

// Grown to an expected count, a table takes that many keys before it grows again.
TEST(HashSlots, GrownToAnExpectedCountTakesThatManyKeys) {
  HashSlots<std::uint32_t> slots;
  bool added = false;
  slots.findOrAdd(keyHash("0"), any, 0, added);
  slots.grow(100000);
  for (std::uint32_t at = 1; at < 100000; ++at) {
    ASSERT_FALSE(slots.full()) << at;
    slots.findOrAdd(keyHash(std::to_string(at)), any, at, added);
    ASSERT_TRUE(added) << at;
  }
  // Not much larger than asked: every page of a table gets touched.
  std::uint32_t more = 100000;
  for (; !slots.full(); ++more)
    slots.findOrAdd(keyHash(std::to_string(more)), any, more, added);
  EXPECT_LT(more, 100010u);
  for (std::uint32_t at = 0; at < 100000; at += 991)
    ASSERT_EQ(*slots.find(keyHash(std::to_string(at)), any), at);
}

// Without an expected count (or with a smaller one) a full table doubles.
TEST(HashSlots, GrowsAtLeastTwofold) {
  HashSlots<int> slots;
  bool added = false;
  slots.findOrAdd(keyHash("0"), any, 0, added);
  int at = 1;
  for (; !slots.full(); ++at)
    slots.findOrAdd(keyHash(std::to_string(at)), any, at, added);
  const std::size_t first = slots.size();
  EXPECT_EQ(first, 768u);  // 3/4 of the first 1,024 slots
  slots.grow(10);
  for (; !slots.full(); ++at)
    slots.findOrAdd(keyHash(std::to_string(at)), any, at, added);
  EXPECT_EQ(slots.size(), 2 * first);
  for (int key = 0; key < at; ++key)
    ASSERT_EQ(*slots.find(keyHash(std::to_string(key)), any), key);
}

// Slots are picked by a hash's high bits: hashes alike there crowd one run, which wraps
// around the table's end.
TEST(HashSlots, RunsWrapAroundTheEnd) {
  HashSlots<int> slots;
  bool added = false;
  for (int at = 1; at <= 500; ++at)
    slots.findOrAdd(~std::uint64_t(0) - std::uint64_t(at), any, at, added);
  for (int at = 1; at <= 500; ++at)
    ASSERT_EQ(*slots.find(~std::uint64_t(0) - std::uint64_t(at), any), at);
  EXPECT_EQ(slots.find(~std::uint64_t(0), any), nullptr);
}

namespace {

// A temporary file of `size` bytes, open for reading.
struct SizedFile {
  explicit SizedFile(std::size_t size) {
    char name[] = "/tmp/hash_slots_testXXXXXX";
    fd = mkstemp(name);
    unlink(name);
    if (fd >= 0 && ftruncate(fd, static_cast<off_t>(size)) != 0) fd = -1;
  }
  ~SizedFile() {
    if (fd >= 0) close(fd);
  }
  int fd = -1;
};

}  // namespace

TEST(ExpectedEntries, ScalesWhatWasReadToTheWholeDocumentWithASixteenthToSpare) {
  SizedFile file(1600000);
  ASSERT_GE(file.fd, 0);
  EXPECT_EQ(expectedEntries(768, 160000, file.fd), 8160u);  // 7,680 and 1/16 more
}

TEST(ExpectedEntries, NeverMoreThanOneEntryForSixteenBytes) {
  SizedFile file(1600);
  ASSERT_GE(file.fd, 0);
  EXPECT_EQ(expectedEntries(90, 100, file.fd), 100u);
}

TEST(ExpectedEntries, TellNothingWithoutASizeOrPastIt) {
  SizedFile file(1600);
  ASSERT_GE(file.fd, 0);
  EXPECT_EQ(expectedEntries(10, 1600, file.fd), 0u);  // all of it read
  EXPECT_EQ(expectedEntries(0, 100, file.fd), 0u);
  EXPECT_EQ(expectedEntries(10, 0, file.fd), 0u);
  EXPECT_EQ(expectedEntries(10, 100, -1), 0u);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_EQ(expectedEntries(10, 100, ends[0]), 0u);  // a pipe has no size
  close(ends[0]);
  close(ends[1]);
}
