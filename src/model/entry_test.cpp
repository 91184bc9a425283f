#include "model/entry.h"

#include <gtest/gtest.h>

#include "model/key_set.h"
#include "model/quota_amount.h"
#include "model_support.h"

namespace {

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

namespace {

std::string elementsOf(const RightsList &rights) {
  std::string out;
  writtenElements(rights, out);
  return out;
}

RightsList listed(std::initializer_list<const char *> names) {
  RightsList rights;
  for (const char *name : names)
    rights |= rightBit(name);
  return rights;
}

TEST(RightsList, InTableOrderKeepsNoOrderOfItsOwn) {
  const RightsList rights = listed({"read", "fileScan", "secure"});
  EXPECT_TRUE(rights.written().empty());
  EXPECT_EQ(elementsOf(rights), "<read/><fileScan/><secure/>");
}

TEST(RightsList, OutOfOrderAndRepeatedRightsAreKeptAsWritten) {
  const RightsList rights = listed({"fileScan", "read", "read", "write"});
  EXPECT_EQ(rights.set(), rightBit("read") | rightBit("write") | rightBit("fileScan"));
  EXPECT_EQ(elementsOf(rights), "<fileScan/><read/><read/><write/>");
  EXPECT_EQ(rights, listed({"read", "write", "fileScan"}));  // compared as a set
}

TEST(RightsList, ASetAssignedIsInTableOrder) {
  RightsList rights = listed({"write", "read"});
  rights = static_cast<RightsSet>(rightBit("write") | rightBit("read"));
  EXPECT_EQ(elementsOf(rights), "<read/><write/>");
}

TEST(RightsList, WrittenOrderIsBounded) {
  RightsList rights;
  for (std::size_t count = 0; count < 10 * RightsList::kWrittenLimit; ++count)
    rights |= rightBit("read");
  EXPECT_EQ(rights.written().size(), RightsList::kWrittenLimit);
  RightsList back;
  back.setWritten(rights.set(), std::string(rights.written()) + "\x0a\x7f");
  EXPECT_EQ(back.written(), rights.written());
}

TEST(RightsList, TheStrictReaderKeepsTheDocumentsOrder) {
  const ReadResult result = readDocument(
      "<metadata><trusteeInfo><file><path>/a</path><trustee><name>u.T.</name><id></id>"
      "<rights><write/><read></read><read /></rights></trustee>"
      "<inheritedRightsFilter><fileScan/><read/></inheritedRightsFilter></file></trusteeInfo>"
      "</metadata>");
  EXPECT_TRUE(result.findings.empty());
  ASSERT_EQ(result.entries.size(), 2u);
  EXPECT_EQ(elementsOf(result.entries[0].rights), "<write/><read/><read/>");
  EXPECT_EQ(elementsOf(result.entries[1].rights), "<fileScan/><read/>");
}

}  // namespace
