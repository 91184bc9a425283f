#include "channel/temp_files.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "console_test_support.h"

namespace {

using namespace testing_support;

bool present(const std::string &name) {
  struct stat info;
  return lstat(name.c_str(), &info) == 0;
}

void touch(const std::string &name) { writeFile(name, "x"); }

class TempFiles : public testing::Test {
protected:
  void TearDown() override {
    forgetTempFile(TempFile::kLegacyDocument);
    forgetTempFile(TempFile::kConsoleReport);
  }
  TempDir dir_;
};

TEST_F(TempFiles, RemembersEachKindAndRemovesOnlyThoseStillRemembered) {
  const std::string document = dir_.file("tmp.AbCdEf");
  const std::string report = dir_.file("trovan1");
  touch(document);
  touch(report);
  rememberTempFile(TempFile::kLegacyDocument, document.c_str());
  rememberTempFile(TempFile::kConsoleReport, report.c_str());
  forgetTempFile(TempFile::kLegacyDocument);
  removeRememberedTempFiles();
  EXPECT_TRUE(present(document));
  EXPECT_FALSE(present(report));
}

TEST_F(TempFiles, RemovalKeepsErrno) {
  rememberTempFile(TempFile::kConsoleReport, dir_.file("missing").c_str());
  errno = 1234;
  removeRememberedTempFiles();
  EXPECT_EQ(errno, 1234);
}

// In a child: the files are removed and the child ends by the very signal it was sent.
void expectRemovedAndEndedBy(const TempDir &dir, int signalNumber) {
  const std::string document = dir.file("tmp.XyZ123");
  const std::string report = dir.file("trovan2");
  touch(document);
  touch(report);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    rememberTempFile(TempFile::kLegacyDocument, document.c_str());
    rememberTempFile(TempFile::kConsoleReport, report.c_str());
    removeTempFilesOnSignal();
    raise(signalNumber);
    _exit(0);  // not reached
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), signalNumber);
  EXPECT_FALSE(present(document));
  EXPECT_FALSE(present(report));
}

TEST_F(TempFiles, SigtermRemovesTheFilesThenEndsTheProcessBySigterm) {
  expectRemovedAndEndedBy(dir_, SIGTERM);
}

TEST_F(TempFiles, SigintRemovesTheFilesThenEndsTheProcessBySigint) {
  expectRemovedAndEndedBy(dir_, SIGINT);
}

TEST_F(TempFiles, SighupRemovesTheFilesThenEndsTheProcessBySighup) {
  expectRemovedAndEndedBy(dir_, SIGHUP);
}

TEST_F(TempFiles, ASignalIgnoredAtTheStartStaysIgnored) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    signal(SIGHUP, SIG_IGN);
    removeTempFilesOnSignal();
    raise(SIGHUP);
    _exit(7);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

}  // namespace
