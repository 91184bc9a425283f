#include "document/rights.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string letters(const char *elements) {
  char out[kRightsLettersSize];
  rightsToLetters(elements, out);
  return out;
}

TEST(RightsToLetters, ReadWriteFileScanGivesRwfAndThree) {
  char out[kRightsLettersSize];
  EXPECT_EQ(rightsToLetters("<read/><write/><fileScan/>", out), 3);
  EXPECT_STREQ(out, "rwf");
}

TEST(RightsToLetters, LettersComeInInputOrder) { EXPECT_EQ(letters("<fileScan/><read/>"), "fr"); }

TEST(RightsToLetters, RepeatedRightGivesRepeatedLetter) {
  EXPECT_EQ(letters("<read/><read/>"), "rr");
}

TEST(RightsToLetters, ElementNamesAreCaseSensitive) {
  EXPECT_EQ(letters("<READ/>"), "");
  EXPECT_EQ(letters("<Read/>"), "");
}

TEST(RightsToLetters, SalvageAndSecureHaveLetters) {
  EXPECT_EQ(letters("<salvage/><secure/>"), "vx");
}

TEST(RightsToLetters, EmptyRunGivesEmptyStringAndZero) {
  char out[kRightsLettersSize] = "junk";
  EXPECT_EQ(rightsToLetters("", out), 0);
  EXPECT_STREQ(out, "");
}

TEST(RightsToLetters, NullInputOrOutputWritesNothing) {
  char out[kRightsLettersSize] = "keep";
  EXPECT_EQ(rightsToLetters(nullptr, out), 0);
  EXPECT_STREQ(out, "keep");
  EXPECT_EQ(rightsToLetters("<read/>", nullptr), 0);
}

TEST(RightsToLetters, TagWithoutSlashRunsIntoTheNextElement) {
  // "<rights><read/>" is one name "rights><read": it matches nothing and hides <read/>.
  EXPECT_EQ(letters("<rights><read/><write/>"), "w");
}

TEST(RightsToLetters, ClosingTagGivesEmptyNameAndSkipsTheNextCharacter) {
  EXPECT_EQ(letters("</x><read/>"), "r");
}

TEST(RightsToLetters, StopsAtTheEndOfTheString) {
  EXPECT_EQ(letters("<read/><write"), "r");
  EXPECT_EQ(letters("<read/"), "r");
  EXPECT_EQ(letters("<"), "");
}

TEST(RightsToLetters, OverlongNameMatchesNothing) {
  EXPECT_EQ(letters("<accessControlX/><read/>"), "r");
  EXPECT_EQ(letters("<supervisorsupervisorsupervisor/>"), "");
}

TEST(RightsToLetters, OutputIsCutAtTheBufferSize) {
  std::string many;
  for (int i = 0; i < 100; ++i)
    many += "<read/>";
  char out[kRightsLettersSize];
  EXPECT_EQ(rightsToLetters(many.c_str(), out), 63);
  EXPECT_EQ(std::string(out), std::string(63, 'r'));
}

TEST(RightLetterToElement, BothCasesOfALetterGiveTheSameElement) {
  EXPECT_STREQ(rightLetterToElement('r'), "<read/>");
  EXPECT_STREQ(rightLetterToElement('R'), "<read/>");
}

TEST(RightLetterToElement, EveryReportLetter) {
  EXPECT_STREQ(rightLetterToElement('A'), "<accessControl/>");
  EXPECT_STREQ(rightLetterToElement('C'), "<create/>");
  EXPECT_STREQ(rightLetterToElement('E'), "<erase/>");
  EXPECT_STREQ(rightLetterToElement('F'), "<fileScan/>");
  EXPECT_STREQ(rightLetterToElement('M'), "<modify/>");
  EXPECT_STREQ(rightLetterToElement('S'), "<supervisor/>");
  EXPECT_STREQ(rightLetterToElement('W'), "<write/>");
}

TEST(RightLetterToElement, SalvageLetterIsInvalidWithMessage) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(rightLetterToElement('V'), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Invalid access right : V\n");
}

TEST(RightLetterToElement, MessageShowsTheUpperCasedLetter) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(rightLetterToElement('x'), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Invalid access right : X\n");
}

struct Rxl {
  std::string letters, elements, messages;
};

Rxl rxl(const std::string &text) {
  char letters[kRxlLettersSize];
  char elements[kRxlElementsSize];
  testing::internal::CaptureStderr();
  convertRxlRights(text.data(), static_cast<int>(text.size()), letters, elements);
  return {letters, elements, testing::internal::GetCapturedStderr()};
}

TEST(ConvertRxlRights, AllSevenLettersInOrder) {
  Rxl r = rxl("RWCEMFA");
  EXPECT_EQ(r.letters, "rwcemfa");
  EXPECT_EQ(r.elements, "<read/><write/><create/><erase/><modify/><fileScan/><accessControl/>");
  EXPECT_EQ(r.messages, "");
}

TEST(ConvertRxlRights, LowerCaseIsNotARight) {
  Rxl r = rxl("rw");
  EXPECT_EQ(r.letters, "");
  EXPECT_EQ(r.elements, "");
  EXPECT_EQ(r.messages,
            "Ignoring \"r\" during rights conversion\nIgnoring \"w\" during rights conversion\n");
}

TEST(ConvertRxlRights, FortySupervisorsStopAt32LettersAnd19Elements) {
  Rxl r = rxl(std::string(40, 'S'));
  EXPECT_EQ(r.letters, std::string(32, 's'));
  std::string expected;
  for (int i = 0; i < 19; ++i)
    expected += "<supervisor/>";
  EXPECT_EQ(r.elements, expected);
  EXPECT_EQ(r.elements.size(), 247u);
}

TEST(ConvertRxlRights, ShorterElementStillFitsAfterALongerOneDidNot) {
  // 19 supervisors (247) + accessControl (16) do not fit; read (7) does not fit either (254 < 256
  // fits): so read is appended.
  Rxl r = rxl(std::string(19, 'S') + "AR");
  EXPECT_EQ(r.elements.size(), 254u);
  EXPECT_EQ(r.elements.substr(247), "<read/>");
}

TEST(ConvertRxlRights, LengthBelowOneGivesEmptyStrings) {
  char letters[kRxlLettersSize] = "junk";
  char elements[kRxlElementsSize] = "junk";
  convertRxlRights("RW", 0, letters, elements);
  EXPECT_STREQ(letters, "");
  EXPECT_STREQ(elements, "");
}

TEST(ConvertRxlRights, SalvageAndOtherCharactersAreIgnoredWithMessages) {
  Rxl r = rxl("R V[");
  EXPECT_EQ(r.letters, "r");
  EXPECT_EQ(r.messages,
            "Ignoring \" \" during rights conversion\nIgnoring \"V\" during rights conversion\n"
            "Ignoring \"[\" during rights conversion\n");
}

TEST(ConvertRxlRights, CountedTextIsNotReadPastItsLength) {
  Rxl r = rxl(std::string("RW", 1));
  EXPECT_EQ(r.letters, "r");
}

}  // namespace
