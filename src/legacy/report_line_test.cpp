#include "legacy/report_line.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "file_text.h"
#include "report_input.h"
#include "temp_directory.h"

namespace {

using namespace testing_support;

class ReadReportLine : public testing::Test {
protected:
  void SetUp() override { resetReportInput(); }
  void TearDown() override { resetReportInput(); }

  // Every line readReportLine gives for `bytes`, until the first null.
  std::vector<std::string> lines(std::string_view bytes) {
    StdinFromBytes input(directory_.path(), bytes);
    return readAll();
  }

  static std::vector<std::string> readAll() {
    std::vector<std::string> result;
    while (char *line = readReportLine()) {
      result.emplace_back(line);
      std::free(line);
    }
    return result;
  }

  TempDir directory_;
};

using Lines = std::vector<std::string>;

TEST_F(ReadReportLine, LfCrAndCrLfAllEndLines) {
  EXPECT_EQ(lines("a\nb\rc\r\nd"), (Lines{"a", "b", "c", "d"}));
}

TEST_F(ReadReportLine, EmptyLinesArePassedOver) {
  EXPECT_EQ(lines("\r\n\n\rone\n\r\r\n\ntwo\n\n"), (Lines{"one", "two"}));
}

TEST_F(ReadReportLine, EmptyInputGivesNull) {
  EXPECT_EQ(lines(""), Lines{});
  EXPECT_EQ(lines("\r\n\r\n"), Lines{});
}

TEST_F(ReadReportLine, LastLineWithoutLineEnd) {
  EXPECT_EQ(lines("x\nlast"), (Lines{"x", "last"}));
}

TEST_F(ReadReportLine, LinesAroundTheEightyByteStep) {
  for (std::size_t length : {1u, 79u, 80u, 81u, 159u, 160u, 161u, 1000u}) {
    const std::string line(length, 'L');
    EXPECT_EQ(lines(line + "\n" + line + "\r\n"), (Lines{line, line})) << length;
  }
}

TEST_F(ReadReportLine, LineLongerThanTheReadBlock) {
  const std::string line(200 * 1024 + 7, 'x');
  EXPECT_EQ(lines("h\r\n" + line + "\r\nt"), (Lines{"h", line, "t"}));
}

TEST_F(ReadReportLine, LineEndSplitAcrossReadsFromAPipe) {
  // A writer that sends a few bytes per write, so lines and CR LF pairs straddle reads.
  int pipeFds[2];
  ASSERT_EQ(pipe(pipeFds), 0);
  const pid_t writer = fork();
  ASSERT_GE(writer, 0);
  if (writer == 0) {
    close(pipeFds[0]);
    const std::string bytes = "first\r\nsecond line\r\n\r\nthird\r";
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
      const std::size_t n = bytes.size() - i < 3 ? bytes.size() - i : 3;
      if (write(pipeFds[1], bytes.data() + i, n) < 0) _exit(1);
      usleep(1000);
    }
    _exit(0);
  }
  close(pipeFds[1]);
  const int savedStdin = dup(0);
  dup2(pipeFds[0], 0);
  close(pipeFds[0]);
  const Lines got = readAll();
  dup2(savedStdin, 0);
  close(savedStdin);
  int status = 0;
  waitpid(writer, &status, 0);
  EXPECT_EQ(got, (Lines{"first", "second line", "third"}));
}

TEST_F(ReadReportLine, NulByteEndsTheText) {
  const std::string bytes("ab\0cd\nef", 8);
  EXPECT_EQ(lines(bytes), (Lines{"ab", "ef"}));
}

TEST_F(ReadReportLine, ReadErrorIsTheEndOfInput) {
  const int savedStdin = dup(0);
  close(0);  // reads from descriptor 0 now fail with EBADF
  char *line = readReportLine();
  dup2(savedStdin, 0);
  close(savedStdin);
  EXPECT_EQ(line, nullptr);
  std::free(line);
}

}  // namespace

TEST_F(ReadReportLine, LineStartCountsEveryLineEndOnce) {
  StdinFromBytes input(directory_.path(), "H\r\n\r\nA\rB\n\nC");
  char *line = readReportLine();
  EXPECT_EQ(reportLineStart(), 1u);
  std::free(line);
  line = readReportLine();
  EXPECT_STREQ(line, "A");
  EXPECT_EQ(reportLineStart(), 3u);
  std::free(line);
  line = readReportLine();
  EXPECT_EQ(reportLineStart(), 4u);
  std::free(line);
  line = readReportLine();
  EXPECT_STREQ(line, "C");
  EXPECT_EQ(reportLineStart(), 6u);
  std::free(line);
}
