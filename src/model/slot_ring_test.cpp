#include "model/slot_ring.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void put(SlotRing<std::string> &ring, const std::string &text) {
  ring.next() = text;
  ring.push();
}

std::string take(SlotRing<std::string> &ring) {
  const std::string text = ring.front();
  ring.pop();
  return text;
}

TEST(SlotRing, HandsItemsOutInTheOrderTheyCame) {
  SlotRing<std::string> ring;
  EXPECT_TRUE(ring.empty());
  put(ring, "a");
  put(ring, "b");
  EXPECT_EQ(ring.size(), 2u);
  EXPECT_EQ(take(ring), "a");
  put(ring, "c");
  EXPECT_EQ(take(ring), "b");
  EXPECT_EQ(take(ring), "c");
  EXPECT_TRUE(ring.empty());
}

TEST(SlotRing, GrowsWhenFullAfterWrappingAroundWithTheOrderKept) {
  SlotRing<std::string> ring;
  put(ring, "1");
  put(ring, "2");
  put(ring, "3");
  EXPECT_EQ(take(ring), "1");
  EXPECT_EQ(take(ring), "2");
  // The next items wrap around to the start of the slots, then the ring fills and grows.
  put(ring, "4");
  put(ring, "5");
  put(ring, "6");
  put(ring, "7");
  EXPECT_EQ(ring.size(), 5u);
  for (const char *expected : {"3", "4", "5", "6", "7"})
    EXPECT_EQ(take(ring), expected);
}

TEST(SlotRing, ASlotNotPushedIsGivenAgainWithWhatWasLeftInIt) {
  SlotRing<std::string> ring;
  put(ring, "kept");
  ring.next() = "dropped";
  EXPECT_EQ(ring.size(), 1u);
  EXPECT_EQ(ring.next(), "dropped");
  EXPECT_EQ(take(ring), "kept");
}

TEST(SlotRing, AFreedSlotKeepsItsOldContentsForReuse) {
  SlotRing<std::string> ring;
  put(ring, "old");
  EXPECT_EQ(take(ring), "old");
  // One slot, free again: the next item is built where the old one was.
  EXPECT_EQ(ring.next(), "old");
}

}  // namespace
