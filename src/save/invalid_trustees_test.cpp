#include "save/invalid_trustees.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "admin_file_redirect.h"
#include "channel/admin_channel.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "file_text.h"
#include "save/identity_library.h"
#include "temp_directory.h"

namespace {

using testing_support::readFile;
using testing_support::TempDir;

constexpr char kSuccessReply[] =
    "<removeTrustee><result value=\"0\"><description>Success</description></result>"
    "</removeTrustee>\n";
constexpr char kRefusedReply[] =
    "<removeTrustee><result value=\"20501\"><description>No such trustee</description>"
    "<name>nobody</name></result></removeTrustee>\n";

// A file element as the file system writes it, with its trustees.
std::string fileElement(const std::string &path, const std::string &trustees) {
  return "<file>\n<zid>4711</zid><path><![CDATA[" + path + "]]></path>\n" + trustees + "</file>\n";
}
std::string trustee(const std::string &name, const std::string &id) {
  return "<trustee><name>" + name + "</name><id>" + id +
         "</id><rights value=\"rf\"><read/><fileScan/></rights></trustee>\n";
}
std::string adTrustee(const std::string &name, const std::string &sid) {
  return "<trustee type=\"adID\"><name>" + name + "</name><id>" + sid +
         "</id><rights value=\"r\"><read/></rights></trustee>\n";
}
std::string trusteeInfo(const std::string &files) {
  return "<quillReply>\n<trusteeInfo>\n" + files +
         "</trusteeInfo>\n<result value=\"0\"><description>Success</description></result>\n"
         "</quillReply>\n";
}

class RemoveInvalidTrusteesTest : public testing::Test {
protected:
  void SetUp() override {
    resetRunSettings();
    resetTagReader();
    resetAdminChannel();
    resetIdentityLibrary();
    ASSERT_TRUE(allocateReplyBuffer());
    ASSERT_FALSE(directory_.path().empty());
    savedStdin_ = dup(0);
    ASSERT_GE(savedStdin_, 0);
    setReply(kSuccessReply);
    redirectFilesCommandFile(commandFile().c_str());
    if (loadStub_) {
      stub_ = dlopen(TROVAN_LUMO_STUB, RTLD_NOW);
      ASSERT_NE(stub_, nullptr) << dlerror();
    }
  }

  void TearDown() override {
    dup2(savedStdin_, 0);
    close(savedStdin_);
    redirectFilesCommandFile(nullptr);
    resetIdentityLibrary();
    if (stub_ != nullptr) dlclose(stub_);
    freeReplyBuffer();
    resetTagReader();
    resetAdminChannel();
    resetRunSettings();
  }

  std::string commandFile() const { return directory_.file("files.cmd"); }

  void writeFile(const std::string &name, const std::string &text) { directory_.write(name, text); }

  // The reply that every request reads back: it stands at the start of the command file, and
  // the requests are appended after it.
  void setReply(const std::string &reply) {
    reply_ = reply;
    writeFile("files.cmd", reply);
  }

  int run(const std::string &info, const char *pathFilter = nullptr) {
    writeFile("TrusteeInfo.xml", info);
    return runOnFile("TrusteeInfo.xml", pathFilter);
  }

  int runOnFile(const char *infoFileName, const char *pathFilter = nullptr) {
    testing::internal::CaptureStderr();
    const int result =
        removeInvalidTrustees("VOL", directory_.dir().c_str(), infoFileName, pathFilter);
    stderr_ = testing::internal::GetCapturedStderr();
    return result;
  }

  // Every request sent, in order.
  std::vector<std::string> requests() const {
    std::string text = readFile(commandFile()).value_or("").substr(reply_.size());
    std::vector<std::string> sent;
    static const std::string kClose = "</fileRequest>";
    for (std::size_t at; (at = text.find(kClose)) != std::string::npos;) {
      sent.push_back(text.substr(0, at + kClose.size()));
      text.erase(0, at + kClose.size());
    }
    if (!text.empty()) sent.push_back(text);
    return sent;
  }

  int stubCalls() const { return *static_cast<int *>(dlsym(stub_, "lumo_stub_calls")); }

  bool loadStub_ = true;
  void *stub_ = nullptr;
  TempDir directory_;
  std::string reply_;
  std::string stderr_;
  int savedStdin_ = -1;
};

using Requests = std::vector<std::string>;

bool contains(const std::string &text, const std::string &part) {
  return text.find(part) != std::string::npos;
}

// The trustee cases the file system reports.

TEST_F(RemoveInvalidTrusteesTest, UnknownNameWithNonSidIdentifierIsRemovedWithThePlainForm) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/dir/a", trustee("Unknown(21350)", "jsmith.ou.tree")))),
            1);
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee><fileName>VOL:/dir/a</fileName>"
                      "<userID>jsmith.ou.tree</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
  EXPECT_EQ(stderr_, "");
}

TEST_F(RemoveInvalidTrusteesTest, ResolvingAdSidIsKeptWhateverItsName) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/dir/a", adTrustee("Bob", "S-1-5-21-1-2-3-1104") +
                                                      adTrustee("", "S-1-5-21-1-2-3-500")))),
            1);
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(stubCalls(), 4);
  EXPECT_EQ(stderr_, "");
}

TEST_F(RemoveInvalidTrusteesTest, ResolvingAdSidNamedUnknownIsRemovedWithThePlainForm) {
  EXPECT_EQ(
      run(trusteeInfo(fileElement("/dir/a", adTrustee("Unknown(21350)", "S-1-5-21-1-2-3-1104")))),
      1);
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee><fileName>VOL:/dir/a</fileName>"
                      "<userID>S-1-5-21-1-2-3-1104</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
}

TEST_F(RemoveInvalidTrusteesTest, UnresolvedAdSidIsRemovedWithTheAdFormEvenWithAnOrdinaryName) {
  EXPECT_EQ(run(trusteeInfo(fileElement("dir/a", adTrustee("Alice", "S-1-5-21-1-2-3-1104") +
                                                     adTrustee("Carol", "S-1-5-21-1-2-3-9999")))),
            1);
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee type=\"adID\"><fileName>VOL:dir/a</fileName>"
                      "<userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
}

TEST_F(RemoveInvalidTrusteesTest, UnresolvedAdSidNamedUnknownIsRemovedWithTheAdForm) {
  run(trusteeInfo(fileElement("/a", adTrustee("Unknown(21350)", "S-1-5-21-1-2-3-9999"))));
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee type=\"adID\"><fileName>VOL:/a</fileName>"
                      "<userID>S-1-5-21-1-2-3-9999</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
}

TEST_F(RemoveInvalidTrusteesTest, SidTextThatDoesNotConvertIsRemovedWithTheAdForm) {
  run(trusteeInfo(fileElement("/a", trustee("Sam", "Sam.staff.tree"))));
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee type=\"adID\"><fileName>VOL:/a</fileName>"
                      "<userID>Sam.staff.tree</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
  EXPECT_EQ(stubCalls(), 1);
}

TEST_F(RemoveInvalidTrusteesTest, NameWithTrailingBlankIsNotTheMarker) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350) ", "jsmith.ou.tree")))), 1);
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, LowerCaseNameIsNotTheMarker) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("unknown(21350)", "jsmith.ou.tree")))), 1);
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, OrdinaryNameWithNonSidIdentifierIsKept) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("jsmith", "jsmith.ou.tree")))), 1);
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(stubCalls(), 0);
}

TEST_F(RemoveInvalidTrusteesTest, LowerCaseSIsNotAskedAbout) {
  run(trusteeInfo(fileElement("/a", trustee("sam", "s-1-5-21-1-2-3-9999"))));
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(stubCalls(), 0);
}

// The path filter.

TEST_F(RemoveInvalidTrusteesTest, PathFilterClearsUnknownNameAtAMatchingPath) {
  // A marker name seen before the path would make the following identifier go; a matching path
  // forgets it.
  const std::string info =
      trusteeInfo("<file>\n<name>Unknown(21350)</name><path><![CDATA[/test1/a]]></path>\n"
                  "<trustee><id>jsmith.ou.tree</id></trustee>\n</file>\n");
  EXPECT_EQ(run(info, "/test1"), 1);
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, PathFilterKeepsUnknownNameAtAPathThatDoesNotMatch) {
  const std::string info =
      trusteeInfo("<file>\n<name>Unknown(21350)</name><path><![CDATA[/test2/a]]></path>\n"
                  "<trustee><id>jsmith.ou.tree</id></trustee>\n</file>\n");
  EXPECT_EQ(run(info, "/test1"), 1);
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee><fileName>VOL:/test2/a</fileName>"
                      "<userID>jsmith.ou.tree</userID></removeTrustee></trustee>"
                      "</fileRequest>"}));
}

TEST_F(RemoveInvalidTrusteesTest, PathFilterLeavesTheRemovalDecisionsOfEveryFile) {
  const std::string info =
      trusteeInfo(fileElement("/test1/a", trustee("Unknown(21350)", "u1.tree") +
                                              adTrustee("Dan", "S-1-5-21-1-2-3-9999")) +
                  fileElement("/test10", trustee("Unknown(21350)", "u2.tree")) +
                  fileElement("/test2", trustee("Unknown(21350)", "u3.tree") +
                                            adTrustee("Eve", "S-1-5-21-1-2-3-1104")));
  EXPECT_EQ(run(info, "/test1"), 1);
  const std::string open = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
  EXPECT_EQ(requests(),
            (Requests{open + "<trustee><removeTrustee><fileName>VOL:/test1/a</fileName>"
                             "<userID>u1.tree</userID></removeTrustee></trustee></fileRequest>",
                      open + "<trustee><removeTrustee type=\"adID\"><fileName>VOL:/test1/a"
                             "</fileName><userID>S-1-5-21-1-2-3-9999</userID></removeTrustee>"
                             "</trustee></fileRequest>",
                      open + "<trustee><removeTrustee><fileName>VOL:/test10</fileName>"
                             "<userID>u2.tree</userID></removeTrustee></trustee></fileRequest>",
                      open + "<trustee><removeTrustee><fileName>VOL:/test2</fileName>"
                             "<userID>u3.tree</userID></removeTrustee></trustee></fileRequest>"}));
}

// The scan's flags.

TEST_F(RemoveInvalidTrusteesTest, MarkerNameOutsideAFileIsNotTheMarker) {
  EXPECT_EQ(run(trusteeInfo("<trustee><name>Unknown(21350)</name><id>u1.tree</id></trustee>\n")),
            1);
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, SidOutsideAFileIsNotAskedAbout) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", "") +
                            "<trustee><name>Zed</name><id>S-1-5-21-1-2-3-9999</id></trustee>\n")),
            1);
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(stubCalls(), 0);
}

TEST_F(RemoveInvalidTrusteesTest, IdentifierInsideZidIsSkipped) {
  EXPECT_EQ(run(trusteeInfo("<file>\n<name>Unknown(21350)</name><zid><id>u9.tree</id></zid>"
                            "<path><![CDATA[/a]]></path>\n</file>\n")),
            1);
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, EachTrusteeIsJudgedOnItsOwnName) {
  run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree") +
                                        trustee("jsmith", "u2.tree") +
                                        trustee("Unknown(21350)", "u3.tree"))));
  const std::vector<std::string> sent = requests();
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_TRUE(contains(sent[0], "<userID>u1.tree</userID>"));
  EXPECT_TRUE(contains(sent[1], "<userID>u3.tree</userID>"));
}

TEST_F(RemoveInvalidTrusteesTest, RequestsCarryNoGemelPath) {
  reflectOnGemel = 1;
  run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree"))));
  ASSERT_EQ(requests().size(), 1u);
  EXPECT_FALSE(contains(requests()[0], "gemelPath"));
}

TEST_F(RemoveInvalidTrusteesTest, EmptyInfoFileIsAFinishedScan) {
  EXPECT_EQ(run(""), 1);
  EXPECT_TRUE(requests().empty());
  EXPECT_EQ(stderr_, "");
}

TEST_F(RemoveInvalidTrusteesTest, ReaderTraceNamesTheScan) {
  debug = 1;
  testing::internal::CaptureStdout();
  run(trusteeInfo(fileElement("/a", "")));
  const std::string trace = testing::internal::GetCapturedStdout();
  EXPECT_TRUE(contains(trace, "**copyTrustees** ccode=0  endtag=0  tag=file\n"));
  EXPECT_TRUE(contains(trace, "**copyTrustees** ccode=-99  endtag="));
}

// Replies and failed removals.

TEST_F(RemoveInvalidTrusteesTest, RefusedRemovalIsReportedAndTheScanGoesOn) {
  setReply(kRefusedReply);
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree")) +
                            fileElement("/b", adTrustee("Carl", "S-1-5-21-1-2-3-9999")))),
            1);
  EXPECT_EQ(requests().size(), 2u);
  EXPECT_EQ(stderr_,
            "Error removing trustee u1.tree from VOL:/a: No such trustee(nobody)\n"
            "Error removing trustee S-1-5-21-1-2-3-9999 from VOL:/b: No such trustee(nobody)\n");
}

TEST_F(RemoveInvalidTrusteesTest, UnrecognisedReplyIsReportedAndTheScanGoesOn) {
  setReply("");
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree")))), 1);
  const std::vector<std::string> sent = requests();
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(stderr_, "Unable to find return value for the request.  response=" + sent[0] +
                         "\nError removing trustee u1.tree from VOL:/a: ()\n");
}

TEST_F(RemoveInvalidTrusteesTest, FailedSendIsReportedAndClearsTheMarker) {
  redirectFilesCommandFile("/dev/full");
  // The second file's trustee is judged afresh: its name ends the marker of the first.
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree")) +
                            "<file>\n<path><![CDATA[/b]]></path>\n<trustee><id>u2.tree</id>"
                            "</trustee>\n</file>\n")),
            1);
  EXPECT_EQ(stderr_,
            "Error sending the request to the admin file system.  err=No space left on device\n");
}

// Values that do not fit their fields.

TEST_F(RemoveInvalidTrusteesTest, PathTooLongSkipsItsFileOnly) {
  const std::string longPath = "/" + std::string(4096, 'p');
  EXPECT_EQ(run(trusteeInfo(fileElement(longPath, trustee("Unknown(21350)", "u1.tree") +
                                                      adTrustee("X", "S-1-5-21-1-2-3-9999")) +
                            fileElement("/b", trustee("Unknown(21350)", "u2.tree")))),
            1);
  EXPECT_EQ(requests(),
            (Requests{"<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                      "<trustee><removeTrustee><fileName>VOL:/b</fileName>"
                      "<userID>u2.tree</userID></removeTrustee></trustee></fileRequest>"}));
  EXPECT_EQ(stderr_, "Value too long in element path; entry skipped.\n");
}

TEST_F(RemoveInvalidTrusteesTest, PathThatJustFitsAfterTheVolumeIsSent) {
  // "VOL:" takes 4 of the 4,096 bytes and the terminator one more.
  const std::string path = "/" + std::string(4090, 'p');
  run(trusteeInfo(fileElement(path, trustee("Unknown(21350)", "u1.tree"))));
  ASSERT_EQ(requests().size(), 1u);
  EXPECT_TRUE(contains(requests()[0], "<fileName>VOL:" + path + "</fileName>"));
  EXPECT_EQ(stderr_, "");
}

TEST_F(RemoveInvalidTrusteesTest, IdentifierTooLongIsSkipped) {
  const std::string longId = "S-1-5-21-" + std::string(190, '7');
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", longId) +
                                                  trustee("Unknown(21350)", "u2.tree")))),
            1);
  ASSERT_EQ(requests().size(), 1u);
  EXPECT_TRUE(contains(requests()[0], "<userID>u2.tree</userID>"));
  EXPECT_EQ(stderr_, "Value too long in element id; entry skipped.\n");
  EXPECT_EQ(stubCalls(), 0);
}

TEST_F(RemoveInvalidTrusteesTest, NameTooLongIsNotTheMarkerAndTheSidStillDecides) {
  const std::string longName = "Unknown(21350)" + std::string(1100, 'n');
  run(trusteeInfo(fileElement("/a", adTrustee(longName, "S-1-5-21-1-2-3-9999") +
                                        trustee(longName, "u2.tree"))));
  ASSERT_EQ(requests().size(), 1u);
  EXPECT_TRUE(contains(requests()[0], "<removeTrustee type=\"adID\">"));
  EXPECT_EQ(stderr_, "");
}

// Reading failures in the scan. A text that runs past the reader's window leaves only text in
// it, so the reader hands back the element's start tag a second time, and reading its contents
// again meets the end of the input.

TEST_F(RemoveInvalidTrusteesTest, UnreadablePathEndsWithZero) {
  EXPECT_EQ(run("<file><path>" + std::string(9000, 'x')), 0);
  EXPECT_EQ(stderr_, "Value too long in element path; entry skipped.\n"
                     "Failed to get the contents of tag path\n");
}

TEST_F(RemoveInvalidTrusteesTest, UnreadableNameCountsAsAFinishedScan) {
  EXPECT_EQ(run("<file><path>/a</path><trustee><name>" + std::string(9000, 'x')), 1);
  EXPECT_EQ(stderr_, "Failed to get the contents of tag name\n");
}

TEST_F(RemoveInvalidTrusteesTest, UnreadableIdentifierEndsWithZero) {
  EXPECT_EQ(
      run("<file><path>/a</path><trustee><name>Unknown(21350)</name><id>" + std::string(9000, 'x')),
      0);
  EXPECT_EQ(stderr_, "Value too long in element id; entry skipped.\n"
                     "Failed to get the contents of tag id\n");
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, ReadErrorEndsWithZero) {
  // A directory opens for reading but cannot be read.
  ASSERT_EQ(mkdir((directory_.path() + "/TrusteeInfo.xml").c_str(), 0700), 0);
  EXPECT_EQ(runOnFile("TrusteeInfo.xml"), 0);
  EXPECT_EQ(stderr_, "Error Is a directory reading the input file.\n");
}

// Preparation.

TEST_F(RemoveInvalidTrusteesTest, InfoFileThatCannotBeOpenedEndsWithZero) {
  EXPECT_EQ(runOnFile("TrusteeInfo.xml"), 0);
  EXPECT_EQ(stderr_, " util/trovan/trovan[3210] Failed to open file " + directory_.path() +
                         "/TrusteeInfo.xml:No such file or directory\n");
  EXPECT_TRUE(requests().empty());
}

TEST_F(RemoveInvalidTrusteesTest, FailedRedirectionOfStandardInputEndsWithZero) {
  writeFile("TrusteeInfo.xml", trusteeInfo(""));
  failNextStdinRedirect();
  EXPECT_EQ(runOnFile("TrusteeInfo.xml"), 0);
  EXPECT_EQ(stderr_, "util/trovan/trovan[3218] Failed to redirect " + directory_.path() +
                         "/TrusteeInfo.xml to stdin:Bad file descriptor\n");
}

TEST_F(RemoveInvalidTrusteesTest, CommandFileThatCannotBeOpenedEndsWithZero) {
  redirectFilesCommandFile(nullptr);
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", trustee("Unknown(21350)", "u1.tree")))), 0);
  EXPECT_EQ(stderr_, "Unable to open the admin file for administration ofthe file system.  "
                     "err=No such file or directory\n");
  EXPECT_EQ(adminFd, 0);
}

TEST_F(RemoveInvalidTrusteesTest, StandardInputStaysOnTheInfoFileAndTheCommandFileIsClosed) {
  EXPECT_EQ(run(trusteeInfo("")), 1);
  struct stat input {};
  struct stat info {};
  ASSERT_EQ(fstat(0, &input), 0);
  ASSERT_EQ(stat((directory_.path() + "/TrusteeInfo.xml").c_str(), &info), 0);
  EXPECT_EQ(input.st_ino, info.st_ino);
  EXPECT_EQ(input.st_dev, info.st_dev);
  EXPECT_EQ(adminFd, 0);
}

// Without the identity library nothing is removed for want of a lookup.

class RemoveWithoutIdentityLibraryTest : public RemoveInvalidTrusteesTest {
protected:
  void SetUp() override {
    loadStub_ = false;
    RemoveInvalidTrusteesTest::SetUp();
    if (void *found = dlopen(kIdentityLibraryName, RTLD_NOW); found != nullptr) {
      dlclose(found);
      GTEST_SKIP() << "an identity library is installed on this machine";
    }
  }
};

TEST_F(RemoveWithoutIdentityLibraryTest, OnlyMarkerNamesAreRemovedAndTheLoadFailureIsToldOnce) {
  EXPECT_EQ(run(trusteeInfo(fileElement("/a", adTrustee("Carol", "S-1-5-21-1-2-3-9999") +
                                                  trustee("Unknown(21350)", "u1.tree") +
                                                  adTrustee("Unknown(21350)", "S-1-5-21-7")) +
                            fileElement("/b", trustee("Sam", "Sam.staff.tree")))),
            1);
  const std::string open = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
  EXPECT_EQ(requests(),
            (Requests{open + "<trustee><removeTrustee><fileName>VOL:/a</fileName>"
                             "<userID>u1.tree</userID></removeTrustee></trustee></fileRequest>",
                      open + "<trustee><removeTrustee><fileName>VOL:/a</fileName>"
                             "<userID>S-1-5-21-7</userID></removeTrustee></trustee>"
                             "</fileRequest>"}));
  EXPECT_EQ(stderr_,
            "Unable to load the identity library liblumo.so.0: liblumo.so.0: cannot open shared "
            "object file: No such file or directory\n");
}

}  // namespace
