// resetProcessState puts back every process-wide setting.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "admin_channel_calls.h"
#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

int refuseEverything(const char *, std::size_t, void *) { return 5; }

TEST(RestoreFixture, ResetPutsBackEverySetting) {
  TempDir dir;
  const std::string document = "<metadata>" + std::string(3 * kInputWindowSize, ' ') +
                               "<trusteeInfo></trusteeInfo></metadata>";
  // Every setting away from its start: a half-read document with the window-only setting, a
  // stand-in, an open command file and a cut-off request.
  inputFd = openWithContents(dir, "doc.xml", document);
  const int firstFd = inputFd;
  readOnlyWithinWindow(true);
  Tag tag;
  ASSERT_EQ(readTag(tag, "test"), 0);
  showActions = debug = 1;
  arborUsers = 0;
  adUsers = 0;
  reflectOnGemel = 0;
  adminFd = 42;
  requestBuffer[0] = 'x';
  setRequestStandIn(refuseEverything, nullptr);

  resetProcessState();
  EXPECT_EQ(showActions, 0);
  EXPECT_EQ(debug, 0);
  EXPECT_EQ(arborUsers, 1);
  EXPECT_EQ(adUsers, 1);
  EXPECT_EQ(inputFd, 0);
  EXPECT_EQ(reflectOnGemel, 1);
  EXPECT_EQ(adminFd, 0);
  EXPECT_EQ(requestBuffer[0], '\0');
  EXPECT_FALSE(requestStandInSet());
  EXPECT_NE(replyBuffer, nullptr);
  EXPECT_EQ(replyBufferSize, kReplyBufferStep);

  // The reader starts afresh: the same document from its start, read ahead in large blocks.
  close(firstFd);
  inputFd = openWithContents(dir, "doc.xml", document);
  ASSERT_EQ(readTag(tag, "test"), 0);
  EXPECT_TRUE(tag.is("metadata"));
  EXPECT_EQ(lseek(inputFd, 0, SEEK_CUR), static_cast<off_t>(document.size()));
  close(inputFd);
  resetProcessState();
  freeReplyBuffer();
}

class RestoreWalk : public RestoreWalkTest {};

TEST_F(RestoreWalk, KeepsWhatTheWalkPrintedAndSent) {
  const int result = walkDocument(
      "<doc/>",
      [] {
        std::printf("out");
        std::fprintf(stderr, "err");
        std::strcpy(requestBuffer, "<virtualIO>one");
        return sendRequest() == 0 ? 7 : -1;
      },
      replyWith(0));
  EXPECT_EQ(result, 7);
  EXPECT_EQ(out, "out");
  EXPECT_EQ(err, "err");
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0], "<virtualIO>one");
}

TEST_F(RestoreWalk, ANewWalkClosesTheDocumentOfTheLast) {
  int first = -1;
  walkDocument("<a/>", [&first] { return first = inputFd; });
  ASSERT_GT(first, 0);
  // The lowest free descriptor is taken again only if the first document's was closed.
  walkDocument("<b/>", [] { return 0; });
  EXPECT_EQ(inputFd, first);
}

TEST_F(RestoreWalk, FilterIsGivenOnlyOnceCompiled) {
  EXPECT_EQ(usedFilter(), nullptr);
  useFilter("^/a");
  EXPECT_EQ(usedFilter(), &filter);
}

}  // namespace
