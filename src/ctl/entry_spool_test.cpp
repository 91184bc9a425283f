#include "ctl/entry_spool.h"

#include <gtest/gtest.h>

#include <string>

namespace {

Entry sample(int n) {
  Entry entry;
  entry.kind = n % 2 == 0 ? EntryKind::trustee : EntryKind::dirQuota;
  entry.at = {static_cast<unsigned long>(n) + 10, 3};
  entry.pathAt = {static_cast<unsigned long>(n) + 9, 7};
  entry.ad = n % 3 == 0;
  entry.rights = static_cast<RightsSet>(n & 0x3ff);
  if (n % 8 == 1) {  // written out of table order, one right twice
    entry.rights = 0;
    for (const char *right : {"write", "read", "secure", "read"})
      entry.rights |= rightBit(right);
  }
  entry.cdata = static_cast<std::uint8_t>(n & 15);
  entry.path = "/d/f" + std::to_string(n);
  entry.name = n % 5 == 0 ? std::string() : "a&b.corp.TREE.";
  entry.id = "S-1-5-21-" + std::to_string(n);
  entry.amount = std::to_string(n * 1000);
  entry.spaceUsed = "12";
  entry.zid = std::to_string(n * 7);
  entry.rawPath = n % 4 == 0 ? entry.path : "<![CDATA[" + entry.path;  // same, or not
  entry.rawName = n % 5 == 0 ? entry.name : "a&amp;b.corp.TREE.";
  entry.rawId = n % 6 == 0 ? entry.id : std::string();
  entry.rawAmount = std::string(n % 7 == 0 ? 3000 : 1, 'x');  // spans blocks when many
  return entry;
}

void expectSame(const Entry &a, const Entry &b) {
  EXPECT_EQ(a.kind, b.kind);
  EXPECT_EQ(a.at.line, b.at.line);
  EXPECT_EQ(a.at.column, b.at.column);
  EXPECT_EQ(a.pathAt.line, b.pathAt.line);
  EXPECT_EQ(a.pathAt.column, b.pathAt.column);
  EXPECT_EQ(a.ad, b.ad);
  EXPECT_EQ(a.rights, b.rights);
  EXPECT_EQ(a.rights.written(), b.rights.written());
  EXPECT_EQ(a.cdata, b.cdata);
  for (auto field :
       {&Entry::path, &Entry::name, &Entry::id, &Entry::amount, &Entry::spaceUsed, &Entry::zid,
        &Entry::rawPath, &Entry::rawName, &Entry::rawId, &Entry::rawAmount})
    EXPECT_EQ(a.*field, b.*field);
}

// Writes and reads back 4,000 entries (about 2 MiB: more than one block each way) through a
// spool that keeps `memoryLimit` bytes of blocks in memory; gives how many blocks it kept there.
std::size_t roundTrip(std::size_t memoryLimit) {
  EntrySpool spool(memoryLimit);
  EXPECT_EQ(spool.open(), 0);
  constexpr int kCount = 4000;
  for (int n = 0; n < kCount; ++n)
    spool.write(sample(n));
  EXPECT_EQ(spool.count(), static_cast<unsigned long>(kCount));
  EXPECT_EQ(spool.rewind(), 0);
  Entry entry;
  entry.name = "left over from before";
  for (int n = 0; n < kCount; ++n) {
    EXPECT_TRUE(spool.read(entry)) << n;
    expectSame(entry, sample(n));
  }
  EXPECT_FALSE(spool.read(entry));
  EXPECT_EQ(spool.error(), 0);
  return spool.memoryBlocks();
}

TEST(EntrySpool, GivesBackEveryFieldOfEveryEntryInOrder) {
  EXPECT_GE(roundTrip(EntrySpool::kMemoryLimit), 2u);
}

TEST(EntrySpool, BlocksPastTheMemoryBoundGoToTheFileInOrder) {
  EXPECT_EQ(roundTrip(std::size_t{1} << 20), 1u);
}

TEST(EntrySpool, WithoutMemoryEveryBlockGoesToTheFile) { EXPECT_EQ(roundTrip(0), 0u); }

// An entry longer than a block, between two short ones, in memory and in the file.
TEST(EntrySpool, AnEntryLongerThanABlockComesBackWhole) {
  for (const std::size_t memoryLimit : {EntrySpool::kMemoryLimit, std::size_t{0}}) {
    EntrySpool spool(memoryLimit);
    ASSERT_EQ(spool.open(), 0);
    Entry big = sample(2);
    big.rawAmount.assign(std::size_t{3} << 20, 'q');
    for (const Entry &entry : {sample(1), big, sample(3)})
      spool.write(entry);
    ASSERT_EQ(spool.rewind(), 0);
    Entry entry;
    for (const Entry &expected : {sample(1), big, sample(3)}) {
      ASSERT_TRUE(spool.read(entry));
      expectSame(entry, expected);
    }
    EXPECT_FALSE(spool.read(entry));
    EXPECT_EQ(spool.error(), 0);
  }
}

TEST(EntrySpool, EmptySpoolReadsNothing) {
  EntrySpool spool;
  ASSERT_EQ(spool.open(), 0);
  ASSERT_EQ(spool.rewind(), 0);
  Entry entry;
  EXPECT_FALSE(spool.read(entry));
  EXPECT_EQ(spool.count(), 0UL);
}

TEST(EntrySpool, UnopenedSpoolReadsNothing) {
  EntrySpool spool;
  Entry entry;
  EXPECT_FALSE(spool.read(entry));
}

}  // namespace
