#include "model/entry_index.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

Entry trustee(const std::string &path, const std::string &name, RightsSet rights) {
  Entry entry;
  entry.kind = EntryKind::trustee;
  entry.path = path;
  entry.name = name;
  entry.rights = rights;
  return entry;
}

}  // namespace

TEST(EntryIndex, MatchesByKeyAndListsTheUnmatchedInOrder) {
  EntryIndex index;
  for (int at = 0; at < 5000; ++at)
    ASSERT_TRUE(index.add(trustee("/f" + std::to_string(at), "u", 1)));
  EXPECT_FALSE(index.add(trustee("/f7", "u", 3)));  // the same key: the first stays
  Entry stored;
  for (int at = 0; at < 5000; at += 2)
    ASSERT_TRUE(index.match(trustee("/f" + std::to_string(at), "u", 2), stored));
  EXPECT_EQ(stored.rights, 1);
  EXPECT_FALSE(index.match(trustee("/f1", "other", 1), stored));
  std::vector<std::string> left;
  index.forEachUnmatched([&left](const Entry &entry) { left.push_back(entry.path); });
  ASSERT_EQ(left.size(), 2500u);
  EXPECT_EQ(left[0], "/f1");
  EXPECT_EQ(left[3], "/f7");
}

TEST(EntryIndex, DirectoryQuotaPathsCompareInOneForm) {
  EntryIndex index;
  Entry quota = trustee("\\a\\b", "", 0);
  quota.kind = EntryKind::dirQuota;
  quota.amount.assign(2, '1');
  ASSERT_TRUE(index.add(quota));
  Entry other;
  other.kind = EntryKind::dirQuota;
  other.path = "/a/b";
  Entry stored;
  ASSERT_TRUE(index.match(other, stored));
  EXPECT_EQ(stored.amount, "11");
  EXPECT_EQ(stored.path, "\\a\\b");
}

// Rights past the first eight (salvage, secure) sit beside the matched mark, never in it.
TEST(EntryIndex, SalvageAndSecureRightsNeitherMarkNorTakeTheMatch) {
  EntryIndex index;
  const RightsSet high = rightBit("salvage") | rightBit("secure") | rightBit("read");
  ASSERT_TRUE(index.add(trustee("/kept", "u", high)));
  ASSERT_TRUE(index.add(trustee("/named", "u", high)));
  Entry stored;
  ASSERT_TRUE(index.match(trustee("/named", "u", 1), stored));
  EXPECT_EQ(stored.rights, high);
  ASSERT_TRUE(index.match(trustee("/named", "u", 1), stored));
  EXPECT_EQ(stored.rights, high);
  std::vector<std::string> left;
  index.forEachUnmatched([&](const Entry &entry) {
    left.push_back(entry.path);
    EXPECT_EQ(entry.rights, high);
  });
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0], "/kept");
}
