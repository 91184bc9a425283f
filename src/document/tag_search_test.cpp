#include "document/tag_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

constexpr std::size_t npos = std::string_view::npos;

TEST(FindTag, FindsTheFirstPlaceFromTheGivenOne) {
  const std::string_view text = "<a></a><path>x</path><path>";
  EXPECT_EQ(findTag(text, "<path>", 0), 7u);
  EXPECT_EQ(findTag(text, "<path>", 8), 21u);
  EXPECT_EQ(findTag(text, "</path>", 0), 14u);
  EXPECT_EQ(findTag(text, "<b>", 0), npos);
}

TEST(FindTag, EmptyTagIsFoundWhereTheSearchStarts) {
  EXPECT_EQ(findTag("abc", "", 2), 2u);
  EXPECT_EQ(findTag("abc", "", 3), 3u);
  EXPECT_EQ(findTag("abc", "", 4), npos);
}

TEST(FindTag, StartPastTheEndOrTagLongerThanTheRestFindsNothing) {
  EXPECT_EQ(findTag("abc", "c", 4), npos);
  EXPECT_EQ(findTag("abc", "bcd", 1), npos);
  EXPECT_EQ(findTag("", "<a>", 0), npos);
}

TEST(FindTag, TagAtTheVeryEndAndNulBytesInsideAreFound) {
  const std::string text = std::string(40, 'x') + '\0' + "</quillReply>";
  EXPECT_EQ(findTag(text, "</quillReply>", 0), 41u);
  EXPECT_EQ(findTag(text, std::string_view("x\0<", 3), 0), 39u);
}

// Random texts of a few letters, so that tags and their first and last bytes occur often, at
// every distance from a 16-byte boundary: the same answers as std::string_view::find.
TEST(FindTag, RandomTextsAgreeWithStringFind) {
  std::mt19937 random(15);
  const char letters[] = "<>/ab";
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 80, ' ');
    for (char &c : text)
      c = letters[random() % 5];
    std::string tag(1 + random() % 6, ' ');
    for (char &c : tag)
      c = letters[random() % 5];
    const std::size_t from = random() % (text.size() + 2);
    ASSERT_EQ(findTag(text, tag, from), std::string_view(text).find(tag, from))
        << text << " / " << tag << " from " << from;
  }
}

}  // namespace
