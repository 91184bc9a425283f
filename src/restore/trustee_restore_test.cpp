#include "restore/trustee_restore.h"

#include <gtest/gtest.h>
#include <regex.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

const std::string kOpen = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
const std::string kClose = "</fileRequest>";

std::string arborRequest(const std::string &name, const std::string &rights,
                         const std::string &path, bool gemel = true) {
  return kOpen + "<trustees><addTrustee><name>" + name + "</name><rights>" + rights +
         "</rights><fileName>" + path + "</fileName>" + (gemel ? "<gemelPath/>" : "") +
         "<symLink/></addTrustee></trustees>" + kClose;
}

std::string adRequest(const std::string &id, const std::string &rights, const std::string &path) {
  return kOpen + "<trustees><addTrustee type=\"adID\"><userID>" + id + "</userID><rights>" +
         rights + "</rights><fileName>" + path + "</fileName><gemelPath/>" +
         "<symLink/></addTrustee></trustees>" + kClose;
}

std::string irfRequest(const std::string &irf, const std::string &path, bool gemel = true) {
  return kOpen + "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>" + irf +
         "</inheritedRightsFilter><fileName>" + path + "</fileName>" +
         (gemel ? "<gemelPath/>" : "") + "</modifyInheritedRightsFilter></trustees>" + kClose;
}

class TrusteeRestoreTest : public RestoreWalkTest {
protected:
  // Runs the section walker over `section` (the text after <trusteeInfo>) with /srv/vol1 as the
  // mount point and every request answered by `reply`.
  int run(const std::string &section, const std::string &reply = replyWith(0),
          const char *tree = nullptr) {
    const regex_t *used = usedFilter();
    return walkDocument(
        section, [used, tree] { return walkTrusteeSection("/srv/vol1", used, tree, 0); }, reply);
  }
};

TEST_F(TrusteeRestoreTest, ArborTrusteeSendsItsRequestAndConfirmsWithActions) {
  showActions = 1;
  EXPECT_EQ(run("<file><zid></zid><path><![CDATA[/dir/a]]></path>\n"
                "<trustee><name>admin.corp.T.</name><id></id><zid>7</zid>"
                "<rights value=\"RWF\"><read/><write/><fileScan/></rights></trustee>\n"
                "</file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0],
            arborRequest("admin.corp.T.", "<read/><write/><fileScan/>", "/srv/vol1/dir/a"));
  EXPECT_EQ(out, "Trustee admin.corp.T. added to /srv/vol1/dir/a with rights [rwf].\n");
  EXPECT_EQ(err, "");
}

TEST_F(TrusteeRestoreTest, FilterRejectedFileSendsNothingEvenForANamelessTrustee) {
  useFilter("^/srv/vol1/keep");
  showActions = 1;
  EXPECT_EQ(run("<file><path>/other</path><trustee><rights><read/></rights></trustee>"
                "<trustee type=\"adID\"></trustee><inheritedRightsFilter><read/>"
                "</inheritedRightsFilter></file>"
                "<file><path>/keep/x</path><trustee><name>u.T.</name></trustee></file>"
                "</trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1/keep/x"));
  EXPECT_EQ(err, "");
}

TEST_F(TrusteeRestoreTest, TreeOptionReplacesTheTreeInTheRequest) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>admin.corp.OLD.</name></trustee></file>"
                "</trusteeInfo>",
                replyWith(0), "NEW"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("admin.corp.NEW.", "", "/srv/vol1/f"));
}

TEST_F(TrusteeRestoreTest, TreeResultThatNoLongerFitsSkipsTheTrustee) {
  const std::string name = std::string(1000, 'n') + ".OLD.";
  const std::string tree(40, 't');
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>" + name +
                    "</name></trustee>"
                    "<trustee><name>b.OLD.</name></trustee></file></trusteeInfo>",
                replyWith(0), tree.c_str()),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("b." + tree + ".", "", "/srv/vol1/f"));
  EXPECT_EQ(err, "Value too long in element name; entry skipped.\n");
}

TEST_F(TrusteeRestoreTest, WithoutGemelReflectionRequestsCarryNoGemelPath) {
  reflectOnGemel = 0;
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name><rights><read/></rights>"
                "</trustee><inheritedRightsFilter><read/></inheritedRightsFilter></file>"
                "</trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "<read/>", "/srv/vol1/f", false));
  EXPECT_EQ(requests[1], irfRequest("<read/>", "/srv/vol1/f", false));
}

TEST_F(TrusteeRestoreTest, WithGemelReflectionEveryRequestCarriesGemelPath) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name></trustee>"
                "<inheritedRightsFilter><read/></inheritedRightsFilter></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_NE(requests[0].find("</fileName><gemelPath/><symLink/>"), std::string::npos);
  EXPECT_NE(requests[1].find("<gemelPath/></modifyInheritedRightsFilter>"), std::string::npos);
}

TEST_F(TrusteeRestoreTest, AdTrusteeIsPassedOverWithArborUsersOnly) {
  arborUsers = 1;
  adUsers = 0;
  EXPECT_EQ(run("<file><path>/f</path><trustee type=\"adID\"><name>x</name><id>S-1-5-21-1</id>"
                "<rights><read/></rights></trustee></file></trusteeInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
}

TEST_F(TrusteeRestoreTest, AdTrusteeSendsTheAdFormByDefault) {
  showActions = 1;
  EXPECT_EQ(run("<file><path>/f</path><trustee type=\"adID\"><name>x</name><id>S-1-5-21-1</id>"
                "<rights><read/></rights></trustee></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], adRequest("S-1-5-21-1", "<read/>", "/srv/vol1/f"));
  EXPECT_EQ(out, "Trustee x added to /srv/vol1/f with rights [r].\n");
}

TEST_F(TrusteeRestoreTest, ArborTrusteeIsPassedOverWithAdUsersOnly) {
  arborUsers = 0;
  adUsers = 1;
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name></trustee>"
                "<trustee  type=\"adID\"><id>S-1</id></trustee></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], adRequest("S-1", "", "/srv/vol1/f"));
}

TEST_F(TrusteeRestoreTest, EncodedPathIsSentEncodedInNormalMode) {
  EXPECT_EQ(run("<file><path>/a&amp;b</path><trustee><name>u.T.</name></trustee></file>"
                "</trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1/a&amp;b"));
}

TEST_F(TrusteeRestoreTest, FilterSeesTheEncodedPathFromTheMountPoint) {
  useFilter("^/srv/vol1/a&amp;b$");
  EXPECT_EQ(run("<file><path>/a&amp;b</path><trustee><name>u.T.</name></trustee></file>"
                "</trusteeInfo>"),
            0);
  EXPECT_EQ(requests.size(), 1u);
}

TEST_F(TrusteeRestoreTest, FilterWithoutChildrenSendsAnEmptyFilter) {
  showActions = 1;
  EXPECT_EQ(run("<file><path>/f</path><inheritedRightsFilter value=\"\"></inheritedRightsFilter>"
                "</file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], irfRequest("", "/srv/vol1/f"));
  EXPECT_EQ(out, "IRF mask [] added to /srv/vol1/f.\n");
}

TEST_F(TrusteeRestoreTest, RightsValueAttributeGrantsNothing) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name><rights value=\"RW\"></rights>"
                "</trustee></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1/f"));
}

TEST_F(TrusteeRestoreTest, PathAfterTheTrusteesDoesNotApplyToThem) {
  EXPECT_EQ(run("<file><trustee><name>u.T.</name></trustee>"
                "<inheritedRightsFilter><read/></inheritedRightsFilter><path>/late</path>"
                "<trustee><name>v.T.</name></trustee></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("v.T.", "", "/srv/vol1/late"));
  EXPECT_EQ(err, "No path for the entry <trustee>; entry skipped.\n"
                 "No path for the entry <inheritedRightsFilter>; entry skipped.\n");
}

TEST_F(TrusteeRestoreTest, NamelessArborTrusteeEndsTheRestoreSilently) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><rights><read/></rights></trustee>"
                "<trustee><name>later.T.</name></trustee></file></trusteeInfo>"),
            -1);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(err, "");
}

TEST_F(TrusteeRestoreTest, AdTrusteeWithoutIdEndsTheRestore) {
  EXPECT_EQ(run("<file><path>/f</path><trustee type=\"adID\"><name>x</name></trustee></file>"
                "</trusteeInfo>"),
            -1);
  EXPECT_TRUE(requests.empty());
}

TEST_F(TrusteeRestoreTest, NamelessTrusteeWithAdUsersOffStillEndsTheRestore) {
  arborUsers = 1;
  adUsers = 0;
  EXPECT_EQ(run("<file><path>/f</path><trustee><id>S-1</id></trustee></file></trusteeInfo>"), -1);
}

TEST_F(TrusteeRestoreTest, RefusedTrusteeIsReportedAndTheRestoreGoesOn) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name></trustee>"
                "<trustee><name>v.T.</name></trustee></file></trusteeInfo>",
                replyWith(5, "No such user", "u.T.")),
            0);
  EXPECT_EQ(requests.size(), 2u);
  EXPECT_EQ(err, "Error adding trustee u.T. to /srv/vol1/f: No such user(u.T.)\n"
                 "Error adding trustee v.T. to /srv/vol1/f: No such user(u.T.)\n");
}

TEST_F(TrusteeRestoreTest, RefusedFilterIsReported) {
  EXPECT_EQ(run("<file><path>/f</path><inheritedRightsFilter><read/></inheritedRightsFilter>"
                "</file></trusteeInfo>",
                replyWith(-2, "Bad file")),
            0);
  EXPECT_EQ(err, "Error setting IRF on /srv/vol1/f: Bad file()\n");
}

TEST_F(TrusteeRestoreTest, ReplyWithoutTheMarkerIsAnUnrecognizedResponse) {
  const std::string reply = "<other><result value=\"0\"></result></other>";
  EXPECT_EQ(run("<file><path>/f</path><trustee type=\"adID\"><id>S-1</id></trustee></file>"
                "</trusteeInfo>",
                reply),
            0);
  EXPECT_EQ(err.rfind("Unrecognized response to request.  response=" + reply, 0), 0u);
}

TEST_F(TrusteeRestoreTest, UnknownElementsAreReportedAtEveryLevel) {
  EXPECT_EQ(run("<extra/><file><path>/f</path><comment>c</comment>"
                "<trustee type='adID'><name>u.T.</name><email>e</email></trustee>"
                "<trustee\ttype=\"adID\"></trustee></file></trusteeInfo>"),
            0);
  EXPECT_EQ(err, "Unrecognized tag: extra\n"
                 "Unrecognized tag: comment\n"
                 "Unrecognized tag: email\n"
                 "Unrecognized tag: trustee\ttype=\"adID\"\n");
  ASSERT_EQ(requests.size(), 1u);  // single quotes read as a plain trustee
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1/f"));
}

TEST_F(TrusteeRestoreTest, ValuesLongerThanTheirFieldsSkipTheEntry) {
  const std::string longPath = "/" + std::string(4100, 'p');
  EXPECT_EQ(run("<file><path><![CDATA[" + longPath +
                "]]></path><trustee><name>u.T.</name>"
                "</trustee></file>"
                "<file><path>/f</path><trustee><name>u.T.</name><id>" +
                std::string(200, 'i') + "</id></trustee><trustee><name>v.T.</name><rights>" +
                std::string(80, ' ') +
                [] {
                  std::string r;
                  for (int i = 0; i < 80; ++i)
                    r += "<read/>";
                  return r;
                }() +
                "</rights></trustee><trustee><name>w.T.</name></trustee></file>"
                "</trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("w.T.", "", "/srv/vol1/f"));
  EXPECT_EQ(err, "Value too long in element path; entry skipped.\n"
                 "Value too long in element id; entry skipped.\n"
                 "Value too long in element rights; entry skipped.\n");
}

TEST_F(TrusteeRestoreTest, MountPointAndPathTogetherTooLongSkipTheFile) {
  const std::string path = "/" + std::string(4090, 'p');  // fits the field, not with /srv/vol1
  EXPECT_EQ(run("<file><path>" + path +
                "</path><trustee><name>u.T.</name></trustee>"
                "<inheritedRightsFilter/></file></trusteeInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(err, "Value too long in element path; entry skipped.\n");
}

TEST_F(TrusteeRestoreTest, FullPathOf4095BytesIsRestoredAndOf4096IsSkipped) {
  // The mount point /srv/vol1 has 9 bytes.
  const std::string fits = "/" + std::string(4085, 'p');
  const std::string over = "/" + std::string(4086, 'q');
  EXPECT_EQ(run("<file><path>" + fits +
                "</path><trustee><name>u.T.</name></trustee></file>"
                "<file><path>" +
                over +
                "</path><trustee><name>v.T.</name></trustee></file>"
                "</trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1" + fits));
  EXPECT_EQ(err, "Value too long in element path; entry skipped.\n");
}

TEST_F(TrusteeRestoreTest, DocumentCutOffInsideTheSectionGivesMinus99) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name></trustee>"), kEndOfInput);
  EXPECT_EQ(requests.size(), 1u);
}

TEST_F(TrusteeRestoreTest, TrusteeWithoutRightsSendsAnEmptyList) {
  EXPECT_EQ(run("<file><path>/f</path><trustee><name>u.T.</name></trustee></file></trusteeInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], arborRequest("u.T.", "", "/srv/vol1/f"));
}

TEST_F(TrusteeRestoreTest, UnknownRxlVolumeEndsTheSection) {
  // No rxlcon can be run here: the volume check fails.
  char base[kBasePathSize] = "VOL";
  inputFd = openWithContents(dir, "doc.xml", "<file></file></trusteeInfo>");
  resetTagReader();
  const std::string savedPath = getenv("PATH") ? getenv("PATH") : "";
  setenv("PATH", dir.path().c_str(), 1);
  Output output;
  EXPECT_EQ(restoreTrustees(base, nullptr, nullptr, 1), -1);
  output.finish();
  setenv("PATH", savedPath.c_str(), 1);
  EXPECT_EQ(output.err, "RXL volume not found.\n");
  EXPECT_STREQ(base, "VOL");
}

}  // namespace
