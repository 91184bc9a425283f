// readOnlyWithinWindow: with it, the input's file offset never runs more than one window past
// the tag just read; without it, the input is read ahead in large blocks.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_oracle.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

// About 300 KB of trustee records, with texts of every length up to two windows (so that some
// texts are cut at the window's end), a CDATA text and empty elements.
std::string longDocument() {
  std::string document = "<metadata><trusteeInfo>";
  for (int i = 0; i < 900; ++i) {
    document += "<file><path><![CDATA[/d/" + std::to_string(i) + "]]></path><trustee><name>" +
                std::string(static_cast<std::size_t>(i * 37 % (2 * kInputWindowSize)), 'n') +
                "</name><rights><read/><write/></rights></trustee></file>\n";
  }
  return document + "</trusteeInfo></metadata>\n";
}

// Walks the document with the reader and, in step, with the window-copying reference, which reads
// no more than its window holds past what it consumed. Returns the largest amount by which the
// reader's file offset ran past the reference's after any step (0 when it never did).
off_t walkBesideReference(int readerFd, int referenceFd) {
  off_t furthest = 0;
  char name[kTagNameSize] = "";
  char referenceName[kTagNameSize] = "";
  unsigned long isEndTag = 0, referenceIsEndTag = 0;
  char text[kPathTextSize], referenceText[kPathTextSize];
  for (;;) {
    inputFd = readerFd;
    const int result = readTag(name, &isEndTag, "test");
    inputFd = referenceFd;
    EXPECT_EQ(oracle::readTag(referenceName, &referenceIsEndTag, "test"), result);
    EXPECT_STREQ(name, referenceName);
    if (result != 0) break;
    if (isEndTag == 0 && (std::strcmp(name, "path") == 0 || std::strcmp(name, "name") == 0)) {
      inputFd = readerFd;
      readContents(text, sizeof text);
      inputFd = referenceFd;
      oracle::readContents(referenceText, sizeof referenceText);
      EXPECT_STREQ(text, referenceText);
    }
    const off_t ahead = lseek(readerFd, 0, SEEK_CUR) - lseek(referenceFd, 0, SEEK_CUR);
    if (ahead > furthest) furthest = ahead;
  }
  inputFd = 0;
  return furthest;
}

class TagReaderWindowOnlyTest : public testing::Test {
protected:
  void SetUp() override {
    resetProcessState();
    oracle::resetTagReader();
    readerFd = openWithContents(dir, "reader.xml", document);
    referenceFd = openWithContents(dir, "reference.xml", document);
  }
  void TearDown() override {
    close(readerFd);
    close(referenceFd);
    resetProcessState();
  }
  TempDir dir;
  const std::string document = longDocument();
  int readerFd = -1;
  int referenceFd = -1;
};

TEST_F(TagReaderWindowOnlyTest, OffsetNeverRunsPastTheWindowAndWhatWasConsumed) {
  readOnlyWithinWindow(true);
  EXPECT_EQ(walkBesideReference(readerFd, referenceFd), 0);
  EXPECT_EQ(lseek(readerFd, 0, SEEK_CUR), static_cast<off_t>(document.size()));
}

TEST_F(TagReaderWindowOnlyTest, WithoutItTheInputIsReadAheadInLargeBlocks) {
  EXPECT_GT(walkBesideReference(readerFd, referenceFd), static_cast<off_t>(kInputWindowSize));
}

TEST_F(TagReaderWindowOnlyTest, ResetPutsTheReadAheadBack) {
  readOnlyWithinWindow(true);
  resetTagReader();
  EXPECT_GT(walkBesideReference(readerFd, referenceFd), static_cast<off_t>(kInputWindowSize));
}

}  // namespace
