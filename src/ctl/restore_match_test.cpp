#include "ctl/restore_match.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "document/completion_codes.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kOpen[] = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";

std::string addTrustee(std::string_view name, std::string_view path, std::string_view rights) {
  return std::string(kOpen) + "<trustees><addTrustee><name>" + std::string(name) +
         "</name><rights>" + std::string(rights) + "</rights><fileName>/mnt/V" + std::string(path) +
         "</fileName><gemelPath/><symLink/></addTrustee></trustees>" + "</fileRequest>";
}

// How the requests reach the comparison: as their bytes, or read back into their parts (as
// check's restore run hands them over).
enum class Feed { bytes, parts };

// Matches a document against the requests given, as after a restore ending with `status` (with
// -t `tree`, when one is given).
// A request with how far trovan's reader had gone when it was sent (all of the document, unless
// told otherwise).
struct PlacedRequest {
  std::string bytes;
  unsigned long long parsed = ~0ULL;
  PlacedRequest(std::string request) : bytes(std::move(request)) {}
  PlacedRequest(std::string request, unsigned long long at)
      : bytes(std::move(request)), parsed(at) {}
};

Texts match(std::string_view document, const std::vector<PlacedRequest> &requests, int status = 0,
            Feed feed = Feed::bytes, const char *tree = nullptr) {
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
  SentRequest parts;
  for (const PlacedRequest &request : requests) {
    const RestorePlace place{request.parsed, ~0ULL};
    if (feed == Feed::parts && readSentRequest(request.bytes, parts))
      matcher.readRequest(viewOf(parts), place);
    else
      matcher.request(request.bytes, place);
  }
  matcher.finish(status);
  // In line order, as check writes them.
  std::stable_sort(texts.begin(), texts.end(), [](const std::string &a, const std::string &b) {
    return std::stoul(a) < std::stoul(b);
  });
  return texts;
}

constexpr char kTwoFiles[] =
    "<metadata><trusteeInfo>\n"
    "<file><path><![CDATA[/b]]></path><trustee><name>u0</name><rights><read/></rights>"
    "</trustee></file>\n"
    "<file><path><![CDATA[/b/y]]></path><trustee><name>u1</name><rights><read/></rights>"
    "</trustee></file>\n"
    "</trusteeInfo></metadata>\n";

TEST(RestoreMatch, EveryEntrySentAsWritten) {
  EXPECT_TRUE(
      match(kTwoFiles, {addTrustee("u0", "/b", "<read/>"), addTrustee("u1", "/b/y", "<read/>")})
          .empty());
}

TEST(RestoreMatch, EntriesNotSent) {
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u1", "/b/y", "<read/>")}),
            Texts{"2 not-sent: trovan restore would send nothing for this trustee of u0 on "
                  "/mnt/V/b"});
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u0", "/b", "<read/>")}),
            Texts{"3 not-sent: trovan restore would send nothing for this trustee of u1 on "
                  "/mnt/V/b/y"});
}

TEST(RestoreMatch, ATrusteeThatLandsOnAnotherPath) {
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u1", "/b", "<read/>")}),
            (Texts{"2 not-sent: trovan restore would send nothing for this trustee of u0 on "
                   "/mnt/V/b",
                   "3 lands-elsewhere: trovan restore would add this trustee of u1 to /mnt/V/b, "
                   "not to /mnt/V/b/y"}));
}

constexpr char kThreeFiles[] =
    "<metadata><trusteeInfo>\n"
    "<file><path><![CDATA[/b]]></path><trustee><name>u0</name><rights><read/></rights>"
    "</trustee></file>\n"
    "<file><path><![CDATA[/b/y]]></path><trustee><name>u1</name><rights><read/></rights>"
    "</trustee></file>\n"
    "<file><path><![CDATA[/c]]></path><trustee><name>u2</name><rights><read/></rights>"
    "</trustee></file>\n"
    "</trusteeInfo></metadata>\n";

// A request is made of what trovan's reader has gone past: an entry further on in the document
// is not what it was for, even when its user is the request's.
TEST(RestoreMatch, ARequestIsNeverTakenForAnEntryTrovanHasNotReached) {
  const std::string request = addTrustee("u2", "/b", "<read/>");
  const unsigned long long firstFileEnd = std::string_view(kThreeFiles).find("</file>") + 7;
  EXPECT_EQ(match(kThreeFiles, {{request, firstFileEnd}}),
            (Texts{"2 sent-for-another-user: trovan restore would send this trustee on /mnt/V/b "
                   "for u2, not for u0",
                   "3 not-sent: trovan restore would send nothing for this trustee of u1 on "
                   "/mnt/V/b/y",
                   "4 not-sent: trovan restore would send nothing for this trustee of u2 on "
                   "/mnt/V/c"}));
  // Sent once trovan had gone past the whole document, it is taken for the trustee of u2.
  EXPECT_EQ(match(kThreeFiles, {request}),
            (Texts{"2 not-sent: trovan restore would send nothing for this trustee of u0 on "
                   "/mnt/V/b",
                   "3 not-sent: trovan restore would send nothing for this trustee of u1 on "
                   "/mnt/V/b/y",
                   "4 lands-elsewhere: trovan restore would add this trustee of u2 to /mnt/V/b, "
                   "not to /mnt/V/c"}));
}

TEST(RestoreMatch, OtherRights) {
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u0", "/b", "<read/><file/><path/>"),
                              addTrustee("u1", "/b/y", "<read/>")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee of u0 on /mnt/V/b "
                  "with rights [r] and elements that are not rights, not [r]"});
}

// A filter sent with its own rights but an element that is no right is still sent otherwise;
// with the same elements it is sent as written.
TEST(RestoreMatch, AFilterSentWithAnElementThatIsNoRight) {
  const auto filter = [](std::string_view rights) {
    return std::string(kOpen) + "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>" +
           std::string(rights) +
           "</inheritedRightsFilter><fileName>/mnt/V/d</fileName><gemelPath/>"
           "</modifyInheritedRightsFilter></trustees></fileRequest>";
  };
  const std::string document = "<metadata><trusteeInfo>\n<file><path>/d</path>"
                               "<inheritedRightsFilter><read/></inheritedRightsFilter></file>\n"
                               "</trusteeInfo></metadata>\n";
  for (const Feed feed : {Feed::bytes, Feed::parts}) {
    EXPECT_TRUE(match(document, {filter("<read/>")}, 0, feed).empty());
    EXPECT_EQ(match(document, {filter("<read/><file/>")}, 0, feed),
              Texts{"2 sent-otherwise: trovan restore would send this inherited rights filter on "
                    "/mnt/V/d with rights [r] and elements that are not rights, not [r]"});
  }
}

TEST(RestoreMatch, ARequestNoEntryAsksFor) {
  EXPECT_EQ(
      match(kTwoFiles, {addTrustee("u0", "/b", "<read/>"), addTrustee("u1", "/b/y", "<read/>"),
                        addTrustee("x", "/c", "<read/>")}),
      Texts{"3 unexpected-request: trovan restore would send this trustee of x on /mnt/V/c "
            "[r], which no entry of the document asks for"});
}

TEST(RestoreMatch, PastTheEndOfTheXml) {
  const std::string cut = "<metadata><trusteeInfo>\n<file><path>/a</path>\n<trustee>\n</file>";
  EXPECT_EQ(match(cut, {addTrustee("u", "/a", "")}, kEndOfInput),
            (Texts{"4 not-well-formed: not well-formed XML: mismatched tag (the open element is "
                   "<trustee> of line 3)",
                   "4 unexpected-request: past the point where the document stops being XML, "
                   "trovan restore would still send this trustee of u on /mnt/V/a []",
                   "4 restore-stops: trovan restore would end with status 157 here: the "
                   "document ends before </metadata>"}));
}

TEST(RestoreMatch, AStopBeforeAnEntry) {
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u0", "/b", "<read/>")}, -1),
            Texts{"3 restore-stops: trovan restore would stop with status 255 before this entry: "
                  "nothing is sent for it"});
  EXPECT_EQ(match(kTwoFiles, {}, -1),
            Texts{"2 restore-stops: trovan restore would stop with status 255 before this entry: "
                  "nothing is sent for it or the entry after it"});
}

// The comparison fed requests read back into their parts finds exactly what it finds fed the
// same requests as bytes.

constexpr char kVolumeOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";

// A trustee request naming `path` as it stands.
std::string trusteeRequest(std::string_view user, std::string_view path, bool ad = false) {
  return std::string(kOpen) +
         (ad ? "<trustees><addTrustee type=\"adID\"><userID>" : "<trustees><addTrustee><name>") +
         std::string(user) + (ad ? "</userID>" : "</name>") + "<rights><read/></rights><fileName>" +
         std::string(path) + "</fileName><gemelPath/><symLink/></addTrustee></trustees>" +
         "</fileRequest>";
}

std::string dirQuota(std::string_view path, std::string_view amount) {
  return std::string(kOpen) + "<directoryQuota><addQuota><fileName>" + std::string(path) +
         "</fileName><gemelPath/><quotaAmount>" + std::string(amount) +
         "</quotaAmount></addQuota></directoryQuota></fileRequest>";
}

std::string userQuota(std::string_view user, std::string_view amount) {
  return std::string(kVolumeOpen) + "<userSpaceRestrictions><set><volumeName>V</volumeName>" +
         "<userName>" + std::string(user) + "</userName><quota>" + std::string(amount) +
         "</quota><gemelPath/></set></userSpaceRestrictions></quillRequest>";
}

// The findings, after checking that both ways find the same.
Texts bothWays(std::string_view document, const Texts &requests, const char *tree = nullptr) {
  const std::vector<PlacedRequest> placed(requests.begin(), requests.end());
  const Texts parts = match(document, placed, 0, Feed::parts, tree);
  EXPECT_EQ(parts, match(document, placed, 0, Feed::bytes, tree));
  return parts;
}

constexpr char kTrustees[] =
    "<metadata><trusteeInfo>\n"
    "<file><path>/b</path><trustee><name>u0.OLD.</name><rights><read/></rights></trustee>"
    "<trustee type=\"adID\"><name>Ann</name><id>S-1</id><rights><read/></rights></trustee>"
    "</file>\n"
    "</trusteeInfo></metadata>\n";

TEST(RestoreMatchParts, TrusteesSentAsWritten) {
  EXPECT_TRUE(bothWays(kTrustees, {trusteeRequest("u0.OLD.", "/mnt/V/b"),
                                   trusteeRequest("S-1", "/mnt/V/b", true)})
                  .empty());
}

TEST(RestoreMatchParts, TheTreeRuleNamesTheUser) {
  EXPECT_TRUE(
      bothWays(kTrustees,
               {trusteeRequest("u0.NEW.", "/mnt/V/b"), trusteeRequest("S-1", "/mnt/V/b", true)},
               "NEW")
          .empty());
  EXPECT_EQ(
      bothWays(kTrustees,
               {trusteeRequest("u0.OLD.", "/mnt/V/b"), trusteeRequest("S-1", "/mnt/V/b", true)},
               "NEW"),
      Texts{"2 sent-for-another-user: trovan restore would send this trustee on /mnt/V/b "
            "for u0.OLD., not for u0.NEW."});
}

TEST(RestoreMatchParts, AnArborRequestForAnAdTrustee) {
  EXPECT_EQ(bothWays(kTrustees,
                     {trusteeRequest("u0.OLD.", "/mnt/V/b"), trusteeRequest("S-1", "/mnt/V/b")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee of S-1 on /mnt/V/b as "
                  "an Arbor user"});
  EXPECT_EQ(bothWays(kTrustees,
                     {trusteeRequest("u0.OLD.", "/mnt/V/b"), trusteeRequest("Ann", "/mnt/V/b")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee on /mnt/V/b as the "
                  "Arbor user Ann, not as the AD user S-1"});
}

TEST(RestoreMatchParts, AFileNameThatOnlyStartsAlike) {
  EXPECT_EQ(
      bothWays(kTrustees,
               {trusteeRequest("u0.OLD.", "/mnt/V/bc"), trusteeRequest("S-1", "/mnt/V/b", true)}),
      Texts{"2 lands-elsewhere: trovan restore would add this trustee of u0.OLD. to /mnt/V/bc, "
            "not to /mnt/V/b"});
  EXPECT_EQ(bothWays(kTrustees, {trusteeRequest("u0.OLD.", "/mnt/Vb"),
                                 trusteeRequest("S-1", "/mnt/V/b", true)}),
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

// A request no entry asks for is reported on the first entry that ends past the place trovan's
// reader had reached, not on the last one it had read ahead.
TEST(RestoreMatch, ARequestNoEntryAsksForIsReportedWhereTrovanWas) {
  const std::string request = dirQuota("/z", "5");
  const unsigned long long firstFileEnd = std::string_view(kThreeFiles).find("</file>") + 7;
  const std::vector<PlacedRequest> early{{request, firstFileEnd}};
  const std::string unexpected = "unexpected-request: trovan restore would send this directory "
                                 "quota on /z 5, which no entry of the document asks for";
  const std::string notSent = " not-sent: trovan restore would send nothing for this trustee of ";
  EXPECT_EQ(match(kThreeFiles, early),
            (Texts{"2" + notSent + "u0 on /mnt/V/b", "3 " + unexpected,
                   "3" + notSent + "u1 on /mnt/V/b/y", "4" + notSent + "u2 on /mnt/V/c"}));
  // Sent once trovan had gone past the whole document: on the last entry.
  EXPECT_EQ(match(kThreeFiles, {request}),
            (Texts{"2" + notSent + "u0 on /mnt/V/b", "3" + notSent + "u1 on /mnt/V/b/y",
                   "4 " + unexpected, "4" + notSent + "u2 on /mnt/V/c"}));
}

}  // namespace
