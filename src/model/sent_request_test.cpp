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

TEST(SentRequest, AViewKeepsPlainTextsInTheRequestAndDecodedOnesAside) {
  const std::string bytes =
      fileRequest("<trustees><addTrustee><name>ann&amp;co.T.</name><rights><read/><x/></rights>"
                  "<fileName>/mnt/V/docs</fileName><symLink/></addTrustee></trustees>");
  SentRequestView view;
  SentRequest decoded;
  ASSERT_TRUE(readSentRequest(bytes, view, decoded));
  EXPECT_EQ(view.user, "ann&co.T.");
  EXPECT_EQ(view.user.data(), decoded.user.data());
  EXPECT_EQ(view.fileName, "/mnt/V/docs");
  EXPECT_EQ(view.fileName.data(), decoded.fileName.data());  // decoded: the request has an '&'
  EXPECT_EQ(rightsLetters(view.rights), "r");
  EXPECT_TRUE(view.unknownRight);
  const std::string plain = volumeRequest("<userSpaceRestrictions><set><volumeName>V</volumeName>"
                                          "<userName>u.T.</userName><quota>9</quota><gemelPath/>"
                                          "</set></userSpaceRestrictions>");
  ASSERT_TRUE(readSentRequest(plain, view, decoded));
  EXPECT_EQ(view.kind, RequestKind::userSpaceRestrictions);
  EXPECT_FALSE(view.ad);
  EXPECT_TRUE(view.gemel);
  EXPECT_FALSE(view.unknownRight);
  EXPECT_EQ(view.user, "u.T.");
  EXPECT_GE(view.user.data(), plain.data());
  EXPECT_LT(view.user.data(), plain.data() + plain.size());
  EXPECT_EQ(view.volume, "V");
  EXPECT_EQ(view.amount, "9");
  EXPECT_TRUE(view.fileName.empty());
}

TEST(SentRequest, RightsEndAtTheirFirstEmptyElementClose) {
  SentRequest request;
  // A '/' that closes no element is part of the name: the name is "a/b", no right.
  ASSERT_TRUE(readSentRequest(
      fileRequest("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><a/b/><read/>"
                  "</inheritedRightsFilter><fileName>/mnt/V/d</fileName>"
                  "</modifyInheritedRightsFilter></trustees>"),
      request));
  EXPECT_EQ(rightsLetters(request.rights), "r");
  EXPECT_TRUE(request.unknownRight);
  EXPECT_FALSE(request.gemel);
  // An element left open is not a run of empty elements.
  EXPECT_FALSE(readSentRequest(
      fileRequest("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter><read/><write"
                  "</inheritedRightsFilter><fileName>/mnt/V/d</fileName>"
                  "</modifyInheritedRightsFilter></trustees>"),
      request));
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
