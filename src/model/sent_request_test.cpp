#include "model/sent_request.h"

#include <gtest/gtest.h>

namespace {

constexpr char kFileOpen[] = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr char kVolumeOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";

TEST(SentRequest, AddTrusteeArborAndAd) {
  SentRequest request;
  ASSERT_TRUE(readSentRequest(std::string(kFileOpen) +
                                  "<trustees><addTrustee><name>ann&amp;co.T.</name><rights><read/>"
                                  "<fileScan/></rights><fileName>/mnt/V/docs/a&b</fileName>"
                                  "<gemelPath/><symLink/></addTrustee></trustees></fileRequest>",
                              request));
  EXPECT_EQ(request.kind, RequestKind::addTrustee);
  EXPECT_FALSE(request.ad);
  EXPECT_EQ(request.user, "ann&co.T.");
  EXPECT_EQ(request.fileName, "/mnt/V/docs/a&b");
  EXPECT_EQ(rightsLetters(request.rights), "rf");
  EXPECT_TRUE(request.gemel);
  ASSERT_TRUE(readSentRequest(std::string(kFileOpen) +
                                  "<trustees><addTrustee type=\"adID\"><userID>S-1-5</userID>"
                                  "<rights></rights><fileName>/mnt/V/l<t</fileName><symLink/>"
                                  "</addTrustee></trustees></fileRequest>",
                              request));
  EXPECT_TRUE(request.ad);
  EXPECT_EQ(request.user, "S-1-5");
  EXPECT_EQ(request.fileName, "/mnt/V/l<t");
  EXPECT_FALSE(request.gemel);
}

TEST(SentRequest, FilterAndQuotas) {
  SentRequest request;
  ASSERT_TRUE(readSentRequest(
      std::string(kFileOpen) +
          "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/>"
          "</inheritedRightsFilter><fileName>/mnt/V/docs</fileName><gemelPath/>"
          "</modifyInheritedRightsFilter></trustees></fileRequest>",
      request));
  EXPECT_EQ(request.kind, RequestKind::modifyInheritedRightsFilter);
  EXPECT_EQ(rightsLetters(request.rights), "s");
  ASSERT_TRUE(readSentRequest(std::string(kVolumeOpen) +
                                  "<userSpaceRestrictions><set type=\"adID\"><volumeName>V"
                                  "</volumeName><userName>ann&amp;co</userName><quota>2000</quota>"
                                  "</set></userSpaceRestrictions></quillRequest>",
                              request));
  EXPECT_EQ(request.kind, RequestKind::userSpaceRestrictions);
  EXPECT_TRUE(request.ad);
  EXPECT_EQ(request.user, "ann&co");
  EXPECT_EQ(request.volume, "V");
  EXPECT_EQ(request.amount, "2000");
  ASSERT_TRUE(readSentRequest(std::string(kFileOpen) +
                                  "<directoryQuota><addQuota><fileName>/mnt/V/q/a&amp;b</fileName>"
                                  "<gemelPath/><quotaAmount>77</quotaAmount></addQuota>"
                                  "</directoryQuota></fileRequest>",
                              request));
  EXPECT_EQ(request.kind, RequestKind::addQuota);
  EXPECT_EQ(request.fileName, "/mnt/V/q/a&b");
  EXPECT_EQ(request.amount, "77");
}

TEST(SentRequest, MarkupMakesAnotherForm) {
  SentRequest request;
  EXPECT_FALSE(readSentRequest(
      std::string(kFileOpen) +
          "<trustees><addTrustee><name>u.T.</name><rights><read/></rights><fileName>/etc"
          "</fileName></addTrustee><addTrustee><name>admin.T.</name><rights><supervisor/>"
          "</rights><fileName>/mnt/V/a</fileName><gemelPath/><symLink/></addTrustee></trustees>"
          "</fileRequest>",
      request));
  EXPECT_FALSE(readSentRequest("<other/>", request));
}

}  // namespace
