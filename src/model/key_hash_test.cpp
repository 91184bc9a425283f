#include "model/key_hash.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "model/entry.h"
#include "model/hash_slots.h"
#include "model_support.h"

namespace {

TEST(KeyHash, OneByteChangedAnywhereChangesTheHash) {
  // Every length up to a few steps, every byte's place: the tail's overlapping words too.
  for (std::size_t size = 1; size <= 70; ++size) {
    const std::string text(size, 'a');
    std::set<std::uint64_t> hashes{keyHash(text)};
    for (std::size_t at = 0; at < size; ++at) {
      std::string changed = text;
      changed[at] = 'b';
      hashes.insert(keyHash(changed));
    }
    EXPECT_EQ(hashes.size(), size + 1) << size;
  }
}

TEST(KeyHash, LengthTellsTrailingZeroBytesApart) {
  std::set<std::uint64_t> hashes;
  for (std::size_t size = 0; size <= 40; ++size)
    hashes.insert(keyHash(std::string(size, '\0')));
  EXPECT_EQ(hashes.size(), 41u);
  EXPECT_NE(keyHash(""), 0u);
}

TEST(KeyHash, NoTwoOfManyShortKeysShareAHash) {
  std::set<std::uint64_t> hashes;
  for (unsigned at = 0; at < 200000; ++at)
    hashes.insert(keyHash(std::to_string(at)));
  EXPECT_EQ(hashes.size(), 200000u);
}

Entry trusteeEntry() {
  Entry trustee;
  trustee.path = "/data/dept000/project0000/file0000000.txt";
  trustee.name = "user00000.staff.corp.TREE.";
  return trustee;
}

TEST(EntryKeyHash, IsTheHashOfTheEntryKeyForEveryKind) {
  Entry trustee = trusteeEntry();
  Entry ad = trustee;
  ad.ad = true;
  ad.id = "S-1-5-21-1004336348-1177238915-682003330-512";
  Entry adQuotaWithoutId = ad;
  adQuotaWithoutId.id.clear();
  adQuotaWithoutId.kind = EntryKind::userQuota;
  Entry filter = trustee;
  filter.kind = EntryKind::filter;
  Entry user = trustee;
  user.kind = EntryKind::userQuota;
  Entry directory = trustee;
  directory.kind = EntryKind::dirQuota;
  directory.path = "\\data\\dept000\\q";
  Entry empty;
  for (const Entry *entry : {&trustee, &ad, &adQuotaWithoutId, &filter, &user, &directory, &empty})
    EXPECT_EQ(entryKeyHash(*entry), keyHash(keyOf(*entry))) << keyOf(*entry);
}

TEST(EntryKeyHash, KeysLongerThanTheStackBufferHashAlike) {
  Entry trustee = trusteeEntry();
  trustee.path = "/" + std::string(4000, 'p');
  EXPECT_EQ(entryKeyHash(trustee), keyHash(keyOf(trustee)));
  Entry directory = trustee;
  directory.kind = EntryKind::dirQuota;
  directory.path = std::string(3000, '\\');
  Entry forward = directory;
  forward.path = std::string(3000, '/');
  EXPECT_EQ(entryKeyHash(directory), entryKeyHash(forward));
}

}  // namespace
