#include "save/combined_filters.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "save/element_feed.h"
#include "save/info_filters_oracle.h"
#include "save/info_text_samples.h"
#include "save/tag_search.h"

namespace {

using namespace infosamples;

constexpr const char *kAdStart = "trustee type=\"adID\"";

// Room for the unfiltered rest, filled with marks that show what the filter wrote.
std::vector<char> scratchSpace(const std::string &input) {
  std::vector<char> scratch(input.size() + 3, 'x');
  scratch.back() = '\0';
  return scratch;
}

struct Result {
  std::string text;  // the text left in place, through its terminator
  int length = 0;
  int status = 0;
  std::string scratch;
  std::string err;
  std::size_t sizeLeft = 0;
  bool inTurn = false;
};

Result together(StderrSink &sink, const std::string &input, const char *startName,
                const char *endName, const char *path, const char *elementName) {
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  std::vector<char> scratch = scratchSpace(input);
  Result result;
  result.length = static_cast<int>(input.size());
  result.status =
      removeAndFilterByPath(buffer.data(), &result.length, startName, endName, path, scratch.data(),
                            elementName, &result.sizeLeft, &result.inTurn);
  result.text = buffer.data();
  result.scratch = scratch.data();
  result.err = sink.take();
  return result;
}

// The removal element by element, then, when it succeeds, the path filter element by element.
Result inTurn(StderrSink &sink, const std::string &input, const char *startName,
              const char *endName, const char *path, const char *elementName) {
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  std::vector<char> scratch = scratchSpace(input);
  Result result;
  result.length = static_cast<int>(input.size());
  result.status = oracle::removeElements(buffer.data(), &result.length, startName, endName);
  if (result.status == 0)
    oracle::filterByPath(buffer.data(), &result.length, path, scratch.data(), elementName);
  result.text = buffer.data();
  result.scratch = scratch.data();
  result.err = sink.take();
  result.sizeLeft = result.text.size();
  return result;
}

// Same status and messages; after a success, the same text, length and scratch.
void expectSame(StderrSink &sink, const std::string &input, const char *startName,
                const char *endName, const char *path, const char *elementName) {
  const Result fast = together(sink, input, startName, endName, path, elementName);
  const Result slow = inTurn(sink, input, startName, endName, path, elementName);
  ASSERT_EQ(fast.status, slow.status) << "input: " << input;
  ASSERT_EQ(fast.err, slow.err) << "input: " << input;
  if (slow.status != 0) return;
  ASSERT_EQ(fast.text, slow.text) << "input: " << input << " path: " << path;
  ASSERT_EQ(fast.sizeLeft, slow.sizeLeft) << "input: " << input;
  ASSERT_EQ(fast.length, slow.length)
      << "input: " << input << " args: " << startName << " / " << path << " / " << elementName;
  ASSERT_EQ(fast.scratch, slow.scratch) << "input: " << input;
}

// With `threaded`, the elements are found ahead on a second thread with the 32-byte loop.
void expectSameForAll(StderrSink &sink, const std::string &input, bool threaded = false) {
  for (const int width : {64, 32, 16}) {
    setTagSearchWidth(width);
    if (threaded && width == 32)
      setElementFeed(0, false);
    else
      resetElementFeed();
    for (const char *path : {"/test1", "/", "", "/test1/a/b"}) {
      expectSame(sink, input, kAdStart, "trustee", path, "file");
      expectSame(sink, input, "trustee", "trustee", path, "file");
    }
    expectSame(sink, input, "user", "user", "/test1", "file");
    expectSame(sink, input, "directory", "directory", "\\test1", "directory");
    expectSame(sink, input, kAdStart, "trustee", "\\test1", "directory");
    expectSame(sink, input, "file", "file", "/test1", "file");
    expectSame(sink, input, "path", "path", "/test1", "file");
    expectSame(sink, input, kAdStart, "trustee", "/test1", "trustee");
  }
  resetTagSearch();
  resetElementFeed();
}

class CombinedFilters : public testing::Test {
protected:
  void SetUp() override {
    resetTagSearch();
    resetElementFeed();
  }
  void TearDown() override {
    resetTagSearch();
    resetElementFeed();
  }

  Result run(const std::string &input, const char *path, const char *startName = kAdStart,
             const char *endName = "trustee", const char *elementName = "file") {
    // Each case also agrees with the two filters run in turn, element by element.
    expectSame(sink_, input, startName, endName, path, elementName);
    return together(sink_, input, startName, endName, path, elementName);
  }

  StderrSink sink_;
};

TEST_F(CombinedFilters, WellFormedSectionIsFilteredInOnePass) {
  const std::string input = "<trusteeInfo>\n" + file("/test1/a", kArborTrustee + kAdTrustee) +
                            file("/test2", kAdTrustee) +
                            file("/test10", kAdTrustee + kArborTrustee) + "</trusteeInfo>\n";
  const Result r = run(input, "/test1");
  const std::string expected = "<trusteeInfo>\n" + file("/test1/a", kArborTrustee) +
                               file("/test10", kArborTrustee) + "</trusteeInfo>\n";
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.text, expected);
  EXPECT_EQ(r.sizeLeft, expected.size());
  EXPECT_EQ(r.length, static_cast<int>(expected.size()));
  EXPECT_EQ(r.scratch, "");
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, AdOnlyRemovalDropsUntypedTrusteesOfTheKeptFiles) {
  const std::string input =
      file("/test1", kArborTrustee + kAdTrustee + kArborTrustee) + file("/test2", kArborTrustee);
  const Result r = run(input, "/test1", "trustee", "trustee");
  EXPECT_EQ(r.text, file("/test1", kAdTrustee));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementBetweenFilesGoesOnItsOwn) {
  const std::string input = file("/test1") + kAdTrustee + file("/test1/b") + kAdTrustee;
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, file("/test1") + file("/test1/b"));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementsInsideADroppedFileGoWithIt) {
  const std::string input = file("/test2", kAdTrustee + kAdTrustee) + file("/test1", kAdTrustee);
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, file("/test1"));
  EXPECT_EQ(r.length, static_cast<int>(file("/test1").size()));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementAtTheVeryStartJoinsNothing) {
  const std::string input = kAdTrustee + file("/test1") + file("/test2");
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, file("/test1"));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementNotAfterALineFeedHandsOver) {
  const std::string input = "<file><zid>1</zid><path><![CDATA[/test1]]></path>" + kAdTrustee +
                            "</file>\n" + file("/test2", kAdTrustee);
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, "<file><zid>1</zid><path><![CDATA[/test1]]></path></file>\n");
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementHoldingAPathHandsOver) {
  // Read as it stands, the file's first path is /test2; once the AD trustee is gone it is /test1.
  const std::string input =
      "<file>\n<trustee type=\"adID\"><path><![CDATA[/test2]]></path></trustee>\n"
      "<path><![CDATA[/test1]]></path>\n</file>\n";
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, "<file>\n<path><![CDATA[/test1]]></path>\n</file>\n");
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementAcrossAFileEndHandsOver) {
  // The AD trustee has no end tag of its own: its removal runs into the next file's trustee.
  const std::string input = file("/test1", "<trustee type=\"adID\"><name>x</name>\n") +
                            file("/test2", kArborTrustee) + file("/test1/c", kAdTrustee);
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text,
            "<file>\n<zid>1</zid><path><![CDATA[/test1]]></path>\n</file>\n" + file("/test1/c"));
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, GapThatWouldJoinIntoAFileTagHandsOver) {
  // Without the AD trustee, "<fi" and "le>" make a file start tag.
  const std::string input =
      "<fi<trustee type=\"adID\"></trustee>le><path><![CDATA[/test2]]></path></file>\n" +
      file("/test1");
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, file("/test1"));
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, FileWithoutAPathOfItsOwnHandsOver) {
  // It is judged by the next file's path, which lies outside it.
  const std::string input =
      "<file>\n" + kAdTrustee + "</file>\n" + file("/test2") + file("/test1", kAdTrustee);
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, file("/test1"));
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, FileWithoutEndTagLeavesTheRestWithoutTheRemovedElements) {
  const std::string rest = "<file>\n<zid>1</zid><path><![CDATA[/test2]]></path>\n" + kAdTrustee +
                           kArborTrustee + kAdTrustee;
  const Result r = run(file("/test2", kAdTrustee) + file("/test1") + rest, "/test1");
  const std::string restLeft =
      "<file>\n<zid>1</zid><path><![CDATA[/test2]]></path>\n" + kArborTrustee;
  EXPECT_EQ(r.text, file("/test1") + restLeft);
  EXPECT_EQ(r.scratch, restLeft);
  EXPECT_EQ(r.sizeLeft, file("/test1").size() + restLeft.size());
  EXPECT_EQ(r.length, static_cast<int>(file("/test1").size()));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementAcrossTheStartOfAFileWithoutEndTagHandsOver) {
  const std::string input =
      "<trustee type=\"adID\">\n<file>\n</trustee>\n<file>\n<path><![CDATA[/test2]]></path>\n";
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.text, "<file>\n<path><![CDATA[/test2]]></path>\n");
  EXPECT_EQ(r.scratch, "<file>\n<path><![CDATA[/test2]]></path>\n");
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, RemovedElementAfterTheLastFileGoes) {
  const Result r = run(file("/test1") + "</trusteeInfo>\n" + kAdTrustee, "/test1");
  EXPECT_EQ(r.text, file("/test1") + "</trusteeInfo>\n");
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, MissingEndTagInsideAFileFails) {
  const Result r = run(file("/test1", "<trustee type=\"adID\"><name>x</name>\n"), "/test1");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
}

TEST_F(CombinedFilters, MissingEndTagAfterTheLastFileFails) {
  const Result r = run(file("/test1", kAdTrustee) + "<trustee type=\"adID\">\n", "/test1");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
}

TEST_F(CombinedFilters, MissingEndTagInTheRestFails) {
  const Result r =
      run(file("/test1") + "<file>\n<path>x</path>\n<trustee type=\"adID\">\n", "/test1");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
}

TEST_F(CombinedFilters, MissingEndTagAfterHandingOverFails) {
  const std::string input =
      "<file>\n" + kAdTrustee + "</file>\n" + file("/test1") + "<trustee type=\"adID\">\n";
  const Result r = run(input, "/test1");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
  EXPECT_TRUE(r.inTurn);
}

TEST_F(CombinedFilters, DirectoryElementsWithARemoval) {
  const std::string input =
      directory("\\test1\\a") + "<user>\n</user>\n" + directory("\\test2") + directory("\\test10");
  const Result r = run(input, "\\test1", "user", "user", "directory");
  EXPECT_EQ(r.text, directory("\\test1\\a") + directory("\\test10"));
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, EmptyTextAndMissingArgumentsAreLeftToTheTwoInTurn) {
  EXPECT_TRUE(run("", "/test1").inTurn);
  const std::string input = file("/test2", kAdTrustee);
  std::vector<char> buffer(input.begin(), input.end());
  buffer.push_back('\0');
  std::vector<char> scratch(input.size() + 2);
  int length = static_cast<int>(input.size());
  std::size_t left = 0;
  bool handedOver = false;
  // Without a path, only the removal.
  EXPECT_EQ(removeAndFilterByPath(buffer.data(), &length, kAdStart, "trustee", nullptr,
                                  scratch.data(), "file", &left, &handedOver),
            0);
  EXPECT_STREQ(buffer.data(), file("/test2").c_str());
  EXPECT_EQ(left, file("/test2").size());
  EXPECT_TRUE(handedOver);
  // Without the removal's names, the removal's failure.
  EXPECT_EQ(removeAndFilterByPath(buffer.data(), &length, nullptr, "trustee", "/test1",
                                  scratch.data(), "file", &left),
            -1);
  EXPECT_STREQ(buffer.data(), file("/test2").c_str());
}

TEST_F(CombinedFilters, StartTagBeginningInsideADroppedEndTagIsFoundByTheSearches) {
  // With "x><x" as the element, "<x><x>" can start inside "</x><x>": the element found ahead
  // after a dropped one may start before where the dropped one ends.
  std::string input;
  for (int i = 0; i < 6; ++i)
    input += "<x><x><path>/b" + std::to_string(i) + "</path></x><x><x><path>/a</path></x><x>\n";
  input += std::string(200, ' ');
  const Result r = run(input, "/a", kAdStart, "trustee", "x><x");
  EXPECT_EQ(r.status, 0);
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, LargeWellFormedSectionNeverHandsOver) {
  std::string input = "<trusteeInfo>\n";
  std::string expected = input;
  for (int i = 0; input.size() < 400'000; ++i) {
    const std::string path = (i % 5 == 0 ? "/test1/" : "/test2/") + std::to_string(i);
    input += file(path, i % 3 == 0 ? kArborTrustee + kAdTrustee : kAdTrustee + kArborTrustee);
    if (i % 5 == 0) expected += file(path, kArborTrustee);
  }
  input += "</trusteeInfo>\n";
  expected += "</trusteeInfo>\n";
  for (const int width : {64, 32, 16}) {
    setTagSearchWidth(width);
    const Result r = together(sink_, input, kAdStart, "trustee", "/test1", "file");
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.text == expected) << "width " << width;
    EXPECT_EQ(r.sizeLeft, expected.size());
    EXPECT_FALSE(r.inTurn);
  }
}

// A large section whose elements are found ahead on a second thread, with something in the
// middle that hands the rest over to the two filters in turn while the thread is still ahead.
std::string largeSection(std::string *expected, bool oddOneInTheMiddle) {
  std::string input = "<trusteeInfo>\n";
  *expected = input;
  for (int i = 0; input.size() < 600'000; ++i) {
    const std::string path = (i % 5 == 0 ? "/test1/" : "/test2/") + std::to_string(i);
    if (oddOneInTheMiddle && i == 1000) {
      // The AD trustee holds the file's first path.
      input += "<file>\n<trustee type=\"adID\"><path><![CDATA[/test2]]></path></trustee>\n"
               "<path><![CDATA[/test1/odd]]></path>\n</file>\n";
      *expected += "<file>\n<path><![CDATA[/test1/odd]]></path>\n</file>\n";
    }
    input += file(path, i % 3 == 0 ? kArborTrustee + kAdTrustee : kAdTrustee + kArborTrustee);
    if (i % 5 == 0) *expected += file(path, kArborTrustee);
  }
  input += "</trusteeInfo>\n";
  *expected += "</trusteeInfo>\n";
  return input;
}

TEST_F(CombinedFilters, ElementsFoundAheadOnASecondThreadGiveTheSameBytes) {
  setElementFeed(0, false);
  std::string expected;
  const std::string input = largeSection(&expected, false);
  const Result r = together(sink_, input, kAdStart, "trustee", "/test1", "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_TRUE(r.text == expected);
  EXPECT_EQ(r.sizeLeft, expected.size());
  EXPECT_FALSE(r.inTurn);
}

TEST_F(CombinedFilters, HandingOverWhileTheSecondThreadIsAheadGivesTheSameBytes) {
  setElementFeed(0, false);
  std::string expected;
  const std::string input = largeSection(&expected, true);
  const Result r = together(sink_, input, kAdStart, "trustee", "/test1", "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_TRUE(r.text == expected);
  EXPECT_TRUE(r.inTurn);
  expectSame(sink_, input, kAdStart, "trustee", "/test1", "file");
}

TEST_F(CombinedFilters, MissingEndTagWhileTheSecondThreadIsAheadFails) {
  setElementFeed(0, false);
  std::string expected;
  std::string input = largeSection(&expected, false);
  input.insert(input.size() / 2, "<trustee type=\"adID\">\n");
  input.resize(input.rfind("</trustee>"));
  input.resize(input.rfind("</trustee>"));
  const Result r = together(sink_, input, kAdStart, "trustee", "/test1", "file");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
}

TEST(CombinedFiltersDifferential, GeneratedTextsGiveTheSameBytesAsTheTwoInTurn) {
  StderrSink sink;
  std::mt19937 random(4242);
  for (int round = 0; round < 2000; ++round) {
    expectSameForAll(sink, generate(random, static_cast<int>(random() % 40)));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(CombinedFiltersDifferential, MutatedInfoFilesGiveTheSameBytesAsTheTwoInTurn) {
  StderrSink sink;
  std::mt19937 random(1234);
  for (int round = 0; round < 2000; ++round) {
    expectSameForAll(sink, mutate(random, wellFormed(random)));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(CombinedFiltersDifferential, LongTextsGiveTheSameBytesAsTheTwoInTurn) {
  // Long enough for many vector steps, with tags cut across every vector boundary in turn.
  StderrSink sink;
  std::mt19937 random(8);
  for (int round = 0; round < 200; ++round) {
    std::string input;
    for (int part = 0; part < 6; ++part)
      input += mutate(random, wellFormed(random));
    expectSameForAll(sink, input, true);
    expectSameForAll(sink, generate(random, 100 + static_cast<int>(random() % 300)));
    if (testing::Test::HasFatalFailure()) return;
  }
}

}  // namespace
