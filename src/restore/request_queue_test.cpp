#include "restore/request_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "document/messages.h"

namespace {

// What the send functions below saw, in order, and on which thread.
std::vector<std::string> sent;
std::vector<std::thread::id> sendThreads;

int recordSend(const RequestTexts &texts) {
  std::string line;
  for (const std::string_view text : texts.text) {
    line += std::string(text) + "|";
    // Each text is also a C string.
    EXPECT_EQ(text.data()[text.size()], '\0');
  }
  line += std::to_string(texts.number);
  sent.push_back(line);
  sendThreads.push_back(std::this_thread::get_id());
  std::fprintf(stderr, "sent %s\n", line.c_str());
  return texts.number == 99 ? -1 : 0;
}

RequestTexts textsOf(const char *a, const char *b, const char *c, const char *d, int number) {
  RequestTexts texts;
  texts.text[0] = a;
  texts.text[1] = b;
  texts.text[2] = c;
  texts.text[3] = d;
  texts.number = number;
  return texts;
}

class RequestQueueTest : public testing::Test {
protected:
  void SetUp() override {
    sent.clear();
    sendThreads.clear();
  }
  // Runs walk ahead of its requests, with standard output and error captured.
  int runAhead(int (*walk)(void *), void *context = nullptr) {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = walkAheadOfRequests(walk, context);
    std::fflush(stdout);
    out = testing::internal::GetCapturedStdout();
    err = testing::internal::GetCapturedStderr();
    return result;
  }
  std::string out, err;
};

TEST_F(RequestQueueTest, WithoutAWalkARequestIsSentAtOnceAndGivesItsResult) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(sendInTurn(recordSend, textsOf("p", "", "n", "r", 99)), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "sent p||n|r|99\n");
  ASSERT_EQ(sendThreads.size(), 1u);
  EXPECT_EQ(sendThreads[0], std::this_thread::get_id());
}

std::thread::id walkThread;

int mixedWalk(void *) {
  walkThread = std::this_thread::get_id();
  printMessage(stderr, "Unrecognized tag: %s\n", "a");
  // A walk's request gives 0 at once, whatever its outcome will be.
  EXPECT_EQ(sendInTurn(recordSend, textsOf("/v/f", "", "u.T.", "<read/>", 99)), 0);
  printMessage(stdout, "to stdout %d\n", 1);
  printMessage(stderr, "Value too long in element %s; entry skipped.\n", "name");
  sendInTurn(recordSend, textsOf("/v/g", "S-1", "", "", 1));
  return 42;
}

TEST_F(RequestQueueTest, TheWalkRunsOnASecondThreadAndEverythingItQueuedComesHereInOrder) {
  EXPECT_EQ(runAhead(mixedWalk), 42);
  EXPECT_NE(walkThread, std::this_thread::get_id());
  ASSERT_EQ(sendThreads.size(), 2u);
  EXPECT_EQ(sendThreads[0], std::this_thread::get_id());
  EXPECT_EQ(sendThreads[1], std::this_thread::get_id());
  EXPECT_EQ(err, "Unrecognized tag: a\n"
                 "sent /v/f||u.T.|<read/>|99\n"
                 "Value too long in element name; entry skipped.\n"
                 "sent /v/g|S-1|||1\n");
  EXPECT_EQ(out, "to stdout 1\n");
}

const std::string kLongPath = "/" + std::string(4095, 'p');

int longTextsWalk(void *) {
  sendInTurn(recordSend, textsOf(kLongPath.c_str(), "", "", "", 0));
  sendInTurn(recordSend, textsOf("", "", "", "", -7));
  return 0;
}

TEST_F(RequestQueueTest, TextsArriveWholeLongOrEmpty) {
  EXPECT_EQ(runAhead(longTextsWalk), 0);
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_EQ(sent[0], kLongPath + "||||0");
  EXPECT_EQ(sent[1], "||||-7");
}

std::atomic<int> nextExpected{0};
std::atomic<int> outOfOrder{0};

int countingSend(const RequestTexts &texts) {
  if (std::stoi(std::string(texts.text[0])) != nextExpected) ++outOfOrder;
  ++nextExpected;
  return 0;
}

int manyRequestsWalk(void *) {
  for (int n = 0; n < 100000; ++n) {
    const std::string number = std::to_string(n);
    RequestTexts texts;
    texts.text[0] = number;
    texts.text[1] = kLongPath.c_str() + (n % 4000);  // records of many sizes
    sendInTurn(countingSend, texts);
    if (n % 1000 == 0) printMessage(stderr, "%d\n", n);
  }
  return -99;
}

TEST_F(RequestQueueTest, ManyRequestsKeepTheirOrderThroughManyTurnsOfTheQueue) {
  nextExpected = 0;
  outOfOrder = 0;
  EXPECT_EQ(runAhead(manyRequestsWalk), -99);
  EXPECT_EQ(nextExpected.load(), 100000);
  EXPECT_EQ(outOfOrder.load(), 0);
  std::string expected;
  for (int n = 0; n < 100000; n += 1000)
    expected += std::to_string(n) + "\n";
  EXPECT_EQ(err, expected);
}

std::atomic<bool> flagSent{false};

int setFlag(const RequestTexts &) {
  flagSent = true;
  return 0;
}

// Queues one request, hands it over as a reader does before it waits for input, then waits
// (5 seconds at most) for it to have been sent.
int waitingWalk(void *) {
  sendInTurn(setFlag, RequestTexts{});
  handOverQueuedMessages();
  for (int wait = 0; wait < 500 && !flagSent; ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return flagSent ? 1 : 0;
}

TEST_F(RequestQueueTest, AHandOverLetsQueuedRequestsGoWhileTheWalkWaits) {
  flagSent = false;
  EXPECT_EQ(runAhead(waitingWalk), 1);
}

}  // namespace
