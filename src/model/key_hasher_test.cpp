#include "model/key_hasher.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "model/entry.h"
#include "model/hash_slots.h"

namespace {

std::string keyOf(const Entry &entry) {
  std::string key;
  entryKey(entry, key);
  return key;
}

TEST(KeyHasher, PartsGiveTheHashOfTheirJoinedBytes) {
  using namespace std::string_literals;
  const std::string text = "0/data/dept000/project0000/file0000000.txt\0Auser00000.staff.T."s;
  // Every way of cutting the text in three parts, whatever their alignment on words.
  for (std::size_t first = 0; first <= 20; ++first) {
    for (std::size_t second = first; second <= text.size(); second += 3) {
      KeyHasher hasher;
      hasher.add(std::string_view(text).substr(0, first));
      hasher.add(std::string_view(text).substr(first, second - first));
      hasher.add(std::string_view(text).substr(second));
      ASSERT_EQ(hasher.finish(), keyHash(text)) << first << " " << second;
    }
  }
}

TEST(KeyHasher, SingleBytesGiveTheSameAsText) {
  const std::string text = "abcdefghijklmnopq";
  KeyHasher hasher;
  for (const char byte : text)
    hasher.add(byte);
  EXPECT_EQ(hasher.finish(), keyHash(text));
}

TEST(KeyHasher, LengthTellsTrailingZeroBytesApart) {
  EXPECT_NE(keyHash(std::string_view("a", 1)), keyHash(std::string_view("a\0", 2)));
  EXPECT_NE(keyHash(""), keyHash(std::string_view("\0", 1)));
  EXPECT_NE(keyHash(""), 0u);
}

TEST(KeyHasher, SlashedTextHashesAsItsSlashForm) {
  KeyHasher back;
  back.add('3').addSlashed("\\q\\sub\\deeper\\than\\a\\word");
  KeyHasher forward;
  forward.add('3').add("/q/sub/deeper/than/a/word");
  EXPECT_EQ(back.finish(), forward.finish());
}

TEST(KeyHasher, NoTwoOfManyShortKeysShareAHash) {
  std::set<std::uint64_t> hashes;
  for (unsigned at = 0; at < 200000; ++at)
    hashes.insert(keyHash(std::to_string(at)));
  EXPECT_EQ(hashes.size(), 200000u);
}

TEST(EntryKeyHash, IsTheHashOfTheEntryKeyForEveryKind) {
  Entry trustee;
  trustee.path = "/data/dept000/project0000/file0000000.txt";
  trustee.name = "user00000.staff.corp.TREE.";
  Entry ad = trustee;
  ad.ad = true;
  ad.id = "S-1-5-21-1004336348-1177238915-682003330-512";
  Entry adWithoutId = ad;
  adWithoutId.id.clear();
  adWithoutId.kind = EntryKind::userQuota;
  Entry filter = trustee;
  filter.kind = EntryKind::filter;
  Entry user = trustee;
  user.kind = EntryKind::userQuota;
  Entry directory = trustee;
  directory.kind = EntryKind::dirQuota;
  directory.path = "\\data\\dept000\\q";
  Entry empty;
  for (const Entry *entry : {&trustee, &ad, &adWithoutId, &filter, &user, &directory, &empty})
    EXPECT_EQ(entryKeyHash(*entry), keyHash(keyOf(*entry))) << keyOf(*entry);
  Entry forward = directory;
  forward.path = "/data/dept000/q";
  EXPECT_EQ(entryKeyHash(forward), entryKeyHash(directory));
}

}  // namespace
