#include "model/entry_index.h"

#include <gtest/gtest.h>

#include <vector>

#include "model_support.h"

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

namespace {

Entry adTrustee(const std::string &path, const std::string &sid, const std::string &name) {
  Entry entry = trustee(path, name, 1);
  entry.ad = true;
  entry.id = sid;
  return entry;
}

// A user quota (of the user `who`) or a directory quota (of the path `who`).
Entry quotaOf(EntryKind kind, const std::string &who, const std::string &amount) {
  Entry quota;
  quota.kind = kind;
  (kind == EntryKind::userQuota ? quota.name : quota.path) = who;
  quota.amount = amount;
  return quota;
}

std::uint64_t hashOf(const Entry &entry) {
  std::string key;
  entryKey(entry, key);
  return keyHash(key);
}

}  // namespace

TEST(EntryIndex, TakesTheKeyHashItIsGiven) {
  EntryIndex index;
  const Entry quota = quotaOf(EntryKind::userQuota, "u.T.", "1000");
  ASSERT_TRUE(index.add(quota, hashOf(quota)));
  EXPECT_FALSE(index.add(quota));  // the hash made here is the one given
  StoredValue value;
  Entry other = quota;
  other.amount = "5";
  ASSERT_TRUE(index.match(other, hashOf(other), value));
  EXPECT_EQ(value.amount, "1000");
  Entry stored;
  ASSERT_TRUE(index.match(other, stored));  // still there, matched twice
  EXPECT_EQ(stored.amount, "1000");
  int unmatched = 0;
  index.forEachUnmatched([&unmatched](const Entry &) { ++unmatched; });
  EXPECT_EQ(unmatched, 0);
}

TEST(EntryIndex, MatchByValueGivesTheStoredRights) {
  EntryIndex index;
  const Entry kept = trustee("/a", "u", rightBit("write") | rightBit("secure"));
  ASSERT_TRUE(index.add(kept, hashOf(kept)));
  StoredValue value;
  const Entry asked = trustee("/a", "u", 1);
  ASSERT_TRUE(index.match(asked, hashOf(asked), value));
  EXPECT_EQ(value.rights, rightBit("write") | rightBit("secure"));
  EXPECT_EQ(value.amount, "");
  EXPECT_FALSE(index.match(trustee("/b", "u", 1), hashOf(trustee("/b", "u", 1)), value));
}

// Under one hash (as two keys colliding would be), the stored key itself decides.
TEST(EntryIndex, KeysOfOneHashAreToldApartByTheirTexts) {
  EntryIndex index;
  const std::uint64_t hash = 42;
  ASSERT_TRUE(index.add(trustee("/a", "u", 1), hash));
  ASSERT_TRUE(index.add(trustee("/a", "v", 2), hash));
  ASSERT_TRUE(index.add(trustee("/ab", "u", 3), hash));
  Entry filter = trustee("/a", "", 4);
  filter.kind = EntryKind::filter;
  ASSERT_TRUE(index.add(filter, hash));
  EXPECT_FALSE(index.add(trustee("/a", "v", 5), hash));
  StoredValue value;
  ASSERT_TRUE(index.match(trustee("/ab", "u", 0), hash, value));
  EXPECT_EQ(value.rights, 3);
  filter.name = "a filter has no user";
  ASSERT_TRUE(index.match(filter, hash, value));
  EXPECT_EQ(value.rights, 4);
  EXPECT_FALSE(index.match(trustee("/a", "w", 0), hash, value));
  EXPECT_EQ(index.size(), 4u);
}

TEST(EntryIndex, AdUsersAreTheirSidAndOtherUsersTheirName) {
  EntryIndex index;
  ASSERT_TRUE(index.add(adTrustee("/a", "S-1-5-21-9", "ann")));
  EXPECT_FALSE(index.add(adTrustee("/a", "S-1-5-21-9", "renamed")));
  EXPECT_TRUE(index.add(trustee("/a", "S-1-5-21-9", 1)));  // an Arbor name, not a SID
  EXPECT_TRUE(index.add(trustee("/a", "ann", 1)));
  Entry quota;
  quota.kind = EntryKind::userQuota;
  quota.path = "/paths/do/not/count";
  quota.name = "bob";
  ASSERT_TRUE(index.add(quota));
  Entry adQuota = quota;
  adQuota.ad = true;  // an AD user quota without a SID: known by its name, apart from Arbor's
  ASSERT_TRUE(index.add(adQuota));
  Entry adQuotaWithSid = adQuota;
  adQuotaWithSid.id = "bob";
  ASSERT_TRUE(index.add(adQuotaWithSid));
  Entry elsewhere = quota;
  elsewhere.path = "/another";
  Entry stored;
  ASSERT_TRUE(index.match(elsewhere, stored));
  EXPECT_FALSE(stored.ad);
  EXPECT_EQ(index.size(), 6u);
}

TEST(EntryIndex, DirectoryQuotaPathsOfMixedSeparatorsAreOnePath) {
  EntryIndex index;
  const Entry quota = quotaOf(EntryKind::dirQuota, "\\a/b\\c", "9");
  ASSERT_TRUE(index.add(quota, hashOf(quota)));
  Entry other = quota;
  other.path = "/a\\b/c";
  EXPECT_EQ(hashOf(other), hashOf(quota));
  EXPECT_FALSE(index.add(other, hashOf(other)));
  other.path = "/a/b/c/";
  EXPECT_TRUE(index.add(other, hashOf(quota)));  // the same hash, another path
  EXPECT_TRUE(index.add(trustee("/a\\b", "u", 1)));
  EXPECT_TRUE(index.add(trustee("/a/b", "u", 1)));
}

// The reader makes the key hash of every entry it hands out, for its duplicate check; the index
// takes it as it is.
TEST(EntryIndex, ReaderGivesTheKeyHashOfEachEntryItHandsOut) {
  const std::string document =
      "<metadata>\n<trusteeInfo>\n"
      "<file><path>/d</path>\n"
      "<trustee><name>a.T.</name><rights><read/></rights></trustee>\n"
      "<trustee><name>a.T.</name><rights><write/></rights></trustee>\n"
      "<trustee type=\"adID\"><name>x</name><id>S-1-5-21-1</id><rights/></trustee>\n"
      "<inheritedRightsFilter><supervisor/></inheritedRightsFilter>\n"
      "</file>\n</trusteeInfo>\n"
      "<userInfo><user><name>u.T.</name><quotaAmount>5</quotaAmount></user></userInfo>\n"
      "<dirInfo><directory><path>\\q</path><quotaAmount>7</quotaAmount></directory></dirInfo>\n"
      "</metadata>\n";
  BytesFd input(document);
  int duplicates = 0;
  DocumentReader reader(input.fd(), [&duplicates](Finding finding) {
    duplicates += finding.code == "duplicate-entry" ? 1 : 0;
  });
  EntryIndex index;
  Entry entry;
  int entries = 0;
  while (reader.next(entry)) {
    ++entries;
    EXPECT_EQ(reader.entryHash(), hashOf(entry)) << "entry " << entries;
    index.add(entry, reader.entryHash());
  }
  EXPECT_FALSE(reader.failed());
  EXPECT_EQ(entries, 6);
  EXPECT_EQ(duplicates, 1);
  EXPECT_EQ(index.size(), 5u);
  Entry stored;
  ASSERT_TRUE(index.match(quotaOf(EntryKind::dirQuota, "/q", ""), stored));
  EXPECT_EQ(stored.amount, "7");
}

// Asking for a record ahead is a hint: for a key missing or present, in an empty index or not,
// it changes nothing that a match finds.
TEST(EntryIndex, RecordsAskedForAheadMatchAsBefore) {
  EntryIndex index;
  const Entry kept = trustee("/a", "u", 5);
  index.prefetchRecord(hashOf(kept));
  ASSERT_TRUE(index.add(kept, hashOf(kept)));
  index.prefetchRecord(hashOf(kept));
  index.prefetchRecord(hashOf(trustee("/missing", "u", 1)));
  StoredValue value;
  ASSERT_TRUE(index.match(kept, hashOf(kept), value));
  EXPECT_EQ(value.rights, 5);
  EXPECT_FALSE(
      index.match(trustee("/missing", "u", 1), hashOf(trustee("/missing", "u", 1)), value));
}

// Texts of every length come back whole: lengths are kept in one byte up to 127, more above.
TEST(EntryIndex, TextsOfEveryLengthComeBackWhole) {
  EntryIndex index;
  const std::size_t lengths[] = {0, 1, 127, 128, 16383, 16384, 65536};
  for (const std::size_t length : lengths) {
    const Entry quota =
        quotaOf(EntryKind::dirQuota, "/" + std::string(length, 'p'), std::string(length, '7'));
    ASSERT_TRUE(index.add(quota, hashOf(quota)));
  }
  Entry asked;
  asked.kind = EntryKind::dirQuota;
  asked.path = "/" + std::string(128, 'p');
  StoredValue value;
  ASSERT_TRUE(index.match(asked, hashOf(asked), value));
  EXPECT_EQ(value.amount, std::string(128, '7'));
  std::vector<std::size_t> left;
  index.forEachUnmatched([&left](const Entry &entry) {
    EXPECT_EQ(entry.path.size(), entry.amount.size() + 1);
    EXPECT_EQ(entry.path.find_first_not_of('p', 1), std::string::npos);
    left.push_back(entry.amount.size());
  });
  EXPECT_EQ(left, (std::vector<std::size_t>{0, 1, 127, 16383, 16384, 65536}));
}
