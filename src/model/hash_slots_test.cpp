#include "model/hash_slots.h"

#include <gtest/gtest.h>

namespace {

auto any = [](int) { return true; };

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
  // Hashes sharing their low bits crowd one run of slots, before and after each doubling.
  for (int at = 1; at <= 5000; ++at)
    ASSERT_EQ(*slots.findOrAdd(std::uint64_t(at) << 16, any, at, added), at);
  EXPECT_EQ(slots.size(), 5000u);
  for (int at = 1; at <= 5000; ++at) {
    const int *value = slots.find(std::uint64_t(at) << 16, any);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(*value, at);
  }
}

TEST(KeyHash, IsNeverZeroAndTellsKeysApart) {
  EXPECT_NE(keyHash(""), 0u);
  EXPECT_NE(keyHash("a"), keyHash("b"));
  EXPECT_EQ(keyHash("same"), keyHash("same"));
}
