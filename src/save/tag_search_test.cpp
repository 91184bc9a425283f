#include "save/tag_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

// The plain search the fast one must agree with.
std::size_t naive(const std::string &text, std::size_t from, const std::string &needle) {
  return text.find(needle, from);
}

std::size_t fast(const std::string &text, std::size_t from, const std::string &needle) {
  const char *hit = findTag(text.data() + from, text.data() + text.size(), needle);
  return hit == nullptr ? std::string::npos : static_cast<std::size_t>(hit - text.data());
}

TEST(FindTag, FindsTheFirstOccurrenceOnly) {
  const std::string text = "<file><path>a</path></file><file><path>b</path></file>";
  EXPECT_EQ(fast(text, 0, "</path>"), 13u);
  EXPECT_EQ(fast(text, 14, "</path>"), 40u);
  EXPECT_EQ(fast(text, 41, "</path>"), std::string::npos);
}

TEST(FindTag, EmptyNeedleIsFoundAtTheStartAndShortTextsHoldNothing) {
  const std::string text = "abc";
  EXPECT_EQ(fast(text, 1, ""), 1u);
  EXPECT_EQ(fast(text, 0, "abcd"), std::string::npos);
  EXPECT_EQ(fast(text, 3, "a"), std::string::npos);
}

TEST(FindTag, MatchRightAtTheEndOfALongTextIsFound) {
  std::string text(100, 'x');
  text += "</file>";
  for (std::size_t from = 0; from <= text.size(); ++from)
    EXPECT_EQ(fast(text, from, "</file>"), from <= 100 ? 100u : std::string::npos) << from;
}

TEST(FindTag, NulBytesAreOrdinaryBytes) {
  std::string text(40, '\0');
  text.replace(30, 6, "<pa\0h>", 6);
  EXPECT_EQ(fast(text, 0, std::string("<pa\0h>", 6)), 30u);
}

TEST(FindTag, RandomTextsAgreeWithAPlainSearch) {
  std::mt19937 random(7);
  const std::string alphabet = "<>/fileptahx";
  const std::string needles[] = {"<file>", "</file>", "<path>", "</path>", "<", "</", "<f>",
                                 "<trustee type=\"adID\">", "</trustee>", "ll", "</a/>"};
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

}  // namespace
