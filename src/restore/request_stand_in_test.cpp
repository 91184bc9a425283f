// The request stand-in: the restore walkers run with no file system, and what they hand the
// stand-in is exactly what the command files get.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "admin_file_redirect.h"
#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "restore/restore_driver.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

// Every section and request kind, and a tag that is reported.
const std::string kDocument =
    "<metadata>\n<trusteeInfo>\n"
    "<file><path>/dir/a</path><trustee><name>admin.corp.T.</name>"
    "<rights><read/><write/></rights></trustee>"
    "<trustee type=\"adID\"><id>S-1-5-21-7</id><name>bob</name><rights><read/></rights>"
    "</trustee><inheritedRightsFilter><read/><fileScan/></inheritedRightsFilter></file>\n"
    "</trusteeInfo>\n<userInfo>\n"
    "<user><quotaAmount>100</quotaAmount><name>jdoe.sales.T.</name></user>\n"
    "<user type=\"adID\"><quotaAmount>200</quotaAmount><name>S-1-5-21-9</name></user>\n"
    "</userInfo>\n<dirInfo>\n"
    "<directory><path>\\a\\b</path><quotaAmount>300</quotaAmount></directory>\n"
    "</dirInfo>\n<stray/></metadata>\n";

// What a stand-in saw, and the reply it gives each request.
struct Capture {
  std::vector<std::string> requests;
  std::string reply;
  int error = 0;
};

int capture(const char *request, std::size_t length, void *context) {
  Capture &seen = *static_cast<Capture *>(context);
  seen.requests.emplace_back(request, length);
  const std::size_t count =
      std::min(seen.reply.size(), static_cast<std::size_t>(replyBufferSize) - 1);
  std::memcpy(replyBuffer, seen.reply.data(), count);
  replyBuffer[count] = '\0';
  return seen.error;
}

class RequestStandInTest : public testing::Test {
protected:
  void SetUp() override {
    resetProcessState();
    showActions = 1;
  }
  void TearDown() override {
    redirectFilesCommandFile(nullptr);
    redirectManageCommandFile(nullptr);
    if (inputFd > 0) close(inputFd);
    inputFd = 0;
    resetAdminChannel();
    freeReplyBuffer();
  }
  // Restores kDocument to VOL1 on /srv/vol1, through the command files (both redirected to one
  // file, so that the requests keep their order) or through the stand-in.
  int run(const std::string &reply, Capture *standIn) {
    inputFd = openWithContents(dir, "doc.xml", kDocument);
    resetTagReader();
    FakeAdminFile admin(dir, reply);
    if (standIn != nullptr) {
      standIn->reply = reply;
      setRequestStandIn(capture, standIn);
    } else {
      redirectFilesCommandFile(dir.file("files.cmd").c_str());
      redirectManageCommandFile(dir.file("files.cmd").c_str());
    }
    Output output;
    const int result = restoreDocument("VOL1", "/srv/vol1", nullptr, "", nullptr, 0);
    output.finish();
    close(inputFd);
    inputFd = 0;
    out = output.out;
    err = output.err;
    requests = standIn != nullptr ? standIn->requests : admin.requests();
    return result;
  }
  // The same run both ways: the same result, output and requests.
  void expectSameBothWays(const std::string &reply) {
    const int fileResult = run(reply, nullptr);
    const std::string fileOut = out, fileErr = err;
    const std::vector<std::string> fileRequests = requests;
    redirectFilesCommandFile(nullptr);
    redirectManageCommandFile(nullptr);
    Capture seen;
    EXPECT_EQ(run(reply, &seen), fileResult);
    EXPECT_EQ(out, fileOut);
    EXPECT_EQ(err, fileErr);
    EXPECT_EQ(requests, fileRequests);
  }

  TempDir dir;
  std::string out, err;
  std::vector<std::string> requests;
};

TEST_F(RequestStandInTest, CapturedRunSendsExactlyTheCommandFilesRequests) {
  expectSameBothWays(replyWith(0));
  ASSERT_EQ(requests.size(), 6u);  // two trustees, a filter, two users, a directory
  EXPECT_NE(requests[3].find("<volumeName>VOL1</volumeName><userName>jdoe.sales.T.</userName>"),
            std::string::npos);
  EXPECT_NE(requests[5].find("<fileName>/srv/vol1/a/b</fileName>"), std::string::npos);
  EXPECT_EQ(err, "Unrecognized tag: stray\n");
  EXPECT_NE(out.find("Restoring directory quotas - completed\n"), std::string::npos);
}

TEST_F(RequestStandInTest, RefusedRequestsReportAsFromTheCommandFiles) {
  expectSameBothWays(replyWith(5, "no such user", "S-1"));
  ASSERT_EQ(requests.size(), 6u);
  EXPECT_NE(err.find("Error adding trustee admin.corp.T. to /srv/vol1/dir/a: no such user(S-1)\n"),
            std::string::npos);
}

TEST_F(RequestStandInTest, StandInReplyIsJudgedByTheUsualReplyReading) {
  Capture seen;
  EXPECT_EQ(run("<quillReply>nothing</quillReply>", &seen), 0);
  std::string expected;
  for (int i = 0; i < 6; ++i)
    expected += "Unrecognized response to request.  response=<quillReply>nothing</quillReply>\n";
  EXPECT_EQ(err, expected + "Unrecognized tag: stray\n");
}

TEST_F(RequestStandInTest, StandInOpensNoCommandFile) {
  // Neither command file can be opened, and the run does not need them.
  Capture seen;
  EXPECT_EQ(run(replyWith(0), &seen), 0);
  EXPECT_EQ(seen.requests.size(), 6u);
  EXPECT_EQ(adminFd, 0);
}

TEST_F(RequestStandInTest, StandInErrorIsASendFailure) {
  Capture seen;
  seen.error = EIO;
  EXPECT_EQ(run(replyWith(0), &seen), 0);  // a failed request does not stop the restore
  EXPECT_EQ(seen.requests.size(), 6u);
  const std::string message =
      "Error sending the request to the admin file system.  err=" + std::string(strerror(EIO));
  EXPECT_NE(err.find(message + "\n"), std::string::npos);
}

TEST_F(RequestStandInTest, ClearedStandInGoesBackToTheCommandFiles) {
  Capture seen;
  setRequestStandIn(capture, &seen);
  setRequestStandIn(nullptr, &seen);
  EXPECT_FALSE(requestStandInSet());
  inputFd = openWithContents(dir, "doc.xml", kDocument);
  Output output;
  const int result = restoreDocument("VOL1", "/srv/vol1", nullptr, "", nullptr, 0);
  output.finish();
  EXPECT_EQ(result, ENOENT);  // files.cmd cannot be opened in the tests unless redirected
  EXPECT_TRUE(seen.requests.empty());
}

}  // namespace
