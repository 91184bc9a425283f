#include "model/entry.h"

#include <gtest/gtest.h>

#include "model/key_set.h"
#include "model/quota_amount.h"

namespace {

std::string keyOf(const Entry &entry) {
  std::string key;
  entryKey(entry, key);
  return key;
}

TEST(EntryKey, DirectoryPathsCompareInTheSlashForm) {
  Entry back;
  back.kind = EntryKind::dirQuota;
  back.path = "\\q\\sub";
  Entry forward = back;
  forward.path = "/q/sub";
  EXPECT_EQ(keyOf(back), keyOf(forward));
}

TEST(EntryKey, UserIdentityAndNothingElse) {
  Entry a;
  a.path = "/a";
  a.name = "u.T.";
  a.rights = 1;
  a.zid = "1";
  Entry b = a;
  b.rights = 3;
  b.zid = "2";
  b.spaceUsed = "9";
  EXPECT_EQ(keyOf(a), keyOf(b));
  b.name = "v.T.";
  EXPECT_NE(keyOf(a), keyOf(b));
  Entry ad = a;
  ad.ad = true;
  ad.id = "S-1";
  Entry adRenamed = ad;
  adRenamed.name = "other";
  EXPECT_EQ(keyOf(ad), keyOf(adRenamed));
  EXPECT_NE(keyOf(ad), keyOf(a));
  Entry filter = a;
  filter.kind = EntryKind::filter;
  EXPECT_NE(keyOf(filter), keyOf(a));
}

TEST(Rights, LettersValueAndElementsInTableOrder) {
  const RightsSet rights = rightBit("fileScan") | rightBit("read") | rightBit("secure");
  EXPECT_EQ(rightsLetters(rights), "rfx");
  EXPECT_EQ(rightsValue(rights), "RFX");
  EXPECT_EQ(rightsElements(rights), "<read/><fileScan/><secure/>");
  EXPECT_EQ(rightBit("READ"), 0);
}

TEST(KeySet, ReportsTheLineOfTheFirstOccurrence) {
  KeySet keys;
  for (unsigned long line = 1; line <= 5000; ++line)
    EXPECT_EQ(keys.insert("key" + std::to_string(line), line), 0u);
  EXPECT_EQ(keys.insert("key17", 9000), 17u);
  EXPECT_EQ(keys.size(), 5000u);
}

TEST(QuotaAmount, DecimalNumbersUpToTheLargest) {
  EXPECT_TRUE(isQuotaAmount("0"));
  EXPECT_TRUE(isQuotaAmount("9223372036854775807"));
  EXPECT_FALSE(isQuotaAmount("9223372036854775808"));
  EXPECT_FALSE(isQuotaAmount("09223372036854775807"));
  EXPECT_FALSE(isQuotaAmount(""));
  EXPECT_FALSE(isQuotaAmount("-1"));
  EXPECT_FALSE(isQuotaAmount(" 1"));
}

}  // namespace
