#include "save/tag_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

// Every test runs with the 64-byte, 32-byte and 16-byte loops (those the processor has).
class TagSearch : public testing::TestWithParam<int> {
 protected:
  void SetUp() override { setTagSearchWidth(GetParam()); }
  void TearDown() override { resetTagSearch(); }
};

INSTANTIATE_TEST_SUITE_P(Widths, TagSearch, testing::Values(64, 32, 16),
                         [](const testing::TestParamInfo<int> &info) {
                           return "Bytes" + std::to_string(info.param);
                         });

// The plain search the fast one must agree with.
std::size_t naive(const std::string &text, std::size_t from, const std::string &needle) {
  return text.find(needle, from);
}

std::size_t fast(const std::string &text, std::size_t from, const std::string &needle) {
  const char *hit = findTag(text.data() + from, text.data() + text.size(), needle);
  return hit == nullptr ? std::string::npos : static_cast<std::size_t>(hit - text.data());
}

TEST_P(TagSearch, FindTagFindsTheFirstOccurrenceOnly) {
  const std::string text = "<file><path>a</path></file><file><path>b</path></file>";
  EXPECT_EQ(fast(text, 0, "</path>"), 13u);
  EXPECT_EQ(fast(text, 14, "</path>"), 40u);
  EXPECT_EQ(fast(text, 41, "</path>"), std::string::npos);
}

TEST_P(TagSearch, FindTagEmptyNeedleIsFoundAtTheStartAndShortTextsHoldNothing) {
  const std::string text = "abc";
  EXPECT_EQ(fast(text, 1, ""), 1u);
  EXPECT_EQ(fast(text, 0, "abcd"), std::string::npos);
  EXPECT_EQ(fast(text, 3, "a"), std::string::npos);
}

TEST_P(TagSearch, FindTagMatchRightAtTheEndOfALongTextIsFound) {
  std::string text(100, 'x');
  text += "</file>";
  for (std::size_t from = 0; from <= text.size(); ++from)
    EXPECT_EQ(fast(text, from, "</file>"), from <= 100 ? 100u : std::string::npos) << from;
}

TEST_P(TagSearch, FindTagNulBytesAreOrdinaryBytes) {
  std::string text(40, '\0');
  text.replace(30, 6, "<pa\0h>", 6);
  EXPECT_EQ(fast(text, 0, std::string("<pa\0h>", 6)), 30u);
}

TEST_P(TagSearch, FindTagRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(7);
  const std::string alphabet = "<>/fileptahx";
  const std::string needles[] = {"<file>",     "</file>", "<path>", "</path>",
                                 "<",          "</",      "<f>",    "<trustee type=\"adID\">",
                                 "</trustee>", "ll",      "</a/>"};
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const std::size_t size = random() % 120;
    for (std::size_t i = 0; i < size; ++i) {
      if (random() % 8 == 0)
        text += needles[random() % std::size(needles)];
      else
        text += alphabet[random() % alphabet.size()];
    }
    for (const std::string &needle : needles) {
      const std::size_t from = text.empty() ? 0 : random() % (text.size() + 1);
      ASSERT_EQ(fast(text, from, needle), naive(text, from, needle)) << text << " / " << needle;
    }
  }
}

TEST_P(TagSearch, FindTagTagAtEveryPlaceAcrossVectorBoundaries) {
  for (const std::string tag : {"</file>", "<path>", "</quillReply>", "<trustee type=\"adID\">"}) {
    for (std::size_t at = 0; at < 100; ++at) {
      std::string text(at, 'x');
      text += tag + std::string(at % 37, 'y');
      EXPECT_EQ(fast(text, 0, tag), at) << tag << " at " << at;
      // The same text one byte short of the tag's end holds nothing.
      std::string cut = text.substr(0, at + tag.size() - 1);
      EXPECT_EQ(fast(cut, 0, tag), std::string::npos) << tag << " at " << at;
    }
  }
}

TEST_P(TagSearch, FindTagSurvivorsThatDifferOnlyInTheMiddleAreRejected) {
  // The screen passes the byte after "<", or after "</", and the last one; the rest decides.
  const std::string text = std::string(40, ' ') + "<trustee type=\"adIX\">" + "<trustee>" +
                           std::string(40, ' ') + "<trustee type=\"adID\">";
  EXPECT_EQ(fast(text, 0, "<trustee type=\"adID\">"), 40u + 21 + 9 + 40);
}

// Where findNulAndTag's answers must be, worked out the plain way.
struct Expected {
  std::size_t nul;
  std::size_t tag;
};

Expected plainNulAndTag(const std::string &text, std::size_t tagFrom, std::size_t nulFrom,
                        const std::string &tag) {
  std::size_t nul = text.find('\0', nulFrom);
  std::size_t hit = text.find(tag, tagFrom);
  if (hit != std::string::npos && nul != std::string::npos && hit + tag.size() > nul)
    hit = std::string::npos;
  return {nul, hit};
}

Expected fastNulAndTag(const std::string &text, std::size_t tagFrom, std::size_t nulFrom,
                       const std::string &tag) {
  const PreparedTag prepared = prepareTag(tag);
  const NulAndTag found = findNulAndTag(prepared, text.data() + tagFrom, text.data() + nulFrom,
                                        text.data() + text.size());
  auto offset = [&](const char *at) {
    return at == nullptr ? std::string::npos : static_cast<std::size_t>(at - text.data());
  };
  return {offset(found.nul), offset(found.tag)};
}

TEST_P(TagSearch, FindNulAndTagFindsBothInOnePass) {
  const std::string tag = "</quillReply>";
  std::string text = std::string(100, 'a') + tag + std::string(50, 'b');
  Expected found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, std::string::npos);
  EXPECT_EQ(found.tag, 100u);
  text[120] = '\0';
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 120u);
  EXPECT_EQ(found.tag, 100u);
  // A tag after the NUL is not part of the text.
  text[20] = '\0';
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 20u);
  EXPECT_EQ(found.tag, std::string::npos);
  // A NUL before nulFrom is not looked at.
  found = fastNulAndTag(text, 0, 21, tag);
  EXPECT_EQ(found.nul, 120u);
  EXPECT_EQ(found.tag, 100u);
}

TEST_P(TagSearch, FindNulAndTagNulInTheFirstBytesBeforeTheVectorLoop) {
  // The bytes between nulFrom and the first vector's reach are looked at one by one.
  const std::string tag = "</quillReply>";
  std::string text = "x" + std::string(1, '\0') + std::string(80, 'y') + tag;
  Expected found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 1u);
  EXPECT_EQ(found.tag, std::string::npos);
  text = std::string(1, '\0') + std::string(80, 'y') + tag;
  found = fastNulAndTag(text, 0, 0, tag);
  EXPECT_EQ(found.nul, 0u);
  EXPECT_EQ(found.tag, std::string::npos);
}

TEST_P(TagSearch, FindNulAndTagRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(11);
  const std::string alphabet = std::string("<>/qulRepy", 10) + std::string(1, '\0');
  const std::string tags[] = {"</quillReply>", "<quillReply>", "<result value="};
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    const std::size_t size = random() % 160;
    for (std::size_t i = 0; i < size; ++i) {
      if (random() % 10 == 0)
        text += tags[random() % std::size(tags)];
      else if (random() % 3 == 0)
        text += 'a';
      else
        text += alphabet[random() % (random() % 20 == 0 ? alphabet.size() : alphabet.size() - 1)];
    }
    const std::string &tag = tags[random() % std::size(tags)];
    const std::size_t nulFrom = text.empty() ? 0 : random() % (text.size() + 1);
    const std::size_t tagFrom = nulFrom - std::min<std::size_t>(nulFrom, random() % 14);
    if (text.find('\0', 0) < nulFrom) continue;  // the caller never has a NUL before nulFrom
    const Expected want = plainNulAndTag(text, tagFrom, nulFrom, tag);
    const Expected got = fastNulAndTag(text, tagFrom, nulFrom, tag);
    ASSERT_EQ(got.nul, want.nul) << round;
    ASSERT_EQ(got.tag, want.tag) << round;
  }
}

// findTagNoting's answers worked out the plain way: the stop tag, and each noted tag's first place
// up to it.
std::vector<std::size_t> plainNoting(const std::string &text, std::size_t from,
                                     const std::string &stop, const std::string &a,
                                     const std::string &b) {
  const std::size_t hit = text.find(stop, from);
  std::vector<std::size_t> result = {hit};
  for (const std::string *note : {&a, &b}) {
    std::size_t at = text.find(*note, from);
    if (at != std::string::npos && hit != std::string::npos && at > hit) at = std::string::npos;
    result.push_back(at);
  }
  return result;
}

std::vector<std::size_t> fastNoting(const std::string &text, std::size_t from,
                                    const std::string &stop, const std::string &a,
                                    const std::string &b) {
  const PreparedTag stopTag = prepareTag(stop);
  const PreparedTag notes[2] = {prepareTag(a), prepareTag(b)};
  const char *noted[2];
  const char *hit =
      findTagNoting(stopTag, notes, text.data() + from, text.data() + text.size(), noted);
  auto offset = [&](const char *at) {
    return at == nullptr ? std::string::npos : static_cast<std::size_t>(at - text.data());
  };
  return {offset(hit), offset(noted[0]), offset(noted[1])};
}

TEST_P(TagSearch, FindTagNotingNotesTheTagsPassedOnTheWay) {
  const std::string text = std::string(40, ' ') + "<file><zid>1</zid><path>/a</path>" +
                           std::string(70, ' ') + "</file><path>/b</path>";
  const std::vector<std::size_t> found = fastNoting(text, 0, "</file>", "<path>", "</path>");
  EXPECT_EQ(found, plainNoting(text, 0, "</file>", "<path>", "</path>"));
  EXPECT_EQ(found[0], 40u + 33 + 70);
  EXPECT_EQ(found[1], 40u + 18);
  EXPECT_EQ(found[2], 40u + 26);
  // Tags that only start after the stop tag are not noted.
  const std::vector<std::size_t> later = fastNoting(text, 41, "</file>", "<path>", "</path>");
  EXPECT_EQ(later, plainNoting(text, 41, "</file>", "<path>", "</path>"));
}

TEST_P(TagSearch, FindTagNotingWithoutTheStopTagNotesUpToTheEnd) {
  const std::string text = std::string(50, ' ') + "</path>" + std::string(50, ' ') + "<path>";
  const std::vector<std::size_t> found = fastNoting(text, 0, "</file>", "<path>", "</path>");
  EXPECT_EQ(found[0], std::string::npos);
  EXPECT_EQ(found[1], 107u);
  EXPECT_EQ(found[2], 50u);
}

TEST_P(TagSearch, FindTagNotingRandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(5);
  const std::string pieces[] = {
      "<file>", "</file>", "<path>",      "</path>",      "<",          "</", ">", "f",
      "p",      "x",       "<directory>", "</directory>", "<fileScan/>"};
  const std::string groups[][3] = {{"</file>", "<path>", "</path>"},
                                   {"</directory>", "<path>", "</path>"},
                                   {"</path>", "<path>", "</path>"}};
  for (int round = 0; round < 4000; ++round) {
    std::string text;
    const int count = static_cast<int>(random() % 60);
    for (int i = 0; i < count; ++i) {
      text += pieces[random() % std::size(pieces)];
      if (random() % 4 == 0) text += std::string(random() % 40, ' ');
    }
    const std::size_t from = text.empty() ? 0 : random() % (text.size() + 1);
    const auto &group = groups[random() % std::size(groups)];
    ASSERT_EQ(fastNoting(text, from, group[0], group[1], group[2]),
              plainNoting(text, from, group[0], group[1], group[2]))
        << text << " from " << from;
  }
}

}  // namespace
