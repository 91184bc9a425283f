#include "cli/options.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "document/run_settings.h"

namespace {

class Options : public testing::Test {
protected:
  void SetUp() override { resetRunSettings(); }
};

std::string normalised(const char *argument) {
  std::unique_ptr<char, decltype(&std::free)> path(normalisePathOption(argument), &std::free);
  return path.get();
}

TEST_F(Options, EmptyMaskSelectsTrusteesAndBothQuotasButNotRemoval) {
  MaskFlags flags;
  flags.removeInvalid = 1;
  EXPECT_EQ(parseMask("", flags), 0);
  EXPECT_EQ(flags.trustees + flags.userQuotas + flags.dirQuotas, 3);
  EXPECT_EQ(flags.removeInvalid, 0);
}

TEST_F(Options, MissingMaskIsLikeEmpty) {
  MaskFlags flags;
  EXPECT_EQ(parseMask(nullptr, flags), 0);
  EXPECT_EQ(flags.trustees, 1);
  EXPECT_EQ(flags.removeInvalid, 0);
}

TEST_F(Options, EachLetterSetsItsFlag) {
  MaskFlags flags;
  EXPECT_EQ(parseMask("ud", flags), 0);
  EXPECT_EQ(flags.trustees, 0);
  EXPECT_EQ(flags.userQuotas, 1);
  EXPECT_EQ(flags.dirQuotas, 1);
  EXPECT_EQ(flags.removeInvalid, 0);
  MaskFlags remove;
  EXPECT_EQ(parseMask("rt", remove), 0);
  EXPECT_EQ(remove.removeInvalid, 1);
  EXPECT_EQ(remove.trustees, 1);
  EXPECT_EQ(remove.userQuotas, 0);
}

TEST_F(Options, LetterASetsAllFourIncludingRemoval) {
  MaskFlags flags;
  EXPECT_EQ(parseMask("a", flags), 0);
  EXPECT_EQ(flags.trustees + flags.userQuotas + flags.dirQuotas + flags.removeInvalid, 4);
}

TEST_F(Options, UnknownLetterStopsWithMessageAndKeepsEarlierFlags) {
  MaskFlags flags;
  testing::internal::CaptureStderr();
  EXPECT_EQ(parseMask("tTu", flags), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unknown metadata type in the mask: T\n");
  EXPECT_EQ(flags.trustees, 1);
  EXPECT_EQ(flags.userQuotas, 0);
}

TEST_F(Options, MaskXIsUnknown) {
  MaskFlags flags;
  testing::internal::CaptureStderr();
  EXPECT_EQ(parseMask("x", flags), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unknown metadata type in the mask: x\n");
}

TEST_F(Options, NoUserTypeOnSaveFiltersNothing) {
  arborUsers = adUsers = 1;
  EXPECT_EQ(parseUserType(0, nullptr, true), 0);
  EXPECT_EQ(arborUsers, 0);
  EXPECT_EQ(adUsers, 0);
}

TEST_F(Options, NoUserTypeOnRestoreRestoresBoth) {
  EXPECT_EQ(parseUserType(0, nullptr, false), 0);
  EXPECT_EQ(arborUsers, 1);
  EXPECT_EQ(adUsers, 1);
}

TEST_F(Options, ArborAndAdSelectOneKind) {
  EXPECT_EQ(parseUserType(1, "arbor", true), 0);
  EXPECT_EQ(arborUsers, 1);
  EXPECT_EQ(adUsers, 0);
  EXPECT_EQ(parseUserType(1, "ad", false), 0);
  EXPECT_EQ(arborUsers, 0);
  EXPECT_EQ(adUsers, 1);
}

TEST_F(Options, UpperCaseUserTypesAreUnknown) {
  for (const char *type : {"AD", "Arbor", "ARBOR", "", "ad "}) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(parseUserType(1, type, false), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              std::string("Unknown user type : ") + type + "\n");
  }
}

TEST_F(Options, RelativePathGetsALeadingSlashAndLosesItsTrailingOne) {
  EXPECT_EQ(normalised("test1/"), "/test1");
}

TEST_F(Options, LoneSlashStays) { EXPECT_EQ(normalised("/"), "/"); }

TEST_F(Options, PathEndingInTwoSlashesKeepsOne) { EXPECT_EQ(normalised("/a//"), "/a/"); }

TEST_F(Options, AbsolutePathIsKept) {
  EXPECT_EQ(normalised("/test1"), "/test1");
  EXPECT_EQ(normalised("a/b"), "/a/b");
}

TEST_F(Options, EmptyPathBecomesSlash) { EXPECT_EQ(normalised(""), "/"); }

}  // namespace
