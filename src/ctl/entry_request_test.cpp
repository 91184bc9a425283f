#include "ctl/entry_request.h"

#include <gtest/gtest.h>

#include <string>

#include "channel/admin_channel.h"

namespace {

class EntryRequestTest : public testing::Test {
protected:
  void SetUp() override {
    resetAdminChannel();
    options.volume = "VOL";
    options.mountPoint = "/mnt/VOL";
  }
  void TearDown() override { resetAdminChannel(); }

  // The request's bytes, checking that its length is the buffer's text.
  std::string built(const Entry &entry) {
    EntryRequests requests(options);
    EXPECT_TRUE(requests.build(entry, request));
    EXPECT_EQ(request.length, std::string(requestBuffer).size());
    return std::string(requestBuffer, request.length);
  }

  CheckOptions options;
  EntryRequest request;
};

Entry trustee(bool ad) {
  Entry entry;
  entry.kind = EntryKind::trustee;
  entry.ad = ad;
  entry.rawPath = "/d/a&amp;b";
  entry.rawName = ad ? "ann" : "bob.corp.TREE.";
  entry.rawId = ad ? "S-1-5-21-7" : "";
  entry.rights = 1 | 2 | 32;  // read, write, fileScan
  return entry;
}

Entry quota(EntryKind kind, const char *pathOrName, const char *amount) {
  Entry entry;
  entry.kind = kind;
  (kind == EntryKind::userQuota ? entry.rawName : entry.rawPath) = pathOrName;
  entry.rawAmount = amount;
  return entry;
}

constexpr char kFileOpen[] = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr char kVolumeOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";

TEST_F(EntryRequestTest, ArborTrusteeByNameWithTheRawPathAfterTheMountPoint) {
  EXPECT_EQ(built(trustee(false)),
            std::string(kFileOpen) +
                "<trustees><addTrustee><name>bob.corp.TREE.</name><rights><read/><write/>"
                "<fileScan/></rights><fileName>/mnt/VOL/d/a&amp;b</fileName><gemelPath/>"
                "<symLink/></addTrustee></trustees></fileRequest>");
  EXPECT_EQ(request.replyElement, "<addTrustee>");
  EXPECT_FALSE(request.volumeRequest);
}

TEST_F(EntryRequestTest, AdTrusteeBySid) {
  EXPECT_EQ(built(trustee(true)),
            std::string(kFileOpen) +
                "<trustees><addTrustee type=\"adID\"><userID>S-1-5-21-7</userID><rights><read/>"
                "<write/><fileScan/></rights><fileName>/mnt/VOL/d/a&amp;b</fileName><gemelPath/>"
                "<symLink/></addTrustee></trustees></fileRequest>");
}

TEST_F(EntryRequestTest, TreeNameIsPutIntoAnArborName) {
  options.tree = "OTHER";
  options.treeGiven = true;
  EXPECT_NE(built(trustee(false)).find("<name>bob.corp.OTHER.</name>"), std::string::npos);
}

TEST_F(EntryRequestTest, NameTooLongWithTheTreeNameIsNotSent) {
  options.tree = std::string(100, 'T');
  options.treeGiven = true;
  Entry entry = trustee(false);
  entry.rawName = std::string(1000, 'n') + ".corp.TREE.";
  EntryRequests requests(options);
  EXPECT_FALSE(requests.build(entry, request));
  EXPECT_EQ(requests.why(), "the name does not fit its field with the tree name put in");
}

TEST_F(EntryRequestTest, TreeNamePutInFitsUpToTheLastByteOfTheField) {
  options.tree = "OTHER";
  options.treeGiven = true;
  std::string named;
  // "n...n.corp." then "OTHER." and the terminating NUL: 1024 bytes, the whole field.
  const std::string fits = std::string(1024 - 1 - 6 - 6, 'n') + ".corp.TREE.";
  EXPECT_TRUE(putTreeName(fits, options, named));
  EXPECT_EQ(named.size(), 1023u);
  EXPECT_TRUE(named.ends_with(".corp.OTHER."));
  EXPECT_FALSE(putTreeName("n" + fits, options, named));
  options.treeGiven = false;
  EXPECT_TRUE(putTreeName("n" + fits, options, named));
  EXPECT_EQ(named, "n" + fits);
}

TEST_F(EntryRequestTest, FilterWithoutGemelPath) {
  reflectOnGemel = 0;
  Entry entry = trustee(false);
  entry.kind = EntryKind::filter;
  EXPECT_EQ(built(entry), std::string(kFileOpen) +
                              "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>"
                              "<read/><write/><fileScan/></inheritedRightsFilter><fileName>"
                              "/mnt/VOL/d/a&amp;b</fileName></modifyInheritedRightsFilter>"
                              "</trustees></fileRequest>");
  EXPECT_EQ(request.replyElement, "<modifyInheritedRightsFilter>");
}

TEST_F(EntryRequestTest, UserQuotaGoesToTheVolumeCommandFile) {
  Entry entry = quota(EntryKind::userQuota, "ann", "1024");
  entry.ad = true;
  EXPECT_EQ(built(entry), std::string(kVolumeOpen) +
                              "<userSpaceRestrictions><set type=\"adID\"><volumeName>VOL"
                              "</volumeName><userName>ann</userName><quota>1024</quota>"
                              "<gemelPath/></set></userSpaceRestrictions></quillRequest>");
  EXPECT_EQ(request.replyElement, "<userSpaceRestrictions>");
  EXPECT_TRUE(request.volumeRequest);
}

TEST_F(EntryRequestTest, DirectoryQuotaPathHasForwardSlashes) {
  options.mountPoint = "/mnt/V\\OL";
  EXPECT_EQ(built(quota(EntryKind::dirQuota, "\\d\\e", "2048")),
            std::string(kFileOpen) + "<directoryQuota><addQuota><fileName>/mnt/V/OL/d/e</fileName>"
                                     "<gemelPath/><quotaAmount>2048</quotaAmount></addQuota>"
                                     "</directoryQuota></fileRequest>");
  EXPECT_EQ(request.replyElement, "<addQuota>");
}

TEST_F(EntryRequestTest, RightsGoAsTheDocumentListsThem) {
  Entry entry = trustee(true);
  entry.rights = 0;
  for (const char *right : {"fileScan", "read", "read", "write"})
    entry.rights |= rightBit(right);
  EXPECT_NE(built(entry).find("<rights><fileScan/><read/><read/><write/></rights>"),
            std::string::npos);
  entry.kind = EntryKind::filter;
  EXPECT_NE(built(entry).find(
                "<inheritedRightsFilter><fileScan/><read/><read/><write/></inheritedRightsFilter>"),
            std::string::npos);
}

// 73 <read/> make 511 bytes, which trovan's 512-byte field holds; one more does not fit, and
// trovan sends nothing for the entry.
TEST_F(EntryRequestTest, RightsThatDoNotFitTheirFieldAreNotSent) {
  for (const EntryKind kind : {EntryKind::trustee, EntryKind::filter}) {
    Entry entry = trustee(false);
    entry.kind = kind;
    entry.rights = 0;
    for (int count = 0; count < 73; ++count)
      entry.rights |= rightBit("read");
    std::string reads;
    for (int count = 0; count < 73; ++count)
      reads += "<read/>";
    EXPECT_NE(built(entry).find(reads + "</"), std::string::npos);
    entry.rights |= rightBit("read");
    EntryRequests requests(options);
    EXPECT_FALSE(requests.build(entry, request));
    EXPECT_EQ(requests.why(), "the rights elements do not fit their field");
  }
}

}  // namespace
