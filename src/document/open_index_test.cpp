#include "document/open_index.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Every '<' of text from `from` on, as the index gives them one after the other.
std::string opensOf(OpenIndex &index, const std::string &text, std::size_t from = 0) {
  std::string found;
  for (std::size_t at = from;;) {
    const std::size_t open = index.next(text.data(), text.size(), at);
    if (open == OpenIndex::kNone) return found;
    found += std::to_string(open) + " ";
    at = open + 1;
  }
}

std::string expectedOpens(const std::string &text, std::size_t from, std::size_t limit) {
  std::string found;
  for (std::size_t at = from; at < limit; ++at)
    if (text[at] == '<') found += std::to_string(at) + " ";
  return found;
}

TEST(OpenIndex, GivesEveryOpenOfTheWholeBlocksInOrder) {
  std::string text(1000, 'x');
  for (std::size_t at : {0, 5, 63, 64, 65, 127, 128, 500, 959, 960, 999})
    text[at] = '<';
  OpenIndex index;
  // The last 40 bytes do not make a whole block: they are left until more is loaded.
  EXPECT_EQ(opensOf(index, text), expectedOpens(text, 0, 960));
}

TEST(OpenIndex, StartsFromWhereItIsAsked) {
  std::string text(640, 'a');
  for (std::size_t at = 3; at < 640; at += 7)
    text[at] = '<';
  OpenIndex index;
  // Whole blocks from there: 300 + 5 * 64 = 620.
  EXPECT_EQ(opensOf(index, text, 300), expectedOpens(text, 300, 620));
  // Asked again from before the indexed stretch, it still gives the first '<' it knows after.
  OpenIndex fresh;
  EXPECT_EQ(fresh.next(text.data(), text.size(), 0), 3u);
  EXPECT_EQ(fresh.next(text.data(), text.size(), 4), 10u);
}

TEST(OpenIndex, MoreOpensThanItsRoomAreFoundStretchByStretch) {
  const std::string text(20000, '<');
  OpenIndex index;
  EXPECT_EQ(opensOf(index, text), expectedOpens(text, 0, 20000 / 64 * 64));
}

TEST(OpenIndex, PassSkipsTheOpenGivenLast) {
  std::string text(128, ' ');
  text[10] = text[20] = '<';
  OpenIndex index;
  EXPECT_EQ(index.next(text.data(), text.size(), 10), 10u);
  index.pass();
  EXPECT_EQ(index.next(text.data(), text.size(), 10), 20u);
}

TEST(OpenIndex, ForgetsChangedBytes) {
  std::string text(256, ' ');
  text[10] = text[100] = text[200] = '<';
  OpenIndex index;
  EXPECT_EQ(index.next(text.data(), text.size(), 0), 10u);
  // The bytes from 50 on become NULs, as the tag reader's string rule makes them.
  text.replace(50, 206, 206, '\0');
  index.forgetFrom(50);
  EXPECT_EQ(index.next(text.data(), text.size(), 11), OpenIndex::kNone);
}

TEST(OpenIndex, ForgetsEverythingWhenTheBufferMoves) {
  std::string text(256, ' ');
  text[200] = '<';
  OpenIndex index;
  EXPECT_EQ(index.next(text.data(), text.size(), 0), 200u);
  text = std::string(256, ' ');
  text[30] = '<';
  index.forget();
  EXPECT_EQ(index.next(text.data(), text.size(), 0), 30u);
}

}  // namespace
