#include "save/info_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <thread>

#include "document/run_settings.h"
#include "save_test_support.h"

namespace {

using savetest::CapturedFd;
using savetest::TempDir;

const std::string kWrapperStart = "<quillReply>\n<result value=\"0\">\n</result>\n";
const std::string kWrapperEnd = "</quillReply>\n";

std::string file(const std::string &path, const std::string &body = "") {
  return "<file>\n<zid>1</zid><path><![CDATA[" + path + "]]></path>\n" + body + "</file>\n";
}
const std::string kArbor =
    "<trustee><name>.a.o.t</name><id></id><rights value=\"R\"><read/></rights></trustee>\n";
const std::string kAd = "<trustee type=\"adID\"><name>b</name><id>S-1-5-1</id><rights "
                        "value=\"R\"><read/></rights></trustee>\n";
const std::string kArborUser = "<user><id></id><spaceUsed>1</spaceUsed><quotaAmount>5</"
                               "quotaAmount>\n<name>.a.o.t</name>\n</user>\n";
const std::string kAdUser = "<user "
                            "type=\"adID\"><id>S-1-5-1</id><spaceUsed>1</spaceUsed><quotaAmount>6</"
                            "quotaAmount>\n<name>b</name>\n</user>\n";

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class ExtractInfoFile : public testing::Test {
protected:
  void SetUp() override {
    resetRunSettings();
    ASSERT_FALSE(dir_.path().empty());
  }
  void TearDown() override { resetRunSettings(); }

  Outcome extract(const char *fileName, const char *path, const char *elementName) {
    CapturedFd out(1);
    CapturedFd err(2);
    const int status = extractInfoFile(dir_.dir().c_str(), fileName, path, elementName);
    std::string errText = err.take();
    return {status, out.take(), errText};
  }

  TempDir dir_;
};

const std::string kTrustees = "<trusteeInfo>\n" + file("/test1/a", kArbor + kAd) +
                              file("/test2", kAd) + file("/test10", kArbor) + "</trusteeInfo>\n";

TEST_F(ExtractInfoFile, EmptyInfoFileWritesNothingAndSucceeds) {
  dir_.write("TrusteeInfo.xml", "");
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "");
}

TEST_F(ExtractInfoFile, CopiesTheBodyWithoutTheReplyWrapper) {
  dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, kTrustees);
  EXPECT_EQ(r.err, "");
}

TEST_F(ExtractInfoFile, ArborOnlyDropsAdTrusteesAndKeepsUntypedOnes) {
  arborUsers = 1;
  dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<trusteeInfo>\n" + file("/test1/a", kArbor) + file("/test2") +
                       file("/test10", kArbor) + "</trusteeInfo>\n");
}

TEST_F(ExtractInfoFile, AdOnlyDropsUntypedTrusteesAndKeepsAdOnes) {
  adUsers = 1;
  dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<trusteeInfo>\n" + file("/test1/a", kAd) + file("/test2", kAd) +
                       file("/test10") + "</trusteeInfo>\n");
}

TEST_F(ExtractInfoFile, UserQuotasAreFilteredByUserType) {
  const std::string users = "<userInfo>\n" + kArborUser + kAdUser + "</userInfo>\n";
  dir_.write("UserInfo.xml", kWrapperStart + users + kWrapperEnd);
  arborUsers = 1;
  EXPECT_EQ(extract("UserInfo.xml", nullptr, nullptr).out,
            "<userInfo>\n" + kArborUser + "</userInfo>\n");
  arborUsers = 0;
  adUsers = 1;
  EXPECT_EQ(extract("UserInfo.xml", nullptr, nullptr).out,
            "<userInfo>\n" + kAdUser + "</userInfo>\n");
}

TEST_F(ExtractInfoFile, DirectoryQuotasAreNeverFilteredByUserType) {
  const std::string dirs =
      "<dirInfo>\n<directory><path>\\a</path><user></user></directory>\n</dirInfo>\n";
  dir_.write("DirInfo.xml", dirs);
  adUsers = 1;
  EXPECT_EQ(extract("DirInfo.xml", nullptr, "directory").out, dirs);
}

TEST_F(ExtractInfoFile, FileNamesAreComparedExactly) {
  const std::string text = "<trusteeInfo>\n" + file("/a", kAd) + "</trusteeInfo>\n";
  dir_.write("trusteeinfo.xml", text);
  arborUsers = 1;
  EXPECT_EQ(extract("trusteeinfo.xml", nullptr, "file").out, text);
}

TEST_F(ExtractInfoFile, AdTrusteeWithoutEndTagFailsWithNothingWritten) {
  arborUsers = 1;
  dir_.write("TrusteeInfo.xml", "<trusteeInfo>\n" + file("/a", kAd) +
                                    "<file><trustee type=\"adID\"><name>x</name>\n</file>\n");
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "Missing end tag : </trustee>\n");
}

TEST_F(ExtractInfoFile, AdOnlyUserQuotaWithoutEndTagAddsTheUserQuotaMessage) {
  adUsers = 1;
  dir_.write("UserInfo.xml", "<userInfo>\n<user><name>x</name>\n</userInfo>\n");
  const Outcome r = extract("UserInfo.xml", nullptr, nullptr);
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "Missing end tag : </user>\n"
                   "Failed to remove given object from infile -> admin_user_quota_file.\n");
}

TEST_F(ExtractInfoFile, ArborOnlyUserQuotaWithoutEndTagHasOnlyTheEndTagMessage) {
  arborUsers = 1;
  dir_.write("UserInfo.xml", "<userInfo>\n<user type=\"adID\"><name>x</name>\n</userInfo>\n");
  const Outcome r = extract("UserInfo.xml", nullptr, nullptr);
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.err, "Missing end tag : </user>\n");
}

TEST_F(ExtractInfoFile, PathFilterKeepsPlainPrefixMatches) {
  dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", "/test1", "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<trusteeInfo>\n" + file("/test1/a", kArbor + kAd) + file("/test10", kArbor) +
                       "</trusteeInfo>\n");
}

TEST_F(ExtractInfoFile, UserTypeAndPathFiltersTogether) {
  arborUsers = 1;
  dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", "/test1", "file");
  EXPECT_EQ(r.out, "<trusteeInfo>\n" + file("/test1/a", kArbor) + file("/test10", kArbor) +
                       "</trusteeInfo>\n");
}

TEST_F(ExtractInfoFile, DirectoryQuotaFilterWorksOnBackslashPaths) {
  auto dir = [](const std::string &path) {
    return "<directory><zid>5</zid><path>" + path +
           "</path><spaceUsed>0</spaceUsed><quotaAmount>100</quotaAmount></directory>\n";
  };
  dir_.write("DirInfo.xml", kWrapperStart + "<dirInfo>\n" + dir("\\test1\\a") + dir("\\test2") +
                                dir("\\test10") + "</dirInfo>\n" + kWrapperEnd);
  const Outcome r = extract("DirInfo.xml", "\\test1", "directory");
  EXPECT_EQ(r.out, "<dirInfo>\n" + dir("\\test1\\a") + dir("\\test10") + "</dirInfo>\n");
}

TEST_F(ExtractInfoFile, FileThatCannotBeOpenedIsReported) {
  const Outcome r = extract("Missing.xml", nullptr, nullptr);
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err,
            "Unable to open " + dir_.dir() + "Missing.xml.  err=No such file or directory\n");
}

TEST_F(ExtractInfoFile, ReadFailureIsReportedWithItsErrno) {
  ASSERT_EQ(mkdir(dir_.file("UserInfo.xml").c_str(), 0700), 0);
  const Outcome r = extract("UserInfo.xml", nullptr, nullptr);
  EXPECT_EQ(r.status, EISDIR);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "fread failed. Error=Is a directory\n");
}

TEST_F(ExtractInfoFile, WriteFailureIsReportedWithItsErrno) {
  dir_.write("UserInfo.xml", "<userInfo>\n</userInfo>\n");
  dir_.write("out", "");
  const int readOnly = open(dir_.file("out").c_str(), O_RDONLY);
  const int saved = dup(1);
  dup2(readOnly, 1);
  CapturedFd err(2);
  const int status = extractInfoFile(dir_.dir().c_str(), "UserInfo.xml", nullptr, nullptr);
  const std::string errText = err.take();
  dup2(saved, 1);
  close(saved);
  close(readOnly);
  EXPECT_EQ(status, EBADF);
  EXPECT_EQ(errText, "Error Bad file descriptor saving information to standard out\n");
}

TEST_F(ExtractInfoFile, LargeFileIsCopiedWhole) {
  std::string body = "<trusteeInfo>\n";
  for (int i = 0; body.size() < 1'000'000; ++i)
    body += file("/d" + std::to_string(i), kArbor);
  body += "</trusteeInfo>\n";
  dir_.write("TrusteeInfo.xml", kWrapperStart + body + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, body);
}

TEST_F(ExtractInfoFile, FileWhoseSizeIsNotKnownIsReadToItsEnd) {
  // A pipe reports a size of 0, as the file system's virtual files may.
  ASSERT_EQ(mkfifo(dir_.file("TrusteeInfo.xml").c_str(), 0600), 0);
  std::string body = "<trusteeInfo>\n";
  for (int i = 0; body.size() < 300'000; ++i)
    body += file("/d" + std::to_string(i), kAd);
  body += "</trusteeInfo>\n";
  const std::string content = kWrapperStart + body + kWrapperEnd;
  std::thread writer([&] {
    const int fd = open(dir_.file("TrusteeInfo.xml").c_str(), O_WRONLY);
    for (std::size_t at = 0; at < content.size();) {
      const ssize_t count =
          write(fd, content.data() + at, std::min<std::size_t>(5000, content.size() - at));
      if (count <= 0) break;
      at += static_cast<std::size_t>(count);
    }
    close(fd);
  });
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  writer.join();
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, body);
}

TEST_F(ExtractInfoFile, TextEndsAtItsFirstNul) {
  dir_.write("DirInfo.xml", std::string("<dirInfo>\n\0</dirInfo>\n", 22));
  EXPECT_EQ(extract("DirInfo.xml", nullptr, "directory").out, "<dirInfo>\n");
  dir_.write("UserInfo.xml", std::string("\0<userInfo>\n", 12));
  EXPECT_EQ(extract("UserInfo.xml", nullptr, nullptr).out, "");
}

TEST_F(ExtractInfoFile, NulFarIntoALargeFileEndsTheTextThere) {
  // The NUL lies past the first megabyte read; the end of the reply wrapper lies after it.
  std::string body = "<trusteeInfo>\n";
  for (int i = 0; body.size() < 1'500'000; ++i)
    body += file("/d" + std::to_string(i), kArbor);
  std::string tail = "</trusteeInfo>\n";
  for (int i = 0; tail.size() < 700'000; ++i)
    tail += file("/e" + std::to_string(i), kArbor);
  dir_.write("TrusteeInfo.xml", kWrapperStart + body + std::string(1, '\0') + tail + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, body);
}

TEST_F(ExtractInfoFile, WrapperInTheMiddleOfTheTextIsCutAsItStands) {
  // Only the first occurrences go, wherever they are, with the character after each.
  const std::string text = std::string(3000, 'a') + "<quillReply>\n" + std::string(10, 'b') +
                           "<result value=\"0\"></result>\n" + std::string(5000, 'c') +
                           "</quillReply>\n" + std::string(20, 'd');
  dir_.write("DirInfo.xml", text);
  EXPECT_EQ(extract("DirInfo.xml", nullptr, "directory").out,
            std::string(3000, 'a') + std::string(10, 'b') + std::string(5000, 'c') +
                std::string(20, 'd'));
}

TEST_F(ExtractInfoFile, ClosingWrapperTagCutAcrossTwoReadsIsStillCut) {
  // The file is read a megabyte at a time; the closing tag starts five bytes before the first
  // megabyte ends, and the text goes on after it.
  constexpr std::size_t kChunk = 1 << 20;
  std::string body = "<trusteeInfo>\n";
  for (int i = 0; kWrapperStart.size() + body.size() < kChunk - 5 - 200; ++i)
    body += file("/d" + std::to_string(i), kArbor);
  body += std::string(kChunk - 5 - kWrapperStart.size() - body.size(), 'x');
  const std::string after = "</trusteeInfo>\n" + file("/after", kArbor);
  dir_.write("TrusteeInfo.xml", kWrapperStart + body + kWrapperEnd + after);
  ASSERT_EQ((kWrapperStart + body).size(), kChunk - 5);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, body + after);
  EXPECT_EQ(r.err, "");
}

TEST_F(ExtractInfoFile, BothFiltersOnALargeFileKeepOnlyTheMatchingElements) {
  std::string body = "<trusteeInfo>\n";
  std::string kept = "<trusteeInfo>\n";
  for (int i = 0; body.size() < 2'500'000; ++i) {
    const std::string path = (i % 7 == 0 ? "/test1/" : "/other/") + std::to_string(i);
    body += file(path, i % 2 == 0 ? kArbor + kAd : kAd + kArbor);
    if (i % 7 == 0) kept += file(path, kArbor);
  }
  body += "</trusteeInfo>\n";
  kept += "</trusteeInfo>\n";
  dir_.write("TrusteeInfo.xml", kWrapperStart + body + kWrapperEnd);
  arborUsers = true;
  const Outcome r = extract("TrusteeInfo.xml", "/test1", "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, kept);
  EXPECT_EQ(r.err, "");
}

TEST_F(ExtractInfoFile, FileLargeEnoughForPagesFaultedAheadIsCopiedWhole) {
  // Tens of megabytes: many reads into one buffer whose pages are faulted in as it fills.
  std::string body = "<trusteeInfo>\n";
  body.reserve(41 << 20);
  for (int i = 0; body.size() < (40 << 20); ++i)
    body += file("/d" + std::to_string(i), kArbor);
  body += "</trusteeInfo>\n";
  dir_.write("TrusteeInfo.xml", kWrapperStart + body + kWrapperEnd);
  const Outcome r = extract("TrusteeInfo.xml", nullptr, "file");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.size(), body.size());
  EXPECT_TRUE(r.out == body);
}

}  // namespace
