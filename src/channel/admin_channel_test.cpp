#include "channel/admin_channel.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "admin_channel_calls.h"
#include "file_text.h"
#include "temp_directory.h"

namespace {

using testing_support::TempDir;

class AdminChannel : public testing::Test {
protected:
  void SetUp() override {
    resetAdminChannel();
    freeReplyBuffer();
    ASSERT_TRUE(allocateReplyBuffer());
    ASSERT_FALSE(dir_.path().empty());
  }
  void TearDown() override {
    if (adminFd > 0) close(adminFd);
    resetAdminChannel();
    freeReplyBuffer();
  }
  // Makes a command file holding `reply` the channel's descriptor.
  void useReply(const std::string &reply) {
    dir_.write("files.cmd", reply);
    adminFd = open(dir_.file("files.cmd").c_str(), O_RDWR);
    ASSERT_GT(adminFd, 0);
  }
  // Reads the reply to the request `marker` names into the fixture's result, description and
  // name, at their full sizes.
  int receive(const char *marker = "<addTrustee>") {
    return receiveReply(marker, &result_, sizeof description_, description_, sizeof name_, name_);
  }

  TempDir dir_;
  int result_ = 12345;
  char description_[kDescriptionSize] = "stale";
  char name_[kReplyNameSize] = "stale";
};

std::string reply(const std::string &inside) {
  return "<quillReply><addTrustee>" + inside + "</addTrustee></quillReply>";
}

TEST_F(AdminChannel, ReadsResultDescriptionAndName) {
  useReply(reply("<result value=\"-5\"><description>refused</description><name>bob</name>"
                 "</result>"));
  EXPECT_EQ(receive(), 0);
  EXPECT_EQ(result_, -5);
  EXPECT_STREQ(description_, "refused");
  EXPECT_STREQ(name_, "bob");
}

TEST_F(AdminChannel, ResultStopsAtTheFirstNonDigit) {
  useReply(reply("<result value=\"+17x3\"><description></description></result>"));
  ASSERT_EQ(receiveReply("<addTrustee>", &result_, sizeof description_, description_, 0, nullptr),
            0);
  EXPECT_EQ(result_, 17);
  EXPECT_STREQ(description_, "");
}

TEST_F(AdminChannel, ReplyOfExactlyBufferSizeMinusOneGrowsOnceBeforeTheFinalRead) {
  std::string text = reply("<result value=\"0\"><description>x</description></result>");
  text.append(static_cast<std::size_t>(kReplyBufferStep - 1) - text.size(), ' ');
  ASSERT_EQ(text.size(), static_cast<std::size_t>(kReplyBufferStep - 1));
  useReply(text);
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(replyBufferSize, 2 * kReplyBufferStep);
  EXPECT_EQ(std::strlen(replyBuffer), text.size());
  EXPECT_EQ(result_, 0);
  EXPECT_STREQ(description_, "x");
}

TEST_F(AdminChannel, ReplyOneByteShorterDoesNotGrow) {
  std::string text = reply("<result value=\"0\"></result>");
  text.append(static_cast<std::size_t>(kReplyBufferStep - 2) - text.size(), ' ');
  useReply(text);
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(replyBufferSize, kReplyBufferStep);
}

TEST_F(AdminChannel, ReplyBufferGrowsByOneStep) {
  EXPECT_TRUE(growReplyBuffer());
  EXPECT_EQ(replyBufferSize, 2 * kReplyBufferStep);
  ASSERT_NE(replyBuffer, nullptr);
}

// The size is injected, not allocated: at the last size whose next step would pass the signed
// 32-bit range (2 GiB less 64 KiB) the buffer is not grown but given up, with the allocation
// message, as a reply of 2.2 GB would end.
TEST_F(AdminChannel, ReplyBufferStopsGrowingBeforeTheSigned32BitRange) {
  replyBufferSize = INT_MAX - kReplyBufferStep + 1;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(growReplyBuffer());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error getting big enough buffer for trustees\n");
  EXPECT_EQ(replyBuffer, nullptr);
  // Every later reply fails the same way, without reading.
  useReply(reply("<result value=\"0\"><description>ok</description></result>"));
  testing::internal::CaptureStderr();
  EXPECT_EQ(receive(), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error getting big enough buffer for trustees\n");
}

TEST_F(AdminChannel, LongReplyIsReadWhole) {
  std::string text(3 * kReplyBufferStep, 'z');
  text += reply("<result value=\"4\"><description>late</description></result>");
  useReply(text);
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(result_, 4);
  EXPECT_STREQ(description_, "late");
  EXPECT_EQ(replyBufferSize, 4 * kReplyBufferStep);
}

TEST_F(AdminChannel, ReplyWithoutTheSearchedElementIsUnrecognizedEvenWithAResult) {
  const std::string text =
      "<quillReply><addQuota><result value=\"0\"></result></addQuota></quillReply>";
  useReply(text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(receive(), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Unrecognized response to request.  response=" + text + "\n");
  EXPECT_EQ(result_, 12345);
}

TEST_F(AdminChannel, ReplyWithoutResultIsReported) {
  const std::string text = reply("<description>what</description>");
  useReply(text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(receive(), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Unable to find return value for the request.  response=" + text + "\n");
}

TEST_F(AdminChannel, ResultBeforeTheSearchedElementDoesNotCount) {
  const std::string text = "<result value=\"0\"></result><removeTrustee>";
  useReply(text);
  testing::internal::CaptureStderr();
  EXPECT_EQ(receive("removeTrustee"), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Unable to find return value for the request.  response=" + text + "\n");
}

TEST_F(AdminChannel, DescriptionLongerThan4095CharactersIsCutTo4095) {
  const std::string longText(5000, 'd');
  useReply(reply("<result value=\"3\"><description>" + longText + "</description></result>"));
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(std::string(description_), longText.substr(0, 4095));
}

TEST_F(AdminChannel, NameLongerThan767CharactersIsCutTo767) {
  const std::string longName(800, 'n');
  useReply(reply("<result value=\"3\"><description>d</description><name>" + longName +
                 "</name></result>"));
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(std::string(name_), longName.substr(0, 767));
}

TEST_F(AdminChannel, ReplyWithoutNameYieldsAnEmptyName) {
  useReply(reply("<result value=\"1\"><description>no</description></result>"));
  ASSERT_EQ(receive(), 0);
  EXPECT_STREQ(name_, "");
  EXPECT_STREQ(description_, "no");
}

TEST_F(AdminChannel, ReplyWithoutDescriptionYieldsAnEmptyDescription) {
  useReply(reply("<result value=\"2\"><name>who</name></result>"));
  ASSERT_EQ(receive(), 0);
  EXPECT_EQ(result_, 2);
  EXPECT_STREQ(description_, "");
  EXPECT_STREQ(name_, "who");
}

TEST_F(AdminChannel, NameBeforeTheDescriptionIsNotTaken) {
  useReply(reply("<result value=\"2\"><name>early</name><description>d</description></result>"));
  ASSERT_EQ(receive(), 0);
  EXPECT_STREQ(name_, "");
}

TEST_F(AdminChannel, ReadErrorStopsWithItsMessageAndErrno) {
  adminFd = open(dir_.path().c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_GT(adminFd, 0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(receive(), EISDIR);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error reading the reply from the admin file system.  err=Is a directory\n");
}

TEST_F(AdminChannel, PositioningFailureIsReportedByBothOperations) {
  int pipeFds[2];
  ASSERT_EQ(pipe(pipeFds), 0);
  adminFd = pipeFds[1];
  std::strcpy(requestBuffer, "<x/>");
  testing::internal::CaptureStderr();
  EXPECT_EQ(sendRequest(), ESPIPE);
  EXPECT_EQ(receive("<x>"), ESPIPE);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error setting file position for admin file system operation.  err=Illegal seek\n"
            "Error setting file position for admin file system operation.  err=Illegal seek\n");
  close(pipeFds[0]);
}

TEST_F(AdminChannel, RequestIsWrittenAtOffsetZeroWithoutTerminator) {
  useReply("0123456789ABCDEFGHIJ");
  lseek(adminFd, 7, SEEK_SET);
  std::strcpy(requestBuffer, "<req/>");
  EXPECT_EQ(sendRequest(), 0);
  EXPECT_EQ(testing_support::readFile(dir_.file("files.cmd")), "<req/>6789ABCDEFGHIJ");
}

TEST_F(AdminChannel, FailedRequestWriteIsReported) {
  dir_.write("files.cmd", "");
  adminFd = open(dir_.file("files.cmd").c_str(), O_RDONLY);
  ASSERT_GT(adminFd, 0);
  std::strcpy(requestBuffer, "<req/>");
  testing::internal::CaptureStderr();
  EXPECT_EQ(sendRequest(), EBADF);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error sending the request to the admin file system.  err=Bad file descriptor\n");
}

TEST_F(AdminChannel, EnvelopesAndGemelElement) {
  EXPECT_STREQ(kFileRequestOpen,
               "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>");
  EXPECT_STREQ(kFileRequestClose, "</fileRequest>");
  EXPECT_STREQ(kVolumeRequestOpen,
               "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>");
  EXPECT_STREQ(kVolumeRequestClose, "</quillRequest>");
  EXPECT_STREQ(gemelElement(), "<gemelPath/>");
  reflectOnGemel = 0;
  EXPECT_STREQ(gemelElement(), "");
}

struct Stripped {
  std::string text;
  int length;
};

Stripped strip(const std::string &input) {
  std::string buffer = input + '\0';
  int length = static_cast<int>(input.size());
  stripReplyWrapper(buffer.data(), &length);
  return {buffer.c_str(), length};
}

TEST(StripReplyWrapper, TextWithoutAnyWrapperIsUnchanged) {
  const std::string input = "<trusteeInfo>\n<file></file>\n</trusteeInfo>\n";
  const Stripped out = strip(input);
  EXPECT_EQ(out.text, input);
  EXPECT_EQ(out.length, static_cast<int>(input.size()));
}

TEST(StripReplyWrapper, RemovesWrapperAndResultWithTheCharacterAfterEach) {
  const Stripped out =
      strip("<quillReply>\n<result value=\"0\">\n<description>ok</description></result>\n"
            "<userInfo>\n</userInfo>\n</quillReply>\n");
  EXPECT_EQ(out.text, "<userInfo>\n</userInfo>\n");
  EXPECT_EQ(out.length, 23);
}

TEST(StripReplyWrapper, OnlyTheFirstOccurrencesGo) {
  const Stripped out = strip("<quillReply>X<quillReply>Y</quillReply>Z</quillReply>W");
  EXPECT_EQ(out.text, "<quillReply>Y</quillReply>W");
}

TEST(StripReplyWrapper, ResultWithoutItsEndStays) {
  const Stripped out = strip("<result value=\"0\">abc");
  EXPECT_EQ(out.text, "<result value=\"0\">abc");
}

TEST(StripReplyWrapper, TagAtTheVeryEndGoesWithoutAFollowingCharacter) {
  const Stripped out = strip("abc</quillReply>");
  EXPECT_EQ(out.text, "abc");
  EXPECT_EQ(out.length, 3);
}

TEST(StripReplyWrapper, TextStopsAtTheGivenLength) {
  std::string buffer = "abc<quillReply>\nxyz";
  int length = 3;
  stripReplyWrapper(buffer.data(), &length);
  EXPECT_STREQ(buffer.c_str(), "abc");
  EXPECT_EQ(length, 3);
}

}  // namespace

namespace {

// An exchange over a command file that keeps its reply first: the request is appended to it.
class AdminExchange : public AdminChannel {
protected:
  void useReplyKeptFirst(const std::string &text) {
    dir_.write("files.cmd", text);
    adminFd = open(dir_.file("files.cmd").c_str(), O_RDWR | O_APPEND);
    ASSERT_GT(adminFd, 0);
    std::strcpy(requestBuffer, "<request/>");
  }
};

TEST_F(AdminExchange, AnAcceptedRequestLeavesDescriptionAndNameEmpty) {
  useReplyKeptFirst(reply("<result value=\"0\"><description>success</description>"
                          "<name>bob</name></result>"));
  Reply answer;
  std::strcpy(answer.description, "stale");
  std::strcpy(answer.name, "stale");
  EXPECT_EQ(exchangeRequest("<addTrustee>", answer), 0);
  EXPECT_EQ(answer.result, 0);
  EXPECT_STREQ(answer.description, "");
  EXPECT_STREQ(answer.name, "");
}

TEST_F(AdminExchange, ARefusedRequestGivesItsDescriptionAndName) {
  useReplyKeptFirst(reply("<result value=\"3\"><description>user not found</description>"
                          "<name>bob</name></result>"));
  Reply answer;
  EXPECT_EQ(exchangeRequest("<addTrustee>", answer, std::strlen(requestBuffer)), 0);
  EXPECT_EQ(answer.result, 3);
  EXPECT_STREQ(answer.description, "user not found");
  EXPECT_STREQ(answer.name, "bob");
}

}  // namespace
