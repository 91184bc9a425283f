#include "save/element_feed.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class ElementFeedTest : public testing::Test {
protected:
  void SetUp() override { resetElementFeed(); }
  void TearDown() override { resetElementFeed(); }
};

const ElementSearch kFiles{prepareTag("<file>"), prepareTag("</file>"), prepareTag("<path>"),
                           prepareTag("</path>")};

std::string files(int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "<file><zid>" + std::to_string(i) + "</zid><path>/d" + std::to_string(i % 7) +
            "</path>\n<trustee/></file>\n";
  return text + std::string(200, ' ');
}

// Every place the feed gives, batch after batch, and the number of batches.
std::vector<ElementPlaces> drain(ElementFeed &feed, std::size_t *batches) {
  std::vector<ElementPlaces> all;
  *batches = 0;
  std::size_t count = 0;
  while (const ElementPlaces *places = feed.next(&count)) {
    EXPECT_GT(count, 0u);
    EXPECT_LE(count, ElementFeed::kBatch);
    all.insert(all.end(), places, places + count);
    ++*batches;
  }
  EXPECT_EQ(count, 0u);
  return all;
}

void expectSame(const std::vector<ElementPlaces> &a, const std::vector<ElementPlaces> &b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    ASSERT_EQ(a[i].start, b[i].start) << i;
    ASSERT_EQ(a[i].end, b[i].end) << i;
    ASSERT_EQ(a[i].path, b[i].path) << i;
    ASSERT_EQ(a[i].pathEnd, b[i].pathEnd) << i;
  }
}

TEST_F(ElementFeedTest, SmallTextsAreFedWithoutAThread) {
  const std::string text = files(100);
  ElementFeed feed(kFiles, text.data(), 0, text.size());
  EXPECT_FALSE(feed.threaded());
  std::size_t batches = 0;
  EXPECT_EQ(drain(feed, &batches).size(), 100u);
  EXPECT_EQ(batches, 2u);
}

TEST_F(ElementFeedTest, ThreadGivesTheSameBatchesAroundTheRingMoreThanOnce) {
  // Far more batches than the ring holds, taken while the thread fills it.
  const std::string text = files(5000);
  ElementFeed alone(kFiles, text.data(), 0, text.size());
  std::size_t aloneBatches = 0;
  const std::vector<ElementPlaces> expected = drain(alone, &aloneBatches);
  ASSERT_EQ(expected.size(), 5000u);

  setElementFeed(0, false);
  ElementFeed feed(kFiles, text.data(), 0, text.size());
  EXPECT_TRUE(feed.threaded());
  std::size_t batches = 0;
  expectSame(drain(feed, &batches), expected);
  EXPECT_EQ(batches, aloneBatches);
  EXPECT_FALSE(feed.threaded());
  // After the end, nothing more.
  std::size_t count = 7;
  EXPECT_EQ(feed.next(&count), nullptr);
  EXPECT_EQ(count, 0u);
}

TEST_F(ElementFeedTest, FeedStartsAtTheGivenPlace) {
  const std::string text = files(300);
  setElementFeed(0, false);
  ElementFeed feed(kFiles, text.data(), 1, text.size());
  std::size_t batches = 0;
  const std::vector<ElementPlaces> places = drain(feed, &batches);
  ASSERT_EQ(places.size(), 299u);
  EXPECT_EQ(places[0].start, text.find("<file>", 1));
}

TEST_F(ElementFeedTest, StopWhileTheThreadFillsTheRingEndsTheFeed) {
  const std::string text = files(20000);
  setElementFeed(0, false);
  ElementFeed feed(kFiles, text.data(), 0, text.size());
  std::size_t count = 0;
  const ElementPlaces *first = feed.next(&count);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(count, ElementFeed::kBatch);
  EXPECT_EQ(first[0].start, 0u);
  feed.stop();
  EXPECT_FALSE(feed.threaded());
  EXPECT_EQ(feed.next(&count), nullptr);
  feed.stop();
}

TEST_F(ElementFeedTest, TextWithoutElementsEndsAtOnce) {
  const std::string text(5000, 'x');
  setElementFeed(0, false);
  ElementFeed feed(kFiles, text.data(), 0, text.size());
  std::size_t batches = 0;
  EXPECT_TRUE(drain(feed, &batches).empty());
  EXPECT_EQ(batches, 0u);
}

TEST_F(ElementFeedTest, TheThreadWaitsForAnIdleProcessorUnlessToldOtherwise) {
  // Whether a processor is idle depends on the machine; the batches are the same either way.
  const std::string text = files(2000);
  setElementFeed(0, true);
  ElementFeed feed(kFiles, text.data(), 0, text.size());
  std::size_t batches = 0;
  EXPECT_EQ(drain(feed, &batches).size(), 2000u);
}

}  // namespace
