#include "document/messages.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

namespace {

class CollectedMessages final : public MessageQueue {
public:
  void addMessage(std::FILE *stream, const char *text, std::size_t length) override {
    messages.emplace_back(stream, std::string(text, length));
  }
  void handOver() override { ++handOvers; }

  std::vector<std::pair<std::FILE *, std::string>> messages;
  int handOvers = 0;
};

class Messages : public testing::Test {
protected:
  void TearDown() override { queueMessagesOfThisThread(nullptr); }
};

TEST_F(Messages, WithoutAQueueTheyArePrintedAtOnce) {
  testing::internal::CaptureStderr();
  printMessage(stderr, "Unrecognized tag: %s\n", "zid");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unrecognized tag: zid\n");
  handOverQueuedMessages();  // nothing to hand over, nothing happens
}

TEST_F(Messages, WithAQueueTheyGoToItInOrderWithTheirStreams) {
  CollectedMessages queue;
  queueMessagesOfThisThread(&queue);
  testing::internal::CaptureStderr();
  printMessage(stderr, "No path for the entry <%s>; entry skipped.\n", "trustee");
  printMessage(stdout, "%d-%s", 7, "x");
  errno = ENOENT;
  printMessage(stderr, "Error %m reading the input file.\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  ASSERT_EQ(queue.messages.size(), 3u);
  EXPECT_EQ(queue.messages[0].first, stderr);
  EXPECT_EQ(queue.messages[0].second, "No path for the entry <trustee>; entry skipped.\n");
  EXPECT_EQ(queue.messages[1].first, stdout);
  EXPECT_EQ(queue.messages[1].second, "7-x");
  EXPECT_EQ(queue.messages[2].second, "Error No such file or directory reading the input file.\n");
}

TEST_F(Messages, ALongMessageIsQueuedWhole) {
  CollectedMessages queue;
  queueMessagesOfThisThread(&queue);
  const std::string name(3000, 'n');
  errno = EIO;
  printMessage(stderr, "%s %m", name.c_str());
  ASSERT_EQ(queue.messages.size(), 1u);
  EXPECT_EQ(queue.messages[0].second, name + " Input/output error");
}

TEST_F(Messages, HandOverReachesTheQueueAndClearingItPrintsAgain) {
  CollectedMessages queue;
  queueMessagesOfThisThread(&queue);
  handOverQueuedMessages();
  EXPECT_EQ(queue.handOvers, 1);
  queueMessagesOfThisThread(nullptr);
  testing::internal::CaptureStderr();
  printMessage(stderr, "Unable to find end tag: %s\n", "name");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find end tag: name\n");
  EXPECT_TRUE(queue.messages.empty());
}

}  // namespace
