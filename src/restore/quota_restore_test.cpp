#include <gtest/gtest.h>
#include <regex.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore/dir_quota_restore.h"
#include "restore/user_quota_restore.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

std::string userRequest(const std::string &name, const std::string &quota, bool ad = false,
                        bool gemel = true) {
  return std::string("<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>") +
         "<userSpaceRestrictions>" + (ad ? "<set type=\"adID\">" : "<set>") +
         "<volumeName>VOL1</volumeName><userName>" + name + "</userName><quota>" + quota +
         "</quota>" + (gemel ? "<gemelPath/>" : "") + "</set></userSpaceRestrictions>" +
         "</quillRequest>";
}

std::string dirRequest(const std::string &fileName, const std::string &quota, bool gemel = true) {
  return std::string("<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>") +
         "<directoryQuota><addQuota><fileName>" + fileName + "</fileName>" +
         (gemel ? "<gemelPath/>" : "") + "<quotaAmount>" + quota +
         "</quotaAmount></addQuota></directoryQuota></fileRequest>";
}

class QuotaRestoreTest : public RestoreWalkTest {
protected:
  int users(const std::string &section, const char *tree = nullptr,
            const std::string &reply = replyWith(0)) {
    return walkDocument(
        section, [tree] { return walkUserQuotaSection("VOL1", tree); }, reply);
  }
  int dirs(const std::string &section, const std::string &reply = replyWith(0)) {
    const regex_t *used = usedFilter();
    return walkDocument(
        section, [used] { return walkDirQuotaSection("/srv/vol1", used); }, reply);
  }
};

const std::string kTwoUsers =
    "<user><id></id><spaceUsed>5</spaceUsed><quotaAmount>100</quotaAmount>\n"
    "<name>jdoe.sales.T.</name>\n<idNotFound><time><utc>0</utc><string>Invalid UTC Time</string>"
    "</time><numberOfTimes>0</numberOfTimes></idNotFound></user>\n"
    "<user type=\"adID\"><quotaAmount>200</quotaAmount><name>S-1-5-21-9</name></user>\n"
    "</userInfo>";

TEST_F(QuotaRestoreTest, BothUserKindsAreSentWithoutUserType) {
  showActions = 1;
  EXPECT_EQ(users(kTwoUsers), 0);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[0], userRequest("jdoe.sales.T.", "100"));
  EXPECT_EQ(requests[1], userRequest("S-1-5-21-9", "200", true));
  EXPECT_EQ(out, "User jdoe.sales.T. assigned a quota of 100 on volume VOL1.\n"
                 "User S-1-5-21-9 assigned a quota of 200 on volume VOL1.\n");
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, ArborUserTypeSendsOnlyPlainUsers) {
  adUsers = 0;
  EXPECT_EQ(users(kTwoUsers), 0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], userRequest("jdoe.sales.T.", "100"));
}

TEST_F(QuotaRestoreTest, AdUserTypeSendsOnlyAdUsers) {
  arborUsers = 0;
  EXPECT_EQ(users(kTwoUsers), 0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], userRequest("S-1-5-21-9", "200", true));
}

TEST_F(QuotaRestoreTest, NoQuotaMarkerSendsAndPrintsNothing) {
  showActions = 1;
  EXPECT_EQ(users("<user><quotaAmount>9223372036854775807</quotaAmount><name>a.T.</name></user>"
                  "</userInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(out, "");
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, NearlyTheNoQuotaMarkerIsSentAsAQuota) {
  EXPECT_EQ(users("<user><quotaAmount>09223372036854775807</quotaAmount><name>a.T.</name></user>"
                  "<user><quotaAmount> 9223372036854775807</quotaAmount><name>b.T.</name></user>"
                  "</userInfo>"),
            0);
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[0], userRequest("a.T.", "09223372036854775807"));
  EXPECT_EQ(requests[1], userRequest("b.T.", " 9223372036854775807"));
}

TEST_F(QuotaRestoreTest, WithoutGemelReflectionTheUserRequestHasNoGemelPath) {
  reflectOnGemel = 0;
  EXPECT_EQ(users("<user><quotaAmount>1</quotaAmount><name>a.T.</name></user></userInfo>"), 0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], userRequest("a.T.", "1", false, false));
}

TEST_F(QuotaRestoreTest, TreeOptionRenamesTheUser) {
  EXPECT_EQ(users("<user><quotaAmount>1</quotaAmount><name>jdoe.sales.OLDTREE.</name></user>"
                  "</userInfo>",
                  "NEWTREE"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], userRequest("jdoe.sales.NEWTREE.", "1"));
}

TEST_F(QuotaRestoreTest, IgnoredChildrenNeverReachTheRequest) {
  EXPECT_EQ(users("<user><id>ID-TEXT</id><spaceUsed>USED-TEXT</spaceUsed>"
                  "<quotaAmount>7</quotaAmount><name>a.T.</name><idNotFound><time><utc>UTC</utc>"
                  "<string>STR</string></time><numberOfTimes>N</numberOfTimes></idNotFound></user>"
                  "</userInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], userRequest("a.T.", "7"));
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, UnknownChildOfAUserIsReportedAndTheUserRestored) {
  EXPECT_EQ(users("<user><email>x</email><quotaAmount>7</quotaAmount><name>a.T.</name></user>"
                  "<group/></userInfo>"),
            0);
  EXPECT_EQ(err, "Unrecognized tag: email\nUnrecognized tag: group\n");
  EXPECT_EQ(requests.size(), 1u);
}

TEST_F(QuotaRestoreTest, UserWithoutQuotaOrNameIsSkippedSilently) {
  EXPECT_EQ(users("<user><name>a.T.</name></user><user><quotaAmount>1</quotaAmount></user>"
                  "</userInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, UserValuesTooLongAreSkippedWithAMessage) {
  EXPECT_EQ(users("<user><quotaAmount>" + std::string(64, '1') +
                  "</quotaAmount><name>a.T.</name></user>"
                  "<user><quotaAmount>1</quotaAmount><name>" +
                  std::string(1024, 'n') + "</name></user></userInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(err, "Value too long in element quotaAmount; entry skipped.\n"
                 "Value too long in element name; entry skipped.\n");
}

TEST_F(QuotaRestoreTest, RefusedUserQuotaIsReportedAndTheNextRestored) {
  EXPECT_EQ(users(kTwoUsers, nullptr, replyWith(22, "Invalid user", "jdoe")), 0);
  EXPECT_EQ(requests.size(), 2u);
  EXPECT_EQ(err, "Error adding user quotas for jdoe.sales.T. to VOL1: Invalid user(jdoe)\n"
                 "Error adding user quotas for S-1-5-21-9 to VOL1: Invalid user(jdoe)\n");
}

TEST_F(QuotaRestoreTest, UserSectionCutOffGivesMinus99) {
  EXPECT_EQ(users("<user><quotaAmount>1</quotaAmount>"), kEndOfInput);
  EXPECT_TRUE(requests.empty());
}

TEST_F(QuotaRestoreTest, DirectoryPathGetsTheMountPointAndForwardSlashes) {
  showActions = 1;
  EXPECT_EQ(dirs("<directory><zid>1</zid><path>\\projects\\alpha</path><spaceUsed>3</spaceUsed>"
                 "<quotaAmount>500</quotaAmount></directory></dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/projects/alpha", "500"));
  EXPECT_EQ(out, "Directory quota of 500 added to /srv/vol1/projects/alpha.\n");
}

TEST_F(QuotaRestoreTest, DirectoryFilterSeesTheMountPointAndPassesOthersSilently) {
  useFilter("^/srv/vol1/projects");
  showActions = 1;
  EXPECT_EQ(dirs("<directory><path>\\home\\x</path><quotaAmount>1</quotaAmount></directory>"
                 "<directory><path>\\projects\\y</path><quotaAmount>2</quotaAmount></directory>"
                 "</dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/projects/y", "2"));
  EXPECT_EQ(out, "Directory quota of 2 added to /srv/vol1/projects/y.\n");
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, DirectoryNoQuotaMarkerSendsNothing) {
  EXPECT_EQ(dirs("<directory><path>\\a</path><quotaAmount>9223372036854775807</quotaAmount>"
                 "</directory></dirInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
}

TEST_F(QuotaRestoreTest, WithoutGemelReflectionTheDirectoryRequestHasNoGemelPath) {
  reflectOnGemel = 0;
  EXPECT_EQ(dirs("<directory><path>\\a</path><quotaAmount>1</quotaAmount></directory>"
                 "</dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/a", "1", false));
}

TEST_F(QuotaRestoreTest, DirectoryPathAfterTheQuotaStillCounts) {
  EXPECT_EQ(dirs("<directory><quotaAmount>9</quotaAmount><path>\\late</path></directory>"
                 "</dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/late", "9"));
}

TEST_F(QuotaRestoreTest, SecondDirectoryPathReplacesTheFirst) {
  EXPECT_EQ(dirs("<directory><path>\\one</path><path>\\two</path><quotaAmount>9</quotaAmount>"
                 "<owner/></directory></dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/two", "9"));
  EXPECT_EQ(err, "Unrecognized tag: owner\n");
}

TEST_F(QuotaRestoreTest, DirectoryWithoutPathOrQuotaIsSkippedSilently) {
  EXPECT_EQ(dirs("<directory><path>\\a</path></directory><directory><quotaAmount>1"
                 "</quotaAmount></directory></dirInfo>"),
            0);
  EXPECT_TRUE(requests.empty());
  EXPECT_EQ(err, "");
}

TEST_F(QuotaRestoreTest, RefusedDirectoryQuotaIsReported) {
  EXPECT_EQ(dirs("<directory><path>\\a</path><quotaAmount>1</quotaAmount></directory>"
                 "</dirInfo>",
                 replyWith(2, "Not a directory", "a")),
            0);
  EXPECT_EQ(err, "Error adding directory quota of 1 to /srv/vol1/a: Not a directory(a)\n");
}

TEST_F(QuotaRestoreTest, DirectoryEntitiesPassThroughUnchanged) {
  EXPECT_EQ(dirs("<directory><path>\\a&amp;b c\xc3\xa9</path><quotaAmount>1</quotaAmount>"
                 "</directory></dirInfo>"),
            0);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], dirRequest("/srv/vol1/a&amp;b c\xc3\xa9", "1"));
}

TEST_F(QuotaRestoreTest, DirectoryNameOverItsFieldEndsTheProcess) {
  // Fits the path field, but not together with the mount point.
  const std::string section = "<directory><path>\\" + std::string(4090, 'p') +
                              "</path><quotaAmount>1</quotaAmount></directory></dirInfo>";
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 2);
    dirs(section);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGABRT);
}

TEST_F(QuotaRestoreTest, ToForwardSlashesReplacesEveryBackslash) {
  char text[] = "\\a\\\\b\\";
  toForwardSlashes(text);
  EXPECT_STREQ(text, "/a//b/");
}

}  // namespace
