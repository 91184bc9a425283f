#include "model/sent_request.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr char kFileOpen[] = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr char kVolumeOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";

// `body` as a file request, the form trovan sends.
std::string fileRequest(const std::string &body) { return kFileOpen + body + "</fileRequest>"; }

std::string volumeRequest(const std::string &body) {
  return kVolumeOpen + body + "</quillRequest>";
}

TEST(SentRequest, AddTrusteeArborAndAd) {
  SentRequest request;
  ASSERT_TRUE(
      readSentRequest(fileRequest("<trustees><addTrustee><name>ann&amp;co.T.</name><rights><read/>"
                                  "<fileScan/></rights><fileName>/mnt/V/docs/a&b</fileName>"
                                  "<gemelPath/><symLink/></addTrustee></trustees>"),
                      request));
  EXPECT_EQ(request.kind, RequestKind::addTrustee);
  EXPECT_FALSE(request.ad);
  EXPECT_EQ(request.user, "ann&co.T.");
  EXPECT_EQ(request.fileName, "/mnt/V/docs/a&b");
  EXPECT_EQ(rightsLetters(request.rights), "rf");
  EXPECT_TRUE(request.gemel);
  ASSERT_TRUE(
      readSentRequest(fileRequest("<trustees><addTrustee type=\"adID\"><userID>S-1-5</userID>"
                                  "<rights></rights><fileName>/mnt/V/l<t</fileName><symLink/>"
                                  "</addTrustee></trustees>"),
                      request));
  EXPECT_TRUE(request.ad);
  EXPECT_EQ(request.user, "S-1-5");
  EXPECT_EQ(request.fileName, "/mnt/V/l<t");
  EXPECT_FALSE(request.gemel);
}

TEST(SentRequest, FilterAndQuotas) {
  SentRequest request;
  ASSERT_TRUE(readSentRequest(
      fileRequest("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><supervisor/>"
                  "</inheritedRightsFilter><fileName>/mnt/V/docs</fileName><gemelPath/>"
                  "</modifyInheritedRightsFilter></trustees>"),
      request));
  EXPECT_EQ(request.kind, RequestKind::modifyInheritedRightsFilter);
  EXPECT_EQ(rightsLetters(request.rights), "s");
  ASSERT_TRUE(readSentRequest(
      volumeRequest("<userSpaceRestrictions><set type=\"adID\"><volumeName>V"
                    "</volumeName><userName>ann&amp;co</userName><quota>2000</quota>"
                    "</set></userSpaceRestrictions>"),
      request));
  EXPECT_EQ(request.kind, RequestKind::userSpaceRestrictions);
  EXPECT_TRUE(request.ad);
  EXPECT_EQ(request.user, "ann&co");
  EXPECT_EQ(request.volume, "V");
  EXPECT_EQ(request.amount, "2000");
  ASSERT_TRUE(
      readSentRequest(fileRequest("<directoryQuota><addQuota><fileName>/mnt/V/q/a&amp;b</fileName>"
                                  "<gemelPath/><quotaAmount>77</quotaAmount></addQuota>"
                                  "</directoryQuota>"),
                      request));
  EXPECT_EQ(request.kind, RequestKind::addQuota);
  EXPECT_EQ(request.fileName, "/mnt/V/q/a&b");
  EXPECT_EQ(request.amount, "77");
}

TEST(SentRequest, MarkupMakesAnotherForm) {
  SentRequest request;
  EXPECT_FALSE(readSentRequest(
      fileRequest(
          "<trustees><addTrustee><name>u.T.</name><rights><read/></rights><fileName>/etc"
          "</fileName></addTrustee><addTrustee><name>admin.T.</name><rights><supervisor/>"
          "</rights><fileName>/mnt/V/a</fileName><gemelPath/><symLink/></addTrustee></trustees>"),
      request));
  EXPECT_FALSE(readSentRequest("<other/>", request));
}

}  // namespace
