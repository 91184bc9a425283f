#include "save/info_filters.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <random>
#include <string>
#include <vector>

#include "info_filters_oracle.h"
#include "info_text_samples.h"

namespace {

using namespace infosamples;

struct Filtered {
  std::string text;
  int length;
  int status = 0;
  std::string scratch;
};

Filtered removed(const std::string &input, const char *startName, const char *endName) {
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  int length = static_cast<int>(input.size());
  const int status = removeElements(buffer.data(), &length, startName, endName);
  return {buffer.data(), length, status, ""};
}

Filtered byPath(const std::string &input, const char *path, const char *elementName) {
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  std::vector<char> scratch(input.size() + 2, 'x');
  int length = static_cast<int>(input.size());
  filterByPath(buffer.data(), &length, path, scratch.data(), elementName);
  return {buffer.data(), length, 0, scratch.data()};
}

TEST(RemoveRange, TakesTheLineFeedAfterTheRemovedCharacters) {
  char text[] = "ab<x/>\ncd";
  int length = 9;
  removeRange(text + 2, 4, &length);
  EXPECT_STREQ(text, "abcd");
  EXPECT_EQ(length, 4);
}

TEST(RemoveRange, LeavesOtherCharactersAfterTheRemovedOnes) {
  char text[] = "ab<x/> cd";
  int length = 9;
  removeRange(text + 2, 4, &length);
  EXPECT_STREQ(text, "ab cd");
  EXPECT_EQ(length, 5);
}

TEST(RemoveElements, ArborOnlyDropsEveryAdTrusteeAndKeepsUntypedOnes) {
  const std::string input = "<trusteeInfo>\n" + file("/a", kArborTrustee + kAdTrustee) +
                            file("/b", kAdTrustee) + "</trusteeInfo>\n";
  const Filtered out = removed(input, "trustee type=\"adID\"", "trustee");
  const std::string expected =
      "<trusteeInfo>\n" + file("/a", kArborTrustee) + file("/b") + "</trusteeInfo>\n";
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(out.text, expected);
  EXPECT_EQ(out.length, static_cast<int>(expected.size()));
}

TEST(RemoveElements, AdOnlyDropsEveryUntypedTrusteeAndKeepsAdOnes) {
  const std::string input = file("/a", kArborTrustee + kAdTrustee + kArborTrustee);
  const Filtered out = removed(input, "trustee", "trustee");
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(out.text, file("/a", kAdTrustee));
}

TEST(RemoveElements, AdTrusteeWithoutEndTagIsAMissingEndTag) {
  const std::string input = file("/a", kAdTrustee) + "<trustee type=\"adID\"><name>x</name>\n";
  testing::internal::CaptureStderr();
  const Filtered out = removed(input, "trustee type=\"adID\"", "trustee");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Missing end tag : </trustee>\n");
  EXPECT_EQ(out.status, -1);
  // The elements before the unmatched one are gone all the same.
  EXPECT_EQ(out.text, file("/a") + "<trustee type=\"adID\"><name>x</name>\n");
}

TEST(RemoveElements, NoStartTagLeavesTheTextAlone) {
  const std::string input = file("/a", kArborTrustee);
  const Filtered out = removed(input, "trustee type=\"adID\"", "trustee");
  EXPECT_EQ(out.status, 0);
  EXPECT_EQ(out.text, input);
  EXPECT_EQ(out.length, static_cast<int>(input.size()));
}

TEST(RemoveElements, MissingArgumentIsAFailure) {
  char text[] = "<a></a>";
  int length = 7;
  EXPECT_EQ(removeElements(nullptr, &length, "a", "a"), -1);
  EXPECT_EQ(removeElements(text, &length, nullptr, "a"), -1);
  EXPECT_EQ(removeElements(text, &length, "a", nullptr), -1);
  EXPECT_STREQ(text, "<a></a>");
}

TEST(RemoveElements, EndTagOfTenCharactersComesOutWhole) {
  // "</trustee>" is exactly the ten characters the end tag may hold.
  const Filtered out = removed("<trustee>x</trustee>y</trusteeZ>", "trustee", "trustee");
  EXPECT_EQ(out.text, "y</trusteeZ>");
}

TEST(RemoveElements, LongerEndTagIsCutToTenCharacters) {
  // "</directory>" is cut to "</director", which also ends at "</directors>".
  const Filtered out = removed("<directory>a</directors>b", "directory", "directory");
  EXPECT_EQ(out.text, "s>b");
}

TEST(RemoveElements, StartTagIsCutToTwentyFourCharacters) {
  // "<" + 23 characters: the closing ">" no longer fits, so a longer name matches too.
  const Filtered out =
      removed("<abcdefghijklmnopqrstuvwXYZ>1</e>2", "abcdefghijklmnopqrstuvw", "e");
  EXPECT_EQ(out.text, "2");
}

TEST(RemoveElements, TextStopsAtTheGivenLength) {
  std::string input = "<user>a</user>\n<user>b</user>\n";
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  int length = 15;  // only the first element
  EXPECT_EQ(removeElements(buffer.data(), &length, "user", "user"), 0);
  EXPECT_STREQ(buffer.data(), "");
  EXPECT_EQ(length, 0);
}

TEST(FilterByPath, KeepsPlainPrefixMatchesAndDropsTheRest) {
  const std::string input = "<trusteeInfo>\n" + file("/test1/a", kArborTrustee) +
                            file("/test2", kArborTrustee) + file("/test10") + "</trusteeInfo>\n";
  const Filtered out = byPath(input, "/test1", "file");
  const std::string expected =
      "<trusteeInfo>\n" + file("/test1/a", kArborTrustee) + file("/test10") + "</trusteeInfo>\n";
  EXPECT_EQ(out.text, expected);
  EXPECT_EQ(out.length, static_cast<int>(expected.size()));
  EXPECT_EQ(out.scratch, "");
}

TEST(FilterByPath, DirectoryPathsAreComparedInBackslashForm) {
  const std::string input = "<dirInfo>\n" + directory("\\test1\\a") + directory("\\test2") +
                            directory("\\test10") + "</dirInfo>\n";
  const Filtered out = byPath(input, "\\test1", "directory");
  EXPECT_EQ(out.text,
            "<dirInfo>\n" + directory("\\test1\\a") + directory("\\test10") + "</dirInfo>\n");
}

TEST(FilterByPath, FilePathValueStartsFifteenCharactersAfterThePathTag) {
  // Nine characters of any kind stand where the CDATA opener would be.
  const std::string input =
      "<file><path>123456789/keep</path></file>\n<file><path>/keep/but-offset</path></file>\n";
  const Filtered out = byPath(input, "/keep", "file");
  EXPECT_EQ(out.text, "<file><path>123456789/keep</path></file>\n");
}

TEST(FilterByPath, DirectoryPathValueStartsSixCharactersAfterThePathTag) {
  const Filtered out =
      byPath("<directory><path>\\a</path></directory><directory><path>x\\a</path></directory>",
             "\\a", "directory");
  EXPECT_EQ(out.text, "<directory><path>\\a</path></directory>");
}

TEST(FilterByPath, ValueShorterThanThePathIsDropped) {
  // The value is taken as (distance between the tags - 6) characters: "/te" here.
  const Filtered out = byPath("<directory><path>/te</path>st1</directory>", "/test1", "directory");
  EXPECT_EQ(out.text, "");
}

TEST(FilterByPath, ElementWithoutPathIsJudgedByTheNextElementsPath) {
  const std::string input = "<file>\n<zid>1</zid></file>\n" + file("/test2") +
                            "<file>\n<zid>3</zid></file>\n" + file("/test1");
  const Filtered out = byPath(input, "/test1", "file");
  EXPECT_EQ(out.text, "<file>\n<zid>3</zid></file>\n" + file("/test1"));
}

TEST(FilterByPath, ElementWithoutAnyPathAfterItStays) {
  const std::string input = file("/test2") + "<file>\n<zid>1</zid></file>\n";
  const Filtered out = byPath(input, "/test1", "file");
  EXPECT_EQ(out.text, "<file>\n<zid>1</zid></file>\n");
}

TEST(FilterByPath, ElementWithoutEndTagLeavesTheRestUnfiltered) {
  const std::string tail = "<file>\n<path><![CDATA[/test2]]></path>\n" + file("/test3");
  const std::string input = file("/test2") + file("/test1") + tail;
  const Filtered out = byPath(input, "/test1", "file");
  // "</file>" of the next element closes the open one, which goes with it for its own path.
  EXPECT_EQ(out.text, file("/test1"));

  const std::string open = "<file>\n<path><![CDATA[/test2]]></path>\n";
  const Filtered rest = byPath(file("/test2") + open, "/test1", "file");
  EXPECT_EQ(rest.text, open);
  EXPECT_EQ(rest.scratch, open);
  EXPECT_EQ(rest.length, 0);
}

TEST(FilterByPath, NothingHappensWithoutAnArgumentOrText) {
  std::string input = file("/test2");
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  char scratch[4] = "abc";
  int length = static_cast<int>(input.size());
  filterByPath(buffer.data(), &length, nullptr, scratch, "file");
  filterByPath(buffer.data(), &length, "/x", nullptr, "file");
  filterByPath(buffer.data(), &length, "/x", scratch, nullptr);
  int zero = 0;
  filterByPath(buffer.data(), &zero, "/x", scratch, "file");
  EXPECT_EQ(std::string(buffer.data()), input);
  EXPECT_STREQ(scratch, "abc");
}

TEST(FilterByPath, TagsAreCutToElevenAndTwelveCharacters) {
  // "<directoryX>" loses its ">" (so "<directoryXY>" matches it) and "</directoryX>" its ">"
  // (which stays behind when the element goes).
  const Filtered out = byPath(
      "<directoryXY><path>/b</path></directoryX>\n<directoryXZ><path>/a</path></directoryX>\n",
      "/a", "directoryX");
  EXPECT_EQ(out.text, ">\n<directoryXZ><path>/a</path></directoryX>\n");
}

// ---- one pass against element by element ----

struct Oracled {
  std::string text;
  int length;
  int status;
  std::string scratch;
  std::string err;
};

Oracled runBoth(StderrSink &sink, bool fast, const std::string &input, int kind, const char *a,
                const char *b) {
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  std::vector<char> scratch(input.size() + 2, '\0');
  int length = static_cast<int>(input.size());
  int status = 0;
  if (kind == 0)
    status = fast ? removeElements(buffer.data(), &length, a, b)
                  : oracle::removeElements(buffer.data(), &length, a, b);
  else if (fast)
    filterByPath(buffer.data(), &length, a, scratch.data(), b);
  else
    oracle::filterByPath(buffer.data(), &length, a, scratch.data(), b);
  return {buffer.data(), length, status, scratch.data(), sink.take()};
}

void expectSame(StderrSink &sink, const std::string &input, int kind, const char *a,
                const char *b) {
  const Oracled fast = runBoth(sink, true, input, kind, a, b);
  const Oracled slow = runBoth(sink, false, input, kind, a, b);
  ASSERT_EQ(fast.text, slow.text) << "input: " << input << " args: " << a << " / " << b;
  ASSERT_EQ(fast.length, slow.length) << "input: " << input;
  ASSERT_EQ(fast.status, slow.status) << "input: " << input;
  ASSERT_EQ(fast.scratch, slow.scratch) << "input: " << input;
  ASSERT_EQ(fast.err, slow.err) << "input: " << input;
}

void expectSameForAllFilters(const std::string &input) {
  // Removals (0): start and end names; path filters (1): path and element name.
  static const struct {
    int kind;
    const char *a;
    const char *b;
  } kFilters[] = {{0, "trustee type=\"adID\"", "trustee"},
                  {0, "trustee", "trustee"},
                  {0, "user type=\"adID\"", "user"},
                  {0, "user", "user"},
                  {0, "directory", "directory"},
                  {0, "abcdefghijklmnopqrstuvwxyz", "path"},
                  {1, "/test1", "file"},
                  {1, "/", "file"},
                  {1, "", "file"},
                  {1, "\\test1", "directory"},
                  {1, "/test1", "trustee"},
                  {1, "/test1", "directoryXY"}};
  StderrSink sink;
  for (const auto &filter : kFilters)
    expectSame(sink, input, filter.kind, filter.a, filter.b);
}

TEST(InfoFiltersDifferential, GeneratedTextsGiveTheSameBytesAsElementByElement) {
  std::mt19937 random(20240521);
  for (int round = 0; round < 3000; ++round) {
    const std::string input = generate(random, static_cast<int>(random() % 40));
    expectSameForAllFilters(input);
    if (HasFatalFailure()) return;
  }
}

TEST(InfoFiltersDifferential, MutatedInfoFilesGiveTheSameBytesAsElementByElement) {
  std::mt19937 random(77);
  for (int round = 0; round < 3000; ++round) {
    const std::string input = mutate(random, wellFormed(random));
    expectSameForAllFilters(input);
    if (HasFatalFailure()) return;
  }
}

TEST(InfoFiltersDifferential, LongGeneratedTextsGiveTheSameBytesAsElementByElement) {
  // Long enough for many vector steps, with tags cut across every vector boundary in turn.
  std::mt19937 random(31);
  for (int round = 0; round < 300; ++round) {
    const std::string input = generate(random, 100 + static_cast<int>(random() % 300));
    expectSameForAllFilters(input);
    if (HasFatalFailure()) return;
  }
}

TEST(InfoFiltersDifferential, LongWellFormedFilesGiveTheSameBytesAsElementByElement) {
  std::mt19937 random(99);
  for (int round = 0; round < 200; ++round) {
    std::string input;
    for (int part = 0; part < 6; ++part)
      input += mutate(random, wellFormed(random));
    expectSameForAllFilters(input);
    if (HasFatalFailure()) return;
  }
}

TEST(InfoFiltersDifferential, TrickyTextsGiveTheSameBytesAsElementByElement) {
  const char *const inputs[] = {
      "",
      "<file>",
      "<file></file>",
      "<file></path><path></file>",
      "<file><path></path></file>\n\n",
      "<file><path>12345678</path></file>",
      "<file><path>123456789</path></file>",
      "<file><path>123456789/test1</path>",
      "<file></file><path><![CDATA[/test1]]></path>",
      "<file><path><![CDATA[/test2]]></path></file><file></file><file><path><![CDATA[/test1]]></"
      "path></file>",
      "<trustee type=\"adID\"></trustee></trustee>\n<trustee type=\"adID\">",
      "<trustee><trustee></trustee></trustee>\n",
      "<file><file><path><![CDATA[/test2]]></path></file></file>\n",
      "<directory><path>\\test1</path></directory>\n<directory><path>\\test2</path>",
  };
  for (const char *input : inputs)
    expectSameForAllFilters(input);
}

}  // namespace
