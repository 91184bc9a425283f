#include "channel/tag_find.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

// A text copied to the end of a buffer of its own size, so that a read past its end is caught
// by the address sanitizer.
class ExactText {
public:
  explicit ExactText(const std::string &text)
      : bytes_(std::make_unique<char[]>(text.size() + 1)), size_(text.size()) {
    text.copy(bytes_.get(), text.size());
  }
  std::string_view view() const { return {bytes_.get(), size_}; }

private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_;
};

TEST(FindTag, FindsTheFirstTagAtOrAfterTheStart) {
  const std::string text = "<a><result value=\"3\"><description>x</description></result>";
  EXPECT_EQ(findTag(text, "<result value=\"", 0), 3u);
  EXPECT_EQ(findTag(text, "<result value=\"", 3), 3u);
  EXPECT_EQ(findTag(text, "<result value=\"", 4), std::string_view::npos);
  EXPECT_EQ(findTag(text, "</description>", 0), text.find("</description>"));
  EXPECT_EQ(findTag(text, "<name>", 0), std::string_view::npos);
}

TEST(FindTag, ATagCutByTheTextsEndIsNotFound) {
  EXPECT_EQ(findTag(ExactText("0123456789abcdef0123<descr").view(), "<description>", 0),
            std::string_view::npos);
  EXPECT_EQ(findTag(ExactText("0123456789abcdef0123<description>").view(), "<description>", 0),
            20u);
}

TEST(FindTag, ShortTagsAndStartsPastTheEndAreAnswered) {
  EXPECT_EQ(findTag("ab<", "<", 0), 2u);
  EXPECT_EQ(findTag("ab<", "", 1), 1u);
  EXPECT_EQ(findTag("<ab>", "<ab>", 1), std::string_view::npos);
  EXPECT_EQ(findTag("<ab>", "<ab>", 10), std::string_view::npos);
  EXPECT_EQ(findTag("", "<ab>", 0), std::string_view::npos);
}

TEST(FindTag, AgreesWithAPlainSearchOnRandomTexts) {
  std::mt19937 random(20261121);
  const std::vector<std::string> tags = {"<name>",
                                         "</name>",
                                         "<result value=\"",
                                         "<n",
                                         "<description>",
                                         "</description>",
                                         "<addTrustee>",
                                         "<a",
                                         "<<",
                                         "<name>x<name>y"};
  const std::string alphabet = "<<<<nname>/aed\"xy";
  int differences = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 200, ' ');
    for (char &c : text)
      c = alphabet[random() % alphabet.size()];
    const std::string &tag = tags[random() % tags.size()];
    if (random() % 3 == 0 && !text.empty())
      text.replace(random() % text.size(), 0, tag.substr(0, 1 + random() % tag.size()));
    const ExactText exact(text);
    const std::size_t from = random() % (text.size() + 3);
    if (findTag(exact.view(), tag, from) != std::string_view(text).find(tag, from)) ++differences;
  }
  EXPECT_EQ(differences, 0);
}

}  // namespace
