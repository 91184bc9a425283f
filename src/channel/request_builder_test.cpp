#include "channel/request_builder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "channel/admin_channel.h"

namespace {

class RequestBuilderTest : public testing::Test {
protected:
  void SetUp() override { resetAdminChannel(); }
};

// What snprintf writes for "%s%s%s%s%s" into a buffer of the request buffer's size.
std::string viaSnprintf(const std::string &a, const std::string &b, const std::string &c,
                        const std::string &d, const std::string &e) {
  static char out[kRequestBufferSize];
  std::memset(out, 'z', sizeof out);
  std::snprintf(out, sizeof out, "%s%s%s%s%s", a.c_str(), b.c_str(), c.c_str(), d.c_str(),
                e.c_str());
  return std::string(out, std::strlen(out) + 1);  // with the NUL
}

std::string viaBuilder(const std::string &a, const std::string &b, const std::string &c,
                       const std::string &d, const std::string &e) {
  std::memset(requestBuffer, 'z', sizeof requestBuffer);
  const std::size_t length = buildRequest({a, b, c, d, e});
  EXPECT_EQ(length, std::strlen(requestBuffer));
  return std::string(requestBuffer, std::strlen(requestBuffer) + 1);
}

TEST_F(RequestBuilderTest, NoPiecesGiveAnEmptyRequest) {
  std::memset(requestBuffer, 'z', sizeof requestBuffer);
  EXPECT_EQ(buildRequest({}), 0u);
  EXPECT_STREQ(requestBuffer, "");
}

TEST_F(RequestBuilderTest, PiecesFollowOneAnother) {
  const std::size_t length = buildRequest({kFileRequestOpen, "<trustees><addTrustee><name>",
                                           "bob.corp.TREE.", "</name>", kFileRequestClose});
  EXPECT_STREQ(requestBuffer,
               "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest><trustees>"
               "<addTrustee><name>bob.corp.TREE.</name></fileRequest>");
  EXPECT_EQ(length, std::strlen(requestBuffer));
}

TEST_F(RequestBuilderTest, PieceOfGivenLengthTakesOnlyThoseBytes) {
  EXPECT_EQ(buildRequest({std::string_view("abcdef", 3), "", "xy"}), 5u);
  EXPECT_STREQ(requestBuffer, "abcxy");
}

TEST_F(RequestBuilderTest, LongPieceIsCutAtTheBufferAsSnprintfCutsIt) {
  const std::string big(kRequestBufferSize + 100, 'p');
  EXPECT_EQ(buildRequest({"<a>", big, "</a>"}), kRequestBufferSize - 1);
  EXPECT_EQ(std::strlen(requestBuffer), kRequestBufferSize - 1);
  EXPECT_EQ(viaBuilder("<a>", big, "</a>", "", ""), viaSnprintf("<a>", big, "</a>", "", ""));
}

TEST_F(RequestBuilderTest, ExactlyFullBufferKeepsEveryByte) {
  const std::string fill(kRequestBufferSize - 1 - 4, 'f');
  EXPECT_EQ(viaBuilder("<x>", fill, "y", "", ""), viaSnprintf("<x>", fill, "y", "", ""));
  EXPECT_EQ(buildRequest({"<x>", fill, "y", "lost"}), kRequestBufferSize - 1);
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 2], 'y');
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 1], '\0');
}

TEST_F(RequestBuilderTest, OneByteMoreThanFitsIsCut) {
  const std::string fill(kRequestBufferSize - 3, 'f');  // kRequestBufferSize bytes in all
  EXPECT_EQ(buildRequest({"<x>", fill}), kRequestBufferSize - 1);
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 2], 'f');
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 1], '\0');
}

TEST_F(RequestBuilderTest, SameBytesAsSnprintfForManyValues) {
  std::mt19937 random(7);
  // Lengths around the bound, and small ones; bytes of every kind but NUL.
  auto piece = [&random]() {
    std::size_t length = 0;
    switch (random() % 5) {
    case 0: length = random() % 8; break;
    case 1: length = random() % 300; break;
    case 2: length = kRequestBufferSize - 8 + random() % 16; break;
    case 3: length = (kRequestBufferSize - 1) / 2 - 4 + random() % 8; break;
    default: length = random() % 70000; break;
    }
    std::string text(length, 'a');
    for (char &c : text)
      c = static_cast<char>(1 + random() % 255);
    return text;
  };
  for (int i = 0; i < 400; ++i) {
    const std::string a = piece(), b = piece(), c = piece(), d = piece(), e = piece();
    ASSERT_EQ(viaBuilder(a, b, c, d, e), viaSnprintf(a, b, c, d, e)) << "case " << i;
  }
}

TEST_F(RequestBuilderTest, GemelPieceFollowsReflectOnGemel) {
  reflectOnGemel = 1;
  EXPECT_EQ(gemelPiece(), "<gemelPath/>");
  reflectOnGemel = 0;
  EXPECT_EQ(gemelPiece(), "");
}

}  // namespace
