#include "channel/console_runner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "console_test_support.h"
#include "document/run_settings.h"

namespace {

using namespace testing_support;

char *arg(const char *text) { return const_cast<char *>(text); }

class ConsoleRunner : public ConsoleTest {
protected:
  // Runs the fake command `name` with no arguments of its own.
  int run(const char *name, char *tempName) {
    char *const argv[] = {arg(name), nullptr};
    return runCommand(name, argv, tempName);
  }
};

TEST_F(ConsoleRunner, CommandExitingZeroGivesZero) {
  writeScript(dir_, "fake-ok", "exit 0");
  EXPECT_EQ(run("fake-ok", nullptr), 0);
}

TEST_F(ConsoleRunner, CommandExitingThreeGivesThree) {
  writeScript(dir_, "fake-three", "exit 3");
  EXPECT_EQ(run("fake-three", nullptr), 3);
}

TEST_F(ConsoleRunner, CommandKilledBySignalGivesMinusOne) {
  writeScript(dir_, "fake-killed", "kill -9 $$");
  EXPECT_EQ(run("fake-killed", nullptr), -1);
}

TEST_F(ConsoleRunner, CommandNotOnTheSearchPathGives255) {
  EXPECT_EQ(run("trovan-no-such-console-command", nullptr), 255);
}

TEST_F(ConsoleRunner, CommandNotOnTheSearchPathLeavesAnEmptyTempFile) {
  char tempName[kConsoleTempNameSize];
  EXPECT_EQ(run("trovan-no-such-console-command", tempName), 255);
  EXPECT_EQ(readFile(tempName), std::string());
}

TEST_F(ConsoleRunner, TempNameIsTrovanFollowedByTheCallersPid) {
  writeScript(dir_, "fake-ok", "exit 0");
  char tempName[kConsoleTempNameSize] = "";
  ASSERT_EQ(run("fake-ok", tempName), 0);
  EXPECT_EQ(std::string(tempName), "/tmp/trovan" + std::to_string(getpid()));
}

TEST_F(ConsoleRunner, ArgumentVectorReachesTheCommand) {
  const std::string log = dir_.file("argv.log");
  writeScript(dir_, "fake-log", "for a in \"$@\"; do printf '[%s]' \"$a\"; done > " + log);
  char *const argv[] = {arg("fake-log"), arg("one"), arg("two words"), arg(""), nullptr};
  ASSERT_EQ(runCommand("fake-log", argv, nullptr), 0);
  EXPECT_EQ(readFile(log), "[one][two words][]");
}

TEST_F(ConsoleRunner, TempFileCatchesStandardErrorButNotStandardOutput) {
  writeScript(dir_, "fake-both", "echo to-stdout; echo to-stderr >&2");
  char tempName[kConsoleTempNameSize];
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  ASSERT_EQ(run("fake-both", tempName), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(readFile(tempName), "to-stderr\n");
}

TEST_F(ConsoleRunner, WithoutTempNameAllOutputIsDiscarded) {
  writeScript(dir_, "fake-both", "echo to-stdout; echo to-stderr >&2");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  ASSERT_EQ(run("fake-both", nullptr), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(ConsoleRunner, SecondCommandReusesAndTruncatesTheTempFile) {
  writeScript(dir_, "fake-long", "echo 'a rather long report line' >&2");
  writeScript(dir_, "fake-short", "echo x >&2");
  char first[kConsoleTempNameSize];
  char second[kConsoleTempNameSize];
  ASSERT_EQ(run("fake-long", first), 0);
  ASSERT_EQ(readFile(first), "a rather long report line\n");
  ASSERT_EQ(run("fake-short", second), 0);
  EXPECT_STREQ(first, second);
  EXPECT_EQ(readFile(second), "x\n");
}

TEST_F(ConsoleRunner, FailedWaitReturnsItsNegativeResult) {
  // With SIGCHLD ignored the child is reaped by the system, so the wait finds no child.
  writeScript(dir_, "fake-ok", "exit 0");
  struct sigaction ignore {};
  struct sigaction previous {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGCHLD, &ignore, &previous);
  const int result = run("fake-ok", nullptr);
  const int error = errno;
  sigaction(SIGCHLD, &previous, nullptr);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(error, ECHILD);
}

TEST_F(ConsoleRunner, CheckRxlVolumeRunsRxlconVolumeName) {
  const std::string log = dir_.file("argv.log");
  writeScript(dir_, "rxlcon",
              "for a in \"$@\"; do printf '[%s]' \"$a\"; done > " + log +
                  "; echo chatter; echo report >&2");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(checkRxlVolume("VOL1"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(readFile(log), "[volume][VOL1]");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(ConsoleRunner, CheckRxlVolumeOfAnUnknownVolumeGivesTheExitStatus) {
  writeScript(dir_, "rxlcon", "echo 'Volume not found' >&2; exit 2");
  EXPECT_EQ(checkRxlVolume("NOVOL"), 2);
}

TEST_F(ConsoleRunner, CheckRxlVolumeClearsErrno) {
  writeScript(dir_, "rxlcon", "exit 0");
  errno = EIO;
  EXPECT_EQ(checkRxlVolume("VOL1"), 0);
  EXPECT_EQ(errno, 0);
}

// A link planted under the temporary name makes the child's open fail. The child then reports it
// without a line end and returns -2 to its own caller, while the parent collects the child
// whenever it ends. Run inside a helper process so that the continuing child cannot reach the
// test runner; the helper's output goes to files.
TEST_F(ConsoleRunner, PlantedLinkIsReplacedByANewFileAndItsTargetIsUntouched) {
  writeScript(dir_, "fake-report", "echo report >&2");
  const std::string target = dir_.file("link-target");
  writeFile(target, "someone else's\n");
  ASSERT_EQ(symlink(target.c_str(), consoleTempName().c_str()), 0);
  char tempName[kConsoleTempNameSize];
  EXPECT_EQ(run("fake-report", tempName), 0);
  struct stat info;
  ASSERT_EQ(lstat(tempName, &info), 0);
  EXPECT_TRUE(S_ISREG(info.st_mode));
  EXPECT_EQ(info.st_mode & 07777, 0600u);
  EXPECT_EQ(info.st_uid, geteuid());
  EXPECT_EQ(readFile(tempName), "report\n");
  EXPECT_EQ(readFile(target), "someone else's\n");
}

TEST_F(ConsoleRunner, PlantedFifoIsReplacedWithoutWaitingOnIt) {
  writeScript(dir_, "fake-report", "echo report >&2");
  ASSERT_EQ(mkfifo(consoleTempName().c_str(), 0600), 0);
  char tempName[kConsoleTempNameSize];
  EXPECT_EQ(run("fake-report", tempName), 0);
  EXPECT_EQ(readFile(tempName), "report\n");
}

TEST_F(ConsoleRunner, ANameThatCannotBeClearedMakesTheChildContinueWithMinusTwo) {
  writeScript(dir_, "fake-ok", "exit 0");
  const std::string out = dir_.file("out");
  const std::string err = dir_.file("err");
  std::fflush(stdout);
  std::fflush(stderr);
  const pid_t helper = fork();
  ASSERT_GE(helper, 0);
  if (helper == 0) {
    const int outFd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int errFd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(outFd, 1);
    dup2(errFd, 2);
    // A directory is not removed by unlink(), and the file cannot be made in its place.
    if (mkdir(consoleTempName().c_str(), 0700) != 0) _exit(3);
    // Buffered when the fork comes: it must be written once, not once more by the child.
    std::printf("pending;");
    char tempName[kConsoleTempNameSize];
    char *const argv[] = {arg("fake-ok"), nullptr};
    const int result = runCommand("fake-ok", argv, tempName);
    if (result == -2) {
      std::printf("child:-2;");
      std::fflush(stdout);
      _exit(42);
    }
    std::printf("parent:%d;", result);
    std::fflush(stdout);
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(helper, &status, 0), helper);
  removeConsoleTempFile(helper);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(readFile(out), "pending;child:-2;parent:42;");
  EXPECT_EQ(readFile(err), "Error 17(File exists)opening temp file");
}

}  // namespace
