#include "restore/request_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "channel/admin_channel.h"

namespace {

class RequestTextTest : public testing::Test {
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

std::string viaRequestText(const std::string &a, const std::string &b, const std::string &c,
                           const std::string &d, const std::string &e) {
  std::memset(requestBuffer, 'z', sizeof requestBuffer);
  RequestText request;
  request << a.c_str() << b.c_str() << c.c_str() << d.c_str() << e.c_str();
  EXPECT_EQ(request.length(), std::strlen(requestBuffer));
  return std::string(requestBuffer, std::strlen(requestBuffer) + 1);
}

TEST_F(RequestTextTest, StartsEmpty) {
  std::memset(requestBuffer, 'z', sizeof requestBuffer);
  RequestText request;
  EXPECT_EQ(request.length(), 0u);
  EXPECT_STREQ(requestBuffer, "");
}

TEST_F(RequestTextTest, PiecesFollowOneAnother) {
  RequestText request;
  request << kFileRequestOpen << "<trustees><addTrustee><name>"
          << "bob.corp.TREE."
          << "</name>" << kFileRequestClose;
  EXPECT_STREQ(requestBuffer,
               "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest><trustees>"
               "<addTrustee><name>bob.corp.TREE.</name></fileRequest>");
  EXPECT_EQ(request.length(), std::strlen(requestBuffer));
}

TEST_F(RequestTextTest, AppendTakesTheGivenBytes) {
  RequestText request;
  request.append("abcdef", 3);
  request << ""
          << "xy";
  EXPECT_STREQ(requestBuffer, "abcxy");
  EXPECT_EQ(request.length(), 5u);
}

TEST_F(RequestTextTest, LongPieceIsCutAtTheBufferAsSnprintfCutsIt) {
  const std::string big(kRequestBufferSize + 100, 'p');
  RequestText request;
  request << "<a>" << big.c_str() << "</a>";
  EXPECT_EQ(request.length(), kRequestBufferSize - 1);
  EXPECT_EQ(std::strlen(requestBuffer), kRequestBufferSize - 1);
  EXPECT_EQ(viaRequestText("<a>", big, "</a>", "", ""), viaSnprintf("<a>", big, "</a>", "", ""));
}

TEST_F(RequestTextTest, ExactlyFullBufferKeepsEveryByte) {
  const std::string fill(kRequestBufferSize - 1 - 4, 'f');
  EXPECT_EQ(viaRequestText("<x>", fill, "y", "", ""), viaSnprintf("<x>", fill, "y", "", ""));
  RequestText request;
  request << "<x>" << fill.c_str() << "y"
          << "lost";
  EXPECT_EQ(request.length(), kRequestBufferSize - 1);
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 2], 'y');
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 1], '\0');
}

TEST_F(RequestTextTest, SameBytesAsSnprintfForManyValues) {
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
    ASSERT_EQ(viaRequestText(a, b, c, d, e), viaSnprintf(a, b, c, d, e)) << "case " << i;
  }
}

// buildRequest and RequestText give the same bytes and length, whether the whole fits or not.
TEST_F(RequestTextTest, BuildRequestGivesTheBytesOfRequestText) {
  std::mt19937 random(11);
  for (int i = 0; i < 300; ++i) {
    std::string texts[3];
    for (std::string &text : texts) {
      const std::size_t length =
          random() % 4 == 0 ? kRequestBufferSize / 3 + random() % 300 : random() % 200;
      text.assign(length, 'a');
      for (char &c : text)
        c = static_cast<char>(1 + random() % 255);
    }
    reflectOnGemel = static_cast<int>(random() % 2);
    RequestText expected;
    expected << kFileRequestOpen << "<a>" << texts[0] << "</a><b>" << texts[1] << gemelPiece()
             << texts[2] << kFileRequestClose;
    const std::string expectedBytes(requestBuffer, expected.length() + 1);
    std::memset(requestBuffer, 'z', sizeof requestBuffer);
    const std::size_t length = buildRequest(kFileRequestOpen, "<a>", std::string_view(texts[0]),
                                            "</a><b>", std::string_view(texts[1]), gemelPiece(),
                                            std::string_view(texts[2]), kFileRequestClose);
    ASSERT_EQ(length, expected.length()) << "case " << i;
    ASSERT_EQ(std::string(requestBuffer, length + 1), expectedBytes) << "case " << i;
  }
}

TEST_F(RequestTextTest, BuildRequestOfExactlyTheBufferIsCutAsRequestTextCutsIt) {
  // kRequestBufferSize bytes in all: one more than fits.
  const std::string fill(kRequestBufferSize - 3, 'f');
  EXPECT_EQ(buildRequest("<x>", std::string_view(fill)), kRequestBufferSize - 1);
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 2], 'f');
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 1], '\0');
  // One less: every byte kept.
  const std::string less(kRequestBufferSize - 4, 'g');
  EXPECT_EQ(buildRequest("<x>", std::string_view(less)), kRequestBufferSize - 1);
  EXPECT_EQ(requestBuffer[kRequestBufferSize - 2], 'g');
}

TEST_F(RequestTextTest, GemelPieceFollowsReflectOnGemel) {
  reflectOnGemel = 1;
  EXPECT_EQ(gemelPiece(), "<gemelPath/>");
  reflectOnGemel = 0;
  EXPECT_EQ(gemelPiece(), "");
}

}  // namespace
