#include "save/read_helper.h"

#include <sys/mman.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

struct Mapping {
  explicit Mapping(std::size_t size)
      : size(size), data(static_cast<char *>(mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                                  MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {}
  ~Mapping() {
    if (data != MAP_FAILED) munmap(data, size);
  }
  std::size_t size;
  char *data;
};

// A large reply: the wrapper's opening tags, many lines, the closing tag near the end.
std::string reply(std::size_t size) {
  std::string text = "<quillReply>\n<result value=\"0\"><description>ok</description></result>\n";
  while (text.size() + 64 < size)
    text += "<file><path>/d" + std::to_string(text.size()) + "</path></file>\n";
  return text + "</quillReply>\n";
}

struct Found {
  WrapperTags tags;
  std::size_t nul;
};

// The reference: each piece searched as it arrives, on this thread.
Found searchedInPieces(const std::string &text, std::size_t piece) {
  WrapperTagFinder finder;
  std::size_t nul = WrapperTags::kNotFound;
  for (std::size_t at = 0; at < text.size() && nul == WrapperTags::kNotFound; at += piece) {
    const std::size_t end = at + piece < text.size() ? at + piece : text.size();
    nul = finder.scan(text.data(), at, end);
  }
  const std::size_t length = nul == WrapperTags::kNotFound ? text.size() : nul;
  return {finder.found(length), nul};
}

// Fills the buffer piece by piece as a read would, with the helper; `stopAt` stops the thread
// once that much is filled.
Found filledWithHelper(Mapping &buffer, const std::string &text, std::size_t piece, bool threaded,
                       std::size_t stopAt = static_cast<std::size_t>(-1)) {
  WrapperTagFinder finder;
  ReadHelper helper(finder);
  if (threaded) {
    helper.start(buffer.data, buffer.size, false);
    EXPECT_TRUE(helper.running());
  }
  for (std::size_t at = 0; at < text.size(); at += piece) {
    const std::size_t end = at + piece < text.size() ? at + piece : text.size();
    std::memcpy(buffer.data + at, text.data() + at, end - at);
    helper.filledTo(buffer.data, end);
    if (end >= stopAt) helper.stop();
  }
  helper.finish(buffer.data);
  EXPECT_FALSE(helper.running());
  const std::size_t nul = helper.firstNul();
  const std::size_t length = nul == WrapperTags::kNotFound ? text.size() : nul;
  return {finder.found(length), nul};
}

void expectSameFound(const Found &a, const Found &b) {
  EXPECT_EQ(a.nul, b.nul);
  EXPECT_EQ(a.tags.open, b.tags.open);
  EXPECT_EQ(a.tags.close, b.tags.close);
  EXPECT_EQ(a.tags.result, b.tags.result);
}

TEST(ReadHelper, ThreadSearchesWhatIsReadAndFindsTheWrapperTags) {
  const std::string text = reply(24 << 20);
  Mapping buffer(32 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  const Found expected = searchedInPieces(text, 1 << 20);
  EXPECT_EQ(expected.tags.open, 0u);
  EXPECT_EQ(expected.tags.close, text.size() - 14);
  expectSameFound(filledWithHelper(buffer, text, 1 << 20, true), expected);
}

TEST(ReadHelper, ThreadStopsSearchingAtTheFirstNul) {
  std::string text = reply(12 << 20);
  text[5'000'001] = '\0';
  text[9'000'000] = '\0';
  Mapping buffer(16 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  const Found expected = searchedInPieces(text, 65536);
  EXPECT_EQ(expected.nul, 5'000'001u);
  EXPECT_EQ(expected.tags.close, WrapperTags::kNotFound);
  expectSameFound(filledWithHelper(buffer, text, 65536, true), expected);
}

TEST(ReadHelper, AfterAStopTheReadingThreadSearchesTheRest) {
  const std::string text = reply(12 << 20);
  Mapping buffer(16 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  expectSameFound(filledWithHelper(buffer, text, 1 << 20, true, 5 << 20),
                  searchedInPieces(text, 1 << 20));
}

TEST(ReadHelper, WithoutTheThreadEachPieceIsSearchedAsItArrives) {
  const std::string text = reply(3 << 20) + std::string(1, '\0') + "<quillReply>";
  Mapping buffer(4 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  const Found found = filledWithHelper(buffer, text, 100'000, false);
  expectSameFound(found, searchedInPieces(text, 100'000));
  EXPECT_EQ(found.nul, text.size() - 13);
}

TEST(ReadHelper, PagesMadeReadyAheadReadAsZeroesAndKeepWhatIsWritten) {
  Mapping buffer(48 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  WrapperTagFinder finder;
  ReadHelper helper(finder);
  helper.start(buffer.data, buffer.size, false);
  // Filled from the start while the other thread works through the same pages.
  for (std::size_t at = 0; at < (24u << 20); at += 4096) {
    std::memset(buffer.data + at, 'a' + static_cast<int>(at / 4096 % 26), 4096);
    helper.filledTo(buffer.data, at + 4096);
  }
  helper.finish(buffer.data);
  for (std::size_t at = 0; at < (24u << 20); at += 4096)
    ASSERT_EQ(buffer.data[at + 4095], static_cast<char>('a' + at / 4096 % 26)) << at;
  for (std::size_t at = 24u << 20; at < buffer.size; at += 4096)
    ASSERT_EQ(buffer.data[at], '\0') << at;
}

TEST(ReadHelper, StartOnlyWhenAProcessorIsIdleFindsTheSameTags) {
  // Whether the thread starts depends on the machine's load; what is found is the same.
  const std::string text = reply(4 << 20);
  Mapping buffer(8 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  WrapperTagFinder finder;
  ReadHelper helper(finder);
  helper.start(buffer.data, buffer.size);
  std::memcpy(buffer.data, text.data(), text.size());
  helper.filledTo(buffer.data, text.size());
  helper.finish(buffer.data);
  EXPECT_EQ(helper.firstNul(), WrapperTags::kNotFound);
  EXPECT_EQ(finder.found(text.size()).close, text.size() - 14);
}

TEST(ReadHelper, StopWithoutStartAndTwiceIsHarmless) {
  WrapperTagFinder finder;
  ReadHelper idle(finder);
  idle.stop();
  Mapping buffer(1 << 20);
  ASSERT_NE(buffer.data, MAP_FAILED);
  ReadHelper helper(finder);
  helper.start(buffer.data, buffer.size, false);
  helper.stop();
  helper.stop();
  helper.finish(buffer.data);
  EXPECT_EQ(helper.firstNul(), WrapperTags::kNotFound);
}

}  // namespace
