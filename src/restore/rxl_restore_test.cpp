#include "restore/rxl_restore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "console_test_support.h"
#include "document/run_settings.h"

namespace {

using namespace testing_support;

// A fake "rxlcon" first on PATH: it logs its arguments, one "[...]" each and a line end per run,
// then does what the test asks.
class RxlRestore : public ConsoleTest {
protected:
  void fakeRxlcon(const std::string &behaviour) {
    writeScript(dir_, "rxlcon",
                "for a in \"$@\"; do printf '[%s]' \"$a\"; done >> " + log() + "\necho >> " +
                    log() + "\n" + behaviour);
  }
  std::string log() const { return dir_.file("rxlcon.log"); }
  std::string logged() const { return readFile(log()).value_or("<no log>"); }

  // Runs `action` with standard output and error captured.
  template <typename Action> int captured(Action action) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int result = action();
    err_ = testing::internal::GetCapturedStderr();
    out_ = testing::internal::GetCapturedStdout();
    return result;
  }
  int filter(const char *path, const char *rights) {
    return captured([&] { return addRxlInheritedRightsFilter(path, rights); });
  }
  int trustee(const char *path, const char *name, const char *rights) {
    std::strncpy(name_, name, sizeof name_ - 1);
    return captured([&] { return addRxlTrustee(path, name_, rights); });
  }
  std::string out_;
  std::string err_;
  char name_[1024] = "";
};

constexpr char kConfirm[] = "echo 'Command completed OK.' >&2";

TEST_F(RxlRestore, FilterReadFileScanRunsIrmSetWithLetters) {
  fakeRxlcon(kConfirm);
  EXPECT_EQ(filter("VOL:dir/a", "<read/><fileScan/>"), 0);
  EXPECT_EQ(logged(), "[irm][set][VOL:dir/a][rf]\n");
  EXPECT_EQ(out_, "");
  EXPECT_EQ(err_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, TrusteeReadFileScanRunsRightsAddWithTypelessName) {
  fakeRxlcon(kConfirm);
  EXPECT_EQ(trustee("VOL:dir/a", ".cn=admin.o=org", "<read/><fileScan/>"), 0);
  EXPECT_EQ(logged(), "[rights][add][VOL:dir/a][admin.org][rf]\n");
  EXPECT_STREQ(name_, "admin.org");
  EXPECT_EQ(out_, "");
  EXPECT_EQ(err_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, TrusteeNameHasItsEntitiesDecoded) {
  fakeRxlcon(kConfirm);
  EXPECT_EQ(trustee("VOL:x", "cn=a&amp;b.o=org", "<read/>"), 0);
  EXPECT_EQ(logged(), "[rights][add][VOL:x][a&b.org][r]\n");
}

TEST_F(RxlRestore, EmptyFilterRightsGiveNoneWhileMessagesShowEmptyBrackets) {
  fakeRxlcon("exit 0");
  EXPECT_EQ(filter("VOL:dir", ""), -1);
  EXPECT_EQ(logged(), "[irm][set][VOL:dir][none]\n");
  EXPECT_EQ(err_, "Error adding IRF VOL:dir with rights [].\n");
}

TEST_F(RxlRestore, EmptyTrusteeRightsGiveNoneWhileMessagesShowEmptyBrackets) {
  fakeRxlcon("exit 1");
  EXPECT_EQ(trustee("VOL:dir", "admin.org", ""), 1);
  EXPECT_EQ(logged(), "[rights][add][VOL:dir][admin.org][none]\n");
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:dir with rights [].\n");
}

TEST_F(RxlRestore, RightsThatAreNoRightsAlsoGiveNone) {
  fakeRxlcon(kConfirm);
  showActions = 1;
  EXPECT_EQ(filter("VOL:dir", "<rights></rights>"), 0);
  EXPECT_EQ(logged(), "[irm][set][VOL:dir][none]\n");
  EXPECT_EQ(out_, "Inherited rights filter added to VOL:dir with rights [].\n");
}

TEST_F(RxlRestore, ExitZeroWithoutConfirmationIsAFilterFailure) {
  fakeRxlcon("echo 'Command failed' >&2");
  EXPECT_EQ(filter("VOL:dir/a", "<read/><fileScan/>"), -1);
  EXPECT_EQ(err_, "Error adding IRF VOL:dir/a with rights [rf].\n");
  EXPECT_EQ(out_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, ExitZeroWithoutConfirmationIsATrusteeFailure) {
  fakeRxlcon("echo 'Command failed' >&2");
  showActions = 1;
  EXPECT_EQ(trustee("VOL:dir/a", ".cn=admin.o=org", "<read/><fileScan/>"), -1);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:dir/a with rights [rf].\n");
  EXPECT_EQ(out_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, ConfirmationOnStandardOutputOnlyIsAFailure) {
  fakeRxlcon("echo 'Command completed OK.'");
  EXPECT_EQ(filter("VOL:a", "<write/>"), -1);
  EXPECT_EQ(err_, "Error adding IRF VOL:a with rights [w].\n");
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<write/>"), -1);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:a with rights [w].\n");
}

TEST_F(RxlRestore, ConfirmationIsFoundAnywhereInTheReport) {
  fakeRxlcon("printf 'line one\\nRights: completed OK then more' >&2");
  EXPECT_EQ(filter("VOL:a", "<read/>"), 0);
  EXPECT_EQ(err_, "");
}

TEST_F(RxlRestore, ConfirmationIsCaseSensitive) {
  fakeRxlcon("echo 'Command Completed ok' >&2");
  EXPECT_EQ(filter("VOL:a", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding IRF VOL:a with rights [r].\n");
}

TEST_F(RxlRestore, ReportTextEndsAtANulByte) {
  fakeRxlcon("printf 'x\\000completed OK\\n' >&2");
  EXPECT_EQ(filter("VOL:a", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding IRF VOL:a with rights [r].\n");
}

TEST_F(RxlRestore, SuccessPrintsNothingWithoutActions) {
  fakeRxlcon(kConfirm);
  EXPECT_EQ(filter("VOL:a", "<read/>"), 0);
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), 0);
  EXPECT_EQ(out_, "");
  EXPECT_EQ(err_, "");
}

TEST_F(RxlRestore, SuccessPrintsDoneLinesUnderActions) {
  fakeRxlcon(kConfirm);
  showActions = 1;
  EXPECT_EQ(filter("VOL:dir/a", "<read/><fileScan/>"), 0);
  EXPECT_EQ(out_, "Inherited rights filter added to VOL:dir/a with rights [rf].\n");
  EXPECT_EQ(trustee("VOL:dir/a", ".cn=admin.o=org", "<read/><fileScan/>"), 0);
  EXPECT_EQ(out_, "Trustee admin.org added to VOL:dir/a with rights [rf].\n");
  EXPECT_EQ(err_, "");
}

TEST_F(RxlRestore, FailedFilterCommandReturnsItsStatusAndLeavesTheTempFile) {
  fakeRxlcon("echo 'bad volume' >&2; exit 3");
  EXPECT_EQ(filter("VOL:dir/a", "<read/><fileScan/>"), 3);
  EXPECT_EQ(err_, "Error adding inherited right filter \"rf\" to VOL:dir/a.\n");
  EXPECT_EQ(readFile(consoleTempName()), "bad volume\n");
}

TEST_F(RxlRestore, FailedTrusteeCommandReturnsItsStatusAndLeavesTheTempFile) {
  fakeRxlcon("echo 'no such user' >&2; exit 4");
  showActions = 1;
  EXPECT_EQ(trustee("VOL:dir/a", ".cn=admin.o=org", "<read/><fileScan/>"), 4);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:dir/a with rights [rf].\n");
  EXPECT_EQ(out_, "");
  EXPECT_EQ(readFile(consoleTempName()), "no such user\n");
}

TEST_F(RxlRestore, SignalledCommandReturnsMinusOne) {
  fakeRxlcon("kill -9 $$");
  EXPECT_EQ(filter("VOL:a", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding inherited right filter \"r\" to VOL:a.\n");
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:a with rights [r].\n");
  EXPECT_TRUE(exists(consoleTempName()));
}

TEST_F(RxlRestore, MissingConsoleCommandGives255) {
  // No fake rxlcon, and nothing else on the search path.
  PathGuard only{dir_.path()};
  setenv("PATH", dir_.path().c_str(), 1);  // put back by the guards
  EXPECT_EQ(filter("VOL:a", "<read/>"), 255);
  EXPECT_EQ(err_, "Error adding inherited right filter \"r\" to VOL:a.\n");
}

TEST_F(RxlRestore, NextCommandTruncatesTheLeftTempFile) {
  fakeRxlcon("echo 'a long failure report line' >&2; exit 3");
  ASSERT_EQ(filter("VOL:a", "<read/>"), 3);
  fakeRxlcon("echo ok >&2; exit 5");
  ASSERT_EQ(filter("VOL:a", "<read/>"), 5);
  EXPECT_EQ(readFile(consoleTempName()), "ok\n");
}

TEST_F(RxlRestore, VanishedTempFileIsAReadErrorAndReturnsMinusOne) {
  // The command's parent is this process, whose pid names the temporary file.
  fakeRxlcon("rm -f /tmp/trovan$PPID");
  EXPECT_EQ(filter("VOL:a", "<read/>"), -1);
  EXPECT_EQ(err_, "Error reading tmp file: No such file or directory\n");
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), -1);
  EXPECT_EQ(err_, "Error reading tmp file: No such file or directory\n");
}

// What the parent finds under the name, should it no longer be the file the child made, is no
// report of the command: the entry fails as one that did not say "completed OK".
TEST_F(RxlRestore, ADirectoryUnderTheNameIsNoConfirmation) {
  fakeRxlcon("rm -f /tmp/trovan$PPID; mkdir /tmp/trovan$PPID");
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:a with rights [r].\n");
  EXPECT_EQ(out_, "");
}

TEST_F(RxlRestore, AFifoUnderTheNameIsNoConfirmationAndIsNotWaitedOn) {
  showActions = 1;
  fakeRxlcon("rm -f /tmp/trovan$PPID; mkfifo /tmp/trovan$PPID");
  EXPECT_EQ(filter("VOL:a", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding IRF VOL:a with rights [r].\n");
  EXPECT_EQ(out_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, ASecondLinkToTheReportIsNoConfirmation) {
  showActions = 1;
  fakeRxlcon(std::string(kConfirm) + "; ln /tmp/trovan$PPID " + dir_.file("kept"));
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), -1);
  EXPECT_EQ(err_, "Error adding trustee admin.org to VOL:a with rights [r].\n");
  EXPECT_EQ(out_, "");
  EXPECT_FALSE(exists(consoleTempName()));
}

TEST_F(RxlRestore, ASymbolicLinkUnderTheNameIsNotFollowed) {
  showActions = 1;
  writeFile(dir_.file("forged"), "Command completed OK.\n");
  fakeRxlcon("rm -f /tmp/trovan$PPID; ln -s " + dir_.file("forged") + " /tmp/trovan$PPID");
  EXPECT_EQ(trustee("VOL:a", "admin.org", "<read/>"), -1);
  EXPECT_EQ(err_, "Error reading tmp file: Too many levels of symbolic links\n");
  EXPECT_EQ(out_, "");
}

}  // namespace
