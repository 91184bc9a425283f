#include "save/info_wrapper.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "channel/admin_channel.h"

namespace {

// The wrapper cut the way replies are cut, moving the rest of the text down at every cut.
std::string reference(const std::string &input) {
  std::string buffer = input + '\0';
  int length = static_cast<int>(input.size());
  stripReplyWrapper(buffer.data(), &length);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

std::string stripped(const std::string &input) {
  std::string buffer = input + '\0';
  int length = static_cast<int>(input.size());
  const char *start = stripInfoWrapper(buffer.data(), &length);
  EXPECT_EQ(start[length], '\0');
  return std::string(start, static_cast<std::size_t>(length));
}

TEST(StripInfoWrapper, StoredReplyLosesItsWrapper) {
  const std::string input =
      "<quillReply>\n<result value=\"0\"><description>success</description></result>\n"
      "<trusteeInfo>\n<file></file>\n</trusteeInfo>\n</quillReply>\n";
  EXPECT_EQ(stripped(input), "<trusteeInfo>\n<file></file>\n</trusteeInfo>\n");
}

TEST(StripInfoWrapper, TextWithoutAnyWrapperIsUnchanged) {
  const std::string input = "<trusteeInfo>\n</trusteeInfo>\n";
  EXPECT_EQ(stripped(input), input);
  EXPECT_EQ(stripped(""), "");
}

TEST(StripInfoWrapper, ClosingTagMadeByTheFirstCutIsCutToo) {
  // "</quill" + "Reply>" meet once "<quillReply>\n" is gone; the text as read holds no
  // "</quillReply>" at all.
  const std::string input = "a</quill<quillReply>\nReply>\nb";
  EXPECT_EQ(input.find("</quillReply>"), std::string::npos);
  EXPECT_EQ(stripped(input), "ab");
  EXPECT_EQ(reference(input), "ab");
}

TEST(StripInfoWrapper, ResultTagMadeByTwoCutsIsCutWithItsEnd) {
  const std::string input = "<res<quillReply>\nult va</quillReply>\nlue=\"0\">x</result>\nbody";
  EXPECT_EQ(stripped(input), "body");
  EXPECT_EQ(reference(input), "body");
}

TEST(StripInfoWrapper, ResultEndIsSearchedFromTheResultTagOnly) {
  const std::string input = "</result>\n<result value=\"1\">no end";
  EXPECT_EQ(stripped(input), reference(input));
  EXPECT_EQ(stripped(input), input);
}

TEST(StripInfoWrapper, CutsThatRunPastTheEndStopThere) {
  for (const std::string input : {"x<quillReply>", "x</quillReply>", "<result value=</result>"}) {
    EXPECT_EQ(stripped(input), reference(input)) << input;
  }
  EXPECT_EQ(stripped("x<quillReply>"), "x");
}

TEST(StripInfoWrapper, RandomTextsGiveTheSameBytesAsTheReplyCut) {
  std::mt19937 random(2024);
  const char *const pieces[] = {"<quillReply>",
                                "</quillReply>",
                                "<result value=",
                                "</result>",
                                "<quill",
                                "Reply>",
                                "</quill",
                                "<res",
                                "ult value=",
                                "</res",
                                "ult>",
                                "\n",
                                "x",
                                "<",
                                "/",
                                "\"0\">",
                                "body"};
  for (int round = 0; round < 20000; ++round) {
    std::string input;
    const int count = static_cast<int>(random() % 14);
    for (int i = 0; i < count; ++i)
      input += pieces[random() % std::size(pieces)];
    ASSERT_EQ(stripped(input), reference(input)) << input;
  }
}

}  // namespace
