// The comparison fed requests read back into their parts (as check's restore run hands them
// over) finds exactly what it finds fed the same requests as bytes.
#include <gtest/gtest.h>

#include <algorithm>

#include "ctl/restore_match.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kFileOpen[] = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr char kVolumeOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";

std::string addTrustee(std::string_view user, std::string_view path, bool ad = false) {
  return std::string(kFileOpen) +
         (ad ? "<trustees><addTrustee type=\"adID\"><userID>" : "<trustees><addTrustee><name>") +
         std::string(user) + (ad ? "</userID>" : "</name>") + "<rights><read/></rights><fileName>" +
         std::string(path) + "</fileName><gemelPath/><symLink/></addTrustee></trustees>" +
         "</fileRequest>";
}

std::string dirQuota(std::string_view path, std::string_view amount) {
  return std::string(kFileOpen) + "<directoryQuota><addQuota><fileName>" + std::string(path) +
         "</fileName><gemelPath/><quotaAmount>" + std::string(amount) +
         "</quotaAmount></addQuota></directoryQuota></fileRequest>";
}

std::string userQuota(std::string_view user, std::string_view amount) {
  return std::string(kVolumeOpen) + "<userSpaceRestrictions><set><volumeName>V</volumeName>" +
         "<userName>" + std::string(user) + "</userName><quota>" + std::string(amount) +
         "</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>";
}

// The findings for `requests`, given as parts (or as bytes), in line order.
Texts match(std::string_view document, const Texts &requests, bool asParts,
            const char *tree = nullptr) {
  BytesFd input(document);
  CheckOptions options;
  options.mountPoint = "/mnt/V";
  if (tree != nullptr) {
    options.tree = tree;
    options.treeGiven = true;
  }
  RestoreSettings settings;
  Texts texts;
  const FindingSink sink = [&texts](Finding finding) {
    texts.push_back(std::to_string(finding.at.line) + " " + finding.code + ": " + finding.message);
  };
  DocumentReader reader(input.fd(), sink);
  RestoreMatch matcher(reader, options, settings, sink, nullptr);
  SentRequest request;
  for (const std::string &bytes : requests) {
    if (asParts && readSentRequest(bytes, request))
      matcher.readRequest(viewOf(request), ~0ULL);
    else
      matcher.request(bytes);
  }
  matcher.finish(0);
  std::stable_sort(texts.begin(), texts.end(), [](const std::string &a, const std::string &b) {
    return std::stoul(a) < std::stoul(b);
  });
  return texts;
}

// The findings, after checking that both ways find the same.
Texts bothWays(std::string_view document, const Texts &requests, const char *tree = nullptr) {
  const Texts parts = match(document, requests, true, tree);
  EXPECT_EQ(parts, match(document, requests, false, tree));
  return parts;
}

constexpr char kTrustees[] =
    "<metadata><trusteeInfo>\n"
    "<file><path>/b</path><trustee><name>u0.OLD.</name><rights><read/></rights></trustee>"
    "<trustee type=\"adID\"><name>Ann</name><id>S-1</id><rights><read/></rights></trustee>"
    "</file>\n"
    "</trusteeInfo></metadata>\n";

TEST(RestoreMatchParts, TrusteesSentAsWritten) {
  EXPECT_TRUE(
      bothWays(kTrustees, {addTrustee("u0.OLD.", "/mnt/V/b"), addTrustee("S-1", "/mnt/V/b", true)})
          .empty());
}

TEST(RestoreMatchParts, TheTreeRuleNamesTheUser) {
  EXPECT_TRUE(bothWays(kTrustees,
                       {addTrustee("u0.NEW.", "/mnt/V/b"), addTrustee("S-1", "/mnt/V/b", true)},
                       "NEW")
                  .empty());
  EXPECT_EQ(bothWays(kTrustees,
                     {addTrustee("u0.OLD.", "/mnt/V/b"), addTrustee("S-1", "/mnt/V/b", true)},
                     "NEW"),
            Texts{"2 sent-for-another-user: trovan restore would send this trustee on /mnt/V/b "
                  "for u0.OLD., not for u0.NEW."});
}

TEST(RestoreMatchParts, AnArborRequestForAnAdTrustee) {
  EXPECT_EQ(bothWays(kTrustees, {addTrustee("u0.OLD.", "/mnt/V/b"), addTrustee("S-1", "/mnt/V/b")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee of S-1 on /mnt/V/b as "
                  "an Arbor user"});
  EXPECT_EQ(bothWays(kTrustees, {addTrustee("u0.OLD.", "/mnt/V/b"), addTrustee("Ann", "/mnt/V/b")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee on /mnt/V/b as the "
                  "Arbor user Ann, not as the AD user S-1"});
}

TEST(RestoreMatchParts, AFileNameThatOnlyStartsAlike) {
  EXPECT_EQ(
      bothWays(kTrustees,
               {addTrustee("u0.OLD.", "/mnt/V/bc"), addTrustee("S-1", "/mnt/V/b", true)}),
      Texts{"2 lands-elsewhere: trovan restore would add this trustee of u0.OLD. to /mnt/V/bc, "
            "not to /mnt/V/b"});
  EXPECT_EQ(
      bothWays(kTrustees, {addTrustee("u0.OLD.", "/mnt/Vb"), addTrustee("S-1", "/mnt/V/b", true)}),
      Texts{"2 lands-elsewhere: trovan restore would add this trustee of u0.OLD. to /mnt/Vb, "
            "not to /mnt/V/b"});
}

constexpr char kQuotas[] =
    "<metadata><userInfo>\n"
    "<user><name>u0.OLD.</name><quotaAmount>5</quotaAmount></user>\n"
    "</userInfo><dirInfo>\n"
    "<directory><path>\\q\\r</path><quotaAmount>7</quotaAmount></directory>\n"
    "</dirInfo></metadata>\n";

TEST(RestoreMatchParts, QuotasByTheirUserAndDirectory) {
  EXPECT_TRUE(bothWays(kQuotas, {userQuota("u0.OLD.", "5"), dirQuota("/mnt/V/q/r", "7")}).empty());
  EXPECT_EQ(bothWays(kQuotas, {userQuota("u0.OLD.", "6"), dirQuota("/mnt/V/q/s", "7")}),
            (Texts{"2 sent-otherwise: trovan restore would send this user quota of u0.OLD. with "
                   "the amount \"6\", not \"5\"",
                   "4 lands-elsewhere: trovan restore would send this directory quota to "
                   "/mnt/V/q/s, not to /mnt/V/q/r"}));
  EXPECT_EQ(bothWays(kQuotas, {userQuota("u0.OLD.", "5"), dirQuota("/mnt/V\\q\\r", "7")}),
            Texts{"4 lands-elsewhere: trovan restore would send this directory quota to "
                  "/mnt/V\\q\\r, not to /mnt/V/q/r"});
}

}  // namespace
