#include "save/info_wrapper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "channel/admin_channel.h"
#include "save/tag_search.h"

namespace {

constexpr std::size_t kNotFound = WrapperTags::kNotFound;

// Where the wrapper's tags first occur, found the plain way.
WrapperTags plainTags(const std::string &text) {
  auto first = [&](const char *tag) {
    const std::size_t at = text.find(tag);
    return at == std::string::npos ? kNotFound : at;
  };
  return {first("<quillReply>"), first("</quillReply>"), first("<result value=")};
}

// The wrapper cut the way replies are cut, moving the rest of the text down at every cut.
std::string reference(const std::string &input) {
  std::string buffer = input + '\0';
  int length = static_cast<int>(input.size());
  stripReplyWrapper(buffer.data(), &length);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

std::string stripped(const std::string &input, const WrapperTags &first) {
  std::string buffer = input + '\0';
  int length = static_cast<int>(input.size());
  const char *start = stripInfoWrapper(buffer.data(), &length, first);
  EXPECT_EQ(start[length], '\0');
  return std::string(start, static_cast<std::size_t>(length));
}

// Feeds the text to a finder in pieces cut at the given places; returns what it found and the
// NUL it reported (kNotFound when none).
std::pair<WrapperTags, std::size_t> findInPieces(const std::string &text,
                                                 const std::vector<std::size_t> &cuts) {
  WrapperTagFinder finder;
  std::size_t previous = 0;
  std::size_t nul = kNotFound;
  for (std::size_t cut : cuts) {
    if (cut <= previous || cut > text.size()) continue;
    nul = finder.scan(text.data(), previous, cut);
    previous = cut;
    if (nul != kNotFound) break;
  }
  if (nul == kNotFound && previous < text.size())
    nul = finder.scan(text.data(), previous, text.size());
  return {finder.found(nul != kNotFound ? nul : text.size()), nul};
}

TEST(StripInfoWrapper, StoredReplyLosesItsWrapper) {
  const std::string input =
      "<quillReply>\n<result value=\"0\"><description>success</description></result>\n"
      "<trusteeInfo>\n<file></file>\n</trusteeInfo>\n</quillReply>\n";
  EXPECT_EQ(stripped(input, plainTags(input)), "<trusteeInfo>\n<file></file>\n</trusteeInfo>\n");
}

TEST(StripInfoWrapper, TextWithoutAnyWrapperIsUnchanged) {
  const std::string input = "<trusteeInfo>\n</trusteeInfo>\n";
  EXPECT_EQ(stripped(input, plainTags(input)), input);
  EXPECT_EQ(stripped("", plainTags("")), "");
}

TEST(StripInfoWrapper, ClosingTagMadeByTheFirstCutIsCutToo) {
  // "</quill" + "Reply>" meet once "<quillReply>\n" is gone; the text as read holds no
  // "</quillReply>" at all.
  const std::string input = "a</quill<quillReply>\nReply>\nb";
  EXPECT_EQ(plainTags(input).close, kNotFound);
  EXPECT_EQ(stripped(input, plainTags(input)), "ab");
  EXPECT_EQ(reference(input), "ab");
}

TEST(StripInfoWrapper, ResultTagMadeByTwoCutsIsCutWithItsEnd) {
  const std::string input = "<res<quillReply>\nult va</quillReply>\nlue=\"0\">x</result>\nbody";
  EXPECT_EQ(stripped(input, plainTags(input)), "body");
  EXPECT_EQ(reference(input), "body");
}

TEST(StripInfoWrapper, ResultEndIsSearchedFromTheResultTagOnly) {
  const std::string input = "</result>\n<result value=\"1\">no end";
  EXPECT_EQ(stripped(input, plainTags(input)), reference(input));
  EXPECT_EQ(stripped(input, plainTags(input)), input);
}

TEST(StripInfoWrapper, CutsThatRunPastTheEndStopThere) {
  for (const std::string input : {"x<quillReply>", "x</quillReply>", "<result value=</result>"}) {
    EXPECT_EQ(stripped(input, plainTags(input)), reference(input)) << input;
  }
  EXPECT_EQ(stripped("x<quillReply>", plainTags("x<quillReply>")), "x");
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
    ASSERT_EQ(stripped(input, plainTags(input)), reference(input)) << input;
  }
}

TEST(WrapperTagFinder, TagCutAcrossTwoPiecesIsFound) {
  const std::string text = std::string(100, 'a') + "</quillReply>" + std::string(10, 'b');
  for (std::size_t cut = 95; cut < 120; ++cut) {
    const auto [tags, nul] = findInPieces(text, {cut});
    EXPECT_EQ(tags.close, 100u) << cut;
    EXPECT_EQ(nul, kNotFound);
  }
}

TEST(WrapperTagFinder, TextEndsAtTheFirstNul) {
  std::string text = "<quillReply>\n" + std::string(60, 'a') + "</quillReply>\n<result value=";
  text[30] = '\0';
  const auto [tags, nul] = findInPieces(text, {20, 40});
  EXPECT_EQ(nul, 30u);
  EXPECT_EQ(tags.open, 0u);
  EXPECT_EQ(tags.close, kNotFound);
  EXPECT_EQ(tags.result, kNotFound);
}

TEST(WrapperTagFinder, RandomTextsInRandomPiecesAgreeWithAPlainSearch) {
  std::mt19937 random(8);
  const char *const pieces[] = {"<quillReply>",
                                "</quillReply>",
                                "<result value=",
                                "<quill",
                                "Reply>",
                                "</q",
                                "<",
                                "x",
                                "q",
                                "\n"};
  for (const int width : {64, 32, 16}) {
    setTagSearchWidth(width);
    for (int round = 0; round < 5000; ++round) {
      std::string text;
      const int count = static_cast<int>(random() % 40);
      for (int i = 0; i < count; ++i) {
        text += pieces[random() % std::size(pieces)];
        if (random() % 30 == 0) text += '\0';
      }
      std::vector<std::size_t> cuts;
      for (int i = static_cast<int>(random() % 5); i > 0; --i)
        cuts.push_back(text.empty() ? 0 : random() % text.size());
      std::sort(cuts.begin(), cuts.end());
      const std::size_t end = text.find('\0');
      const std::string visible = end == std::string::npos ? text : text.substr(0, end);
      const WrapperTags want = plainTags(visible);
      const auto [got, nul] = findInPieces(text, cuts);
      ASSERT_EQ(nul, end == std::string::npos ? kNotFound : end) << round;
      ASSERT_EQ(got.open, want.open) << round;
      ASSERT_EQ(got.close, want.close) << round;
      ASSERT_EQ(got.result, want.result) << round;
    }
  }
  resetTagSearch();
}

}  // namespace
