#include "legacy/quoted_fields.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Every field nextQuotedField gives for `text`, in order, until the first null.
std::vector<std::string> fields(std::string text) {
  std::vector<std::string> result;
  char *cursor = nullptr;
  for (char *field = nextQuotedField(text.data(), ',', &cursor); field != nullptr;
       field = nextQuotedField(nullptr, ',', &cursor))
    result.emplace_back(field);
  return result;
}

using Fields = std::vector<std::string>;

TEST(SplitAtQuotedComma, SplitsAtCommaFollowedByQuote) {
  std::string text = R"("A","B")";
  char *cursor = nullptr;
  char *first = splitAtQuotedComma(text.data(), ',', &cursor);
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first, "\"A\"");
  EXPECT_EQ(cursor, text.data() + 4);
  char *second = splitAtQuotedComma(nullptr, ',', &cursor);
  EXPECT_STREQ(second, "\"B\"");
  EXPECT_EQ(*cursor, '\0');
  EXPECT_EQ(cursor, text.data() + text.size());
  EXPECT_EQ(splitAtQuotedComma(nullptr, ',', &cursor), nullptr);
  EXPECT_EQ(cursor, text.data() + text.size());
}

TEST(SplitAtQuotedComma, EmptyTextGivesNullAndKeepsTheCursor) {
  char text[] = "";
  char *cursor = nullptr;
  EXPECT_EQ(splitAtQuotedComma(text, ',', &cursor), nullptr);
  EXPECT_EQ(cursor, text);
}

TEST(SplitAtQuotedComma, FirstCharacterIsNeverASeparator) {
  char text[] = R"(,"A")";
  char *cursor = nullptr;
  EXPECT_STREQ(splitAtQuotedComma(text, ',', &cursor), R"(,"A")");
  EXPECT_EQ(*cursor, '\0');
}

TEST(SplitAtQuotedComma, CharacterAfterAPlainCommaIsNeverASeparator) {
  // The second comma sits right after a plain comma, so it is skipped unseen.
  char text[] = R"("A,,"B")";
  char *cursor = nullptr;
  EXPECT_STREQ(splitAtQuotedComma(text, ',', &cursor), R"("A,,"B")");
  // A comma two characters after a plain comma is looked at again.
  char other[] = R"("A,x,"B")";
  EXPECT_STREQ(splitAtQuotedComma(other, ',', &cursor), R"("A,x)");
  EXPECT_STREQ(cursor, R"("B")");
}

TEST(SplitAtQuotedComma, CommaEndingTheTextStopsAtTheEnd) {
  char text[] = R"("A",)";
  char *cursor = nullptr;
  EXPECT_STREQ(splitAtQuotedComma(text, ',', &cursor), R"("A",)");
  EXPECT_EQ(cursor, text + 4);
  EXPECT_EQ(splitAtQuotedComma(nullptr, ',', &cursor), nullptr);
}

TEST(SplitAtQuotedComma, OtherSeparatorCharacter) {
  char text[] = R"("A";"B")";
  char *cursor = nullptr;
  EXPECT_STREQ(splitAtQuotedComma(text, ';', &cursor), "\"A\"");
  EXPECT_STREQ(splitAtQuotedComma(nullptr, ';', &cursor), "\"B\"");
}

TEST(NextQuotedField, DropsFirstAndLastCharacters) {
  EXPECT_EQ(fields(R"("TRUSTEE","VOL1:\HOME","x","JDOE","RWF")"),
            (Fields{"TRUSTEE", R"(VOL1:\HOME)", "x", "JDOE", "RWF"}));
}

TEST(NextQuotedField, QuotesAreNotChecked) {
  EXPECT_EQ(fields(R"(xABCy,"DEF")"), (Fields{"ABC", "DEF"}));
}

TEST(NextQuotedField, TwoQuotesGiveAnEmptyField) {
  EXPECT_EQ(fields(R"("A","","B")"), (Fields{"A", "", "B"}));
}

TEST(NextQuotedField, RawFieldShorterThanTwoGivesNull) {
  EXPECT_EQ(fields("x"), Fields{});
  EXPECT_EQ(fields(R"("A",")"), Fields{"A"});
}

TEST(NextQuotedField, FieldMayHoldCommasAndQuotes) {
  EXPECT_EQ(fields(R"("A,B","C"D","E, F")"), (Fields{"A,B", R"(C"D)", "E, F"}));
}

TEST(NextQuotedField, CommaBeforeQuoteAlwaysSeparates) {
  EXPECT_EQ(fields(R"("A,"B")"), (Fields{"", "B"}));
}

TEST(NextQuotedField, LineChangedInPlaceKeepsTheQuotedKeyword) {
  std::string line = R"("TRUSTEE","P")";
  char *cursor = nullptr;
  EXPECT_STREQ(nextQuotedField(line.data(), ',', &cursor), "TRUSTEE");
  EXPECT_STREQ(line.c_str(), "\"TRUSTEE");
}

}  // namespace
