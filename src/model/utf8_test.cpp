#include "model/utf8.h"

#include <gtest/gtest.h>

namespace {

std::string utf8(char32_t code) {
  std::string out = "x";
  appendUtf8(out, code);
  return out.substr(1);
}

}  // namespace

TEST(Utf8, EachLengthAtItsBounds) {
  EXPECT_EQ(utf8(0x41), "A");
  EXPECT_EQ(utf8(0x7f), "\x7f");
  EXPECT_EQ(utf8(0x80), "\xc2\x80");
  EXPECT_EQ(utf8(0x7ff), "\xdf\xbf");
  EXPECT_EQ(utf8(0x800), "\xe0\xa0\x80");
  EXPECT_EQ(utf8(0xffff), "\xef\xbf\xbf");
  EXPECT_EQ(utf8(0x10000), "\xf0\x90\x80\x80");
  EXPECT_EQ(utf8(0x10ffff), "\xf4\x8f\xbf\xbf");
}

TEST(Utf8, AppendsAfterWhatIsThere) {
  std::string out = "ab";
  appendUtf8(out, 0xe9);
  EXPECT_EQ(out, "ab\xc3\xa9");
}
