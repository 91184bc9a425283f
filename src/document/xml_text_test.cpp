#include "document/xml_text.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

namespace {

// Decodes `input` in place and checks the text left and the count returned.
void expectUnescaped(const char *input, const std::string &text, int result) {
  char buffer[256];
  std::strcpy(buffer, input);
  EXPECT_EQ(unescapeXml(buffer), result) << input;
  EXPECT_EQ(std::string(buffer), text) << input;
}

TEST(UnescapeXml, DecodesAndReturnsTheReplacedLength) {
  expectUnescaped("a&lt;b&amp;c", "a<b&c", 9);
}

TEST(UnescapeXml, PlainTextIsUnchangedWithZero) { expectUnescaped("plain", "plain", 0); }

TEST(UnescapeXml, NullGivesMinusOne) { EXPECT_EQ(unescapeXml(nullptr), -1); }

TEST(UnescapeXml, AllFiveReferences) {
  expectUnescaped("&lt;&gt;&amp;&apos;&quot;", "<>&'\"", 4 + 4 + 5 + 6 + 6);
}

TEST(UnescapeXml, DecodedAmpersandIsNotDecodedAgain) { expectUnescaped("&amp;lt;", "&lt;", 5); }

TEST(UnescapeXml, SingleReferenceAtTheEnd) { expectUnescaped("x&gt;", "x>", 4); }

TEST(UnescapeXml, WholeStringIsOneReference) { expectUnescaped("&amp;", "&", 5); }

// An '&' that begins no known reference keeps the walk on it for good: run it in a child and
// check that it is still running after a while.
bool neverReturns(const char *input) {
  const pid_t child = fork();
  if (child == 0) {
    char buffer[64];
    std::strcpy(buffer, input);
    unescapeXml(buffer);
    _exit(0);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  int status = 0;
  const bool stillRunning = waitpid(child, &status, WNOHANG) == 0;
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return stillRunning;
}

TEST(UnescapeXml, NumericReferenceNeverReturns) { EXPECT_TRUE(neverReturns("x&#38;y")); }

TEST(UnescapeXml, LoneAmpersandAndUpperCaseNeverReturn) {
  EXPECT_TRUE(neverReturns("a&b"));
  EXPECT_TRUE(neverReturns("&AMP;"));
}

TEST(UnescapeXml, KnownReferencesDoReturnInAChild) { EXPECT_FALSE(neverReturns("a&amp;b")); }

std::string typeless(const char *input) {
  char buffer[256];
  std::strcpy(buffer, input);
  toTypelessName(buffer);
  return buffer;
}

TEST(ToTypelessName, TypedNameWithLeadingDot) {
  EXPECT_EQ(typeless(".cn=admin.ou=sales.o=corp"), "admin.sales.corp");
}

TEST(ToTypelessName, TypedNameWithoutLeadingDot) {
  EXPECT_EQ(typeless("cn=admin.corp"), "admin.corp");
}

TEST(ToTypelessName, LeadingDotOfATypelessNameGoes) {
  EXPECT_EQ(typeless(".admin.corp"), "admin.corp");
}

TEST(ToTypelessName, PlainNameIsUnchanged) { EXPECT_EQ(typeless("admin"), "admin"); }

TEST(ToTypelessName, TypeLabelsOfAnyLengthAreDropped) {
  EXPECT_EQ(typeless(".cn=admin.o=org"), "admin.org");
  EXPECT_EQ(typeless("commonName=x.organization=y"), "x.y");
}

TEST(ToTypelessName, EntitiesAreDecodedFirst) {
  EXPECT_EQ(typeless(".cn=a&amp;b.o=corp"), "a&b.corp");
}

std::string withTree(const char *name, const char *tree) {
  char buffer[1024];
  std::strcpy(buffer, name);
  EXPECT_TRUE(replaceTreeName(buffer, tree));
  return buffer;
}

TEST(ReplaceTreeName, ReplacesTheLastComponent) {
  EXPECT_EQ(withTree("admin.corp.T.", "X"), "admin.corp.X.");
  EXPECT_EQ(withTree("admin.corp.OLDTREE.", "NEW"), "admin.corp.NEW.");
}

TEST(ReplaceTreeName, NameWithoutTrailingDotIsUnchanged) {
  EXPECT_EQ(withTree("admin.corp", "X"), "admin.corp");
}

TEST(ReplaceTreeName, NullTreeChangesNothing) { EXPECT_EQ(withTree("a.b.T.", nullptr), "a.b.T."); }

TEST(ReplaceTreeName, NameOfOnlyTheTreeKeepsIt) { EXPECT_EQ(withTree("TREE.", "X"), "TREE."); }

TEST(ReplaceTreeName, TwoDotsGiveTheTreeAfterTheFirst) {
  EXPECT_EQ(withTree("a..", "NEW"), "a.NEW.");
}

TEST(ReplaceTreeName, ShortNamesAreUnchanged) {
  EXPECT_EQ(withTree("a.", "X"), "a.");
  EXPECT_EQ(withTree("", "X"), "");
}

TEST(ReplaceTreeName, IndexZeroIsNeverExamined) { EXPECT_EQ(withTree(".T.", "X"), ".T."); }

TEST(ReplaceTreeName, ResultThatWouldNotFitIsRefusedAndNameKept) {
  char buffer[16] = "ab.cd.T.";
  EXPECT_FALSE(replaceTreeName(buffer, "LONGTREENAME", sizeof buffer));
  EXPECT_STREQ(buffer, "ab.cd.T.");
  EXPECT_TRUE(replaceTreeName(buffer, "LONGTREE", sizeof buffer));
  EXPECT_STREQ(buffer, "ab.cd.LONGTREE.");
}

}  // namespace
