#include "model/input_window.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

void give(InputWindow &window, const std::string &bytes) {
  std::memcpy(window.reserve(bytes.size()), bytes.data(), bytes.size());
  window.commit(bytes.size());
}

std::string placeOf(InputWindow &window, unsigned long long offset) {
  const Position at = window.position(offset);
  return std::to_string(at.line) + ":" + std::to_string(at.column);
}

TEST(InputWindow, LinesAndColumnsFromOne) {
  InputWindow window;
  give(window, "<a>\n<b/>\n\n<c/>");
  EXPECT_EQ(placeOf(window, 0), "1:1");
  EXPECT_EQ(placeOf(window, 2), "1:3");
  EXPECT_EQ(placeOf(window, 4), "2:1");
  EXPECT_EQ(placeOf(window, 6), "2:3");
  EXPECT_EQ(placeOf(window, 10), "4:1");
  EXPECT_EQ(placeOf(window, 14), "4:5");  // the end
}

TEST(InputWindow, CrLfAndLoneCrEndOneLineEach) {
  InputWindow window;
  give(window, "a\r\nb\rc\n\rd");
  EXPECT_EQ(placeOf(window, 3), "2:1");  // b
  EXPECT_EQ(placeOf(window, 5), "3:1");  // c
  EXPECT_EQ(placeOf(window, 8), "5:1");  // d: LF then CR are two line ends
}

TEST(InputWindow, ColumnsCountCharactersNotBytes) {
  InputWindow window;
  give(window, "\xc3\xa9t\xc3\xa9<x>\n\xe2\x82\xac<y>");
  EXPECT_EQ(placeOf(window, 5), "1:4");   // <x>
  EXPECT_EQ(placeOf(window, 12), "2:2");  // <y>
}

TEST(InputWindow, PlacesAskedOutOfOrderStayAtTheLastOne) {
  InputWindow window;
  give(window, "ab\ncd");
  EXPECT_EQ(placeOf(window, 4), "2:2");
  EXPECT_EQ(placeOf(window, 1), "2:2");
}

TEST(InputWindow, ForgottenBytesKeepTheCountGoing) {
  InputWindow window;
  give(window, "0123456789\n01234");
  EXPECT_EQ(placeOf(window, 13), "2:3");
  window.forgetBefore(13);
  EXPECT_EQ(window.start(), 13u);
  EXPECT_EQ(*window.at(13), '2');
  give(window, "56\n\xc3\xa9x");
  EXPECT_EQ(window.end(), 22u);
  EXPECT_EQ(placeOf(window, 21), "3:2");
}

TEST(InputWindow, BytesAreNotForgottenPastTheLastPlaceAsked) {
  InputWindow window;
  give(window, "abcdef");
  EXPECT_EQ(placeOf(window, 2), "1:3");
  window.forgetBefore(5);
  EXPECT_EQ(window.start(), 2u);
  EXPECT_EQ(placeOf(window, 5), "1:6");
}

TEST(InputWindow, LongStretchesWithAndWithoutSpecialBytes) {
  InputWindow window;
  std::string bytes(1000, 'x');
  bytes[500] = '\n';
  bytes[700] = '\r';
  bytes[701] = '\n';
  bytes[900] = '\xc3';
  bytes[901] = '\xa9';
  give(window, bytes);
  EXPECT_EQ(placeOf(window, 600), "2:100");
  EXPECT_EQ(placeOf(window, 800), "3:99");
  EXPECT_EQ(placeOf(window, 999), "3:297");
}

TEST(InputWindow, ALineGivenInPiecesIsCountedOnce) {
  InputWindow window;
  give(window, "abc");
  EXPECT_EQ(placeOf(window, 1), "1:2");
  give(window, "de\nf");
  EXPECT_EQ(placeOf(window, 4), "1:5");
  EXPECT_EQ(placeOf(window, 6), "2:1");
  give(window, std::string(40, 'g') + "\n\nh");
  EXPECT_EQ(placeOf(window, 46), "2:41");
  EXPECT_EQ(placeOf(window, 49), "4:1");
}

TEST(InputWindow, ManyPlacesOnOneLineThenACr) {
  InputWindow window;
  give(window, "<a><b><c>\n<d>\r<e>\n<f>");
  EXPECT_EQ(placeOf(window, 3), "1:4");
  EXPECT_EQ(placeOf(window, 6), "1:7");
  EXPECT_EQ(placeOf(window, 9), "1:10");  // the LF itself
  EXPECT_EQ(placeOf(window, 10), "2:1");
  EXPECT_EQ(placeOf(window, 13), "2:4");  // the CR itself
  EXPECT_EQ(placeOf(window, 14), "3:1");
  EXPECT_EQ(placeOf(window, 18), "4:1");
}

TEST(InputWindow, SpecialBytesFoundPastSixteenAtATime) {
  InputWindow window;
  std::string bytes(64, 'x');
  bytes[37] = '\xc3';
  bytes[38] = '\xa9';
  give(window, bytes);
  EXPECT_EQ(placeOf(window, 20), "1:21");
  EXPECT_EQ(placeOf(window, 37), "1:38");
  EXPECT_EQ(placeOf(window, 39), "1:39");
  EXPECT_EQ(placeOf(window, 63), "1:63");
}

// A CR or the start of a multi-byte character at each place of a stretch several 64-byte steps
// long, one at a time: the line and column past it are those of a count byte by byte.
TEST(InputWindow, ASpecialByteAtAnyPlaceOfALongStretch) {
  for (const std::string &special : {std::string("\r"), std::string("\xc3\xa9")}) {
    for (std::size_t at = 0; at + special.size() < 199; ++at) {
      std::string bytes(200, 'x');
      bytes.replace(at, special.size(), special);
      InputWindow window;
      give(window, bytes);
      const bool cr = special == "\r";
      const std::size_t after = at + special.size();
      const std::string expected =
          cr ? "2:" + std::to_string(200 - after) : "1:" + std::to_string(200 - after + at + 1);
      EXPECT_EQ(placeOf(window, 199), expected) << "special byte at " << at;
    }
  }
}

}  // namespace
