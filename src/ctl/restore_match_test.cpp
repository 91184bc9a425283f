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

// Matches a document against the requests given, as after a restore ending with `status`.
Texts match(std::string_view document, const std::vector<std::string> &requests, int status = 0) {
  BytesFd input(document);
  CheckOptions options;
  options.mountPoint = "/mnt/V";
  RestoreSettings settings;
  Texts texts;
  const FindingSink sink = [&texts](Finding finding) {
    texts.push_back(std::to_string(finding.at.line) + " " + finding.code + ": " + finding.message);
  };
  DocumentReader reader(input.fd(), sink);
  RestoreMatch matcher(reader, options, settings, sink, nullptr);
  for (const std::string &request : requests)
    matcher.request(request);
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

TEST(RestoreMatch, OtherRights) {
  EXPECT_EQ(match(kTwoFiles, {addTrustee("u0", "/b", "<read/><file/><path/>"),
                              addTrustee("u1", "/b/y", "<read/>")}),
            Texts{"2 sent-otherwise: trovan restore would send this trustee of u0 on /mnt/V/b "
                  "with rights [r] and elements that are not rights, not [r]"});
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

}  // namespace
