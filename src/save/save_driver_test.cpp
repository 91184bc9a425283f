#include "save/save_driver.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>

#include "cli/options.h"
#include "document/run_settings.h"
#include "save/save_plan.h"
#include "save_test_support.h"

namespace {

using savetest::CapturedFd;
using savetest::TempDir;

struct PlanCase {
  const char *mask;
  bool rxl;
  TrusteeSource trustees;
  bool userQuotas;
  bool dirQuotas;
};

constexpr TrusteeSource kNone = TrusteeSource::none;
constexpr TrusteeSource kInfo = TrusteeSource::infoFile;
constexpr TrusteeSource kRxl = TrusteeSource::rxlFile;
constexpr TrusteeSource kRemove = TrusteeSource::removalThenInfoFile;

const PlanCase kPlans[] = {
    {"", false, kInfo, true, true},
    {"", true, kRxl, true, true},
    {"t", false, kInfo, false, false},
    {"t", true, kRxl, false, false},
    {"u", false, kNone, true, false},
    {"u", true, kNone, true, false},
    {"d", false, kNone, false, true},
    {"d", true, kNone, false, true},
    {"ud", false, kNone, true, true},
    {"ud", true, kNone, true, true},
    {"td", false, kInfo, false, true},
    {"tu", true, kRxl, true, false},
    // The remove-invalid letter: removal only with trustees from the info file.
    {"r", false, kRemove, false, false},
    {"r", true, kRemove, false, false},
    {"a", false, kRemove, true, true},
    {"a", true, kRxl, true, true},
    {"rt", false, kRemove, false, false},
    {"rt", true, kRxl, false, false},
    {"tr", false, kRemove, false, false},
    {"ru", false, kNone, true, false},
    {"ru", true, kNone, true, false},
    {"rd", false, kNone, false, true},
    {"rd", true, kNone, false, true},
    {"rud", false, kNone, true, true},
    {"rtud", false, kRemove, true, true},
    {"rrr", false, kRemove, false, false},
};

TEST(PlanSave, EveryMaskCombinationDecidesSectionsAndRemoval) {
  for (const PlanCase &c : kPlans) {
    MaskFlags flags;
    testing::internal::CaptureStderr();
    ASSERT_EQ(parseMask(c.mask, flags), 0) << c.mask;
    testing::internal::GetCapturedStderr();
    const SavePlan plan = planSave(flags, c.rxl);
    EXPECT_EQ(plan.trustees, c.trustees) << "mask \"" << c.mask << "\" rxl " << c.rxl;
    EXPECT_EQ(plan.userQuotas, c.userQuotas) << "mask \"" << c.mask << "\"";
    EXPECT_EQ(plan.dirQuotas, c.dirQuotas) << "mask \"" << c.mask << "\"";
  }
}

const std::string kWrapperStart = "<quillReply>\n<result value=\"0\">\n</result>\n";
const std::string kWrapperEnd = "</quillReply>\n";

std::string file(const std::string &path) {
  return "<file>\n<zid>1</zid><path><![CDATA[" + path +
         "]]></path>\n<trustee><name>.a.o.t</name><id></id><rights value=\"R\"><read/></rights>"
         "</trustee>\n</file>\n";
}
std::string directory(const std::string &path) {
  return "<directory><zid>2</zid><path>" + path +
         "</path><spaceUsed>0</spaceUsed><quotaAmount>9</quotaAmount></directory>\n";
}
const std::string kTrustees =
    "<trusteeInfo>\n" + file("/test1/a") + file("/test2") + "</trusteeInfo>\n";
const std::string kUsers =
    "<userInfo>\n<user><id></id><spaceUsed>0</spaceUsed><quotaAmount>5</quotaAmount>\n"
    "<name>.a.o.t</name>\n</user>\n</userInfo>\n";
const std::string kDirs =
    "<dirInfo>\n" + directory("\\test1\\x") + directory("\\test2") + "</dirInfo>\n";

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class SaveMetadata : public testing::Test {
protected:
  void SetUp() override {
    resetRunSettings();
    ASSERT_FALSE(dir_.path().empty());
    dir_.write("TrusteeInfo.xml", kWrapperStart + kTrustees + kWrapperEnd);
    dir_.write("UserInfo.xml", kWrapperStart + kUsers + kWrapperEnd);
    dir_.write("DirInfo.xml", kWrapperStart + kDirs + kWrapperEnd);
  }
  void TearDown() override { resetRunSettings(); }

  Outcome save(const char *mask, char *path = nullptr) {
    CapturedFd out(1);
    CapturedFd err(2);
    const int status = saveMetadata("VOL", dir_.dir().c_str(), mask, nullptr, path);
    std::string errText = err.take();
    return {status, out.take(), errText};
  }

  TempDir dir_;
};

TEST_F(SaveMetadata, EmptyMaskWritesTrusteesUserQuotasAndDirectoryQuotas) {
  const Outcome r = save("");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n" + kTrustees + kUsers + kDirs + "</metadata>\n");
  EXPECT_EQ(r.err, "");
}

TEST_F(SaveMetadata, MaskUdWritesUserAndDirectoryQuotasOnly) {
  const Outcome r = save("ud");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n" + kUsers + kDirs + "</metadata>\n");
}

TEST_F(SaveMetadata, SectionsComeInFixedOrderWhateverTheLetterOrder) {
  EXPECT_EQ(save("dut").out, "<metadata>\n" + kTrustees + kUsers + kDirs + "</metadata>\n");
}

TEST_F(SaveMetadata, SingleLetters) {
  EXPECT_EQ(save("t").out, "<metadata>\n" + kTrustees + "</metadata>\n");
  EXPECT_EQ(save("u").out, "<metadata>\n" + kUsers + "</metadata>\n");
  EXPECT_EQ(save("d").out, "<metadata>\n" + kDirs + "</metadata>\n");
}

TEST_F(SaveMetadata, MaskRdWritesDirectoryQuotasOnlyWithoutRemoval) {
  const Outcome r = save("rd");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n" + kDirs + "</metadata>\n");
  EXPECT_EQ(r.err, "");
}

TEST_F(SaveMetadata, MaskRuWritesUserQuotasOnlyWithoutRemoval) {
  const Outcome r = save("ru");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n" + kUsers + "</metadata>\n");
}

TEST_F(SaveMetadata, UnknownMaskLetterWritesNothing) {
  Outcome r = save("x");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "Unknown metadata type in the mask: x\n");
  r = save("tux");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "");
}

TEST_F(SaveMetadata, PathFiltersTrusteesAndDirectoryQuotasInBackslashForm) {
  char path[] = "/test1";
  const Outcome r = save("td", path);
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n<trusteeInfo>\n" + file("/test1/a") + "</trusteeInfo>\n" +
                       "<dirInfo>\n" + directory("\\test1\\x") + "</dirInfo>\n</metadata>\n");
  EXPECT_STREQ(path, "\\test1");
}

TEST_F(SaveMetadata, PathNeverFiltersUserQuotasNorChangesWithoutDirectoryQuotas) {
  char path[] = "/test2";
  const Outcome r = save("tu", path);
  EXPECT_EQ(r.out, "<metadata>\n<trusteeInfo>\n" + file("/test2") + "</trusteeInfo>\n" + kUsers +
                       "</metadata>\n");
  EXPECT_STREQ(path, "/test2");
}

TEST_F(SaveMetadata, UserTypeFilterAppliesToTrusteesAndUserQuotas) {
  dir_.write("UserInfo.xml",
             "<userInfo>\n<user type=\"adID\"><name>b</name></user>\n</userInfo>\n");
  arborUsers = 1;
  EXPECT_EQ(save("u").out, "<metadata>\n<userInfo>\n</userInfo>\n</metadata>\n");
}

TEST_F(SaveMetadata, FailedSectionEndsTheSaveWithWhatWasWrittenLeftInPlace) {
  unlink(dir_.file("UserInfo.xml").c_str());
  const Outcome r = save("");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "<metadata>\n" + kTrustees);
  EXPECT_EQ(r.err, "Unable to open " + dir_.dir() +
                       "UserInfo.xml.  err=No such file or directory\n"
                       "An error has caused early termination. ccode=-1\n");
}

TEST_F(SaveMetadata, FailedTrusteeSectionEndsTheSave) {
  dir_.write("TrusteeInfo.xml", "<trustee type=\"adID\">");
  arborUsers = 1;
  const Outcome r = save("t");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "<metadata>\n");
  EXPECT_EQ(r.err,
            "Missing end tag : </trustee>\nAn error has caused early termination. ccode=-1\n");
}

TEST_F(SaveMetadata, FailedDirectoryQuotaSectionEndsTheSave) {
  unlink(dir_.file("DirInfo.xml").c_str());
  const Outcome r = save("ud");
  EXPECT_EQ(r.status, -1);
  EXPECT_EQ(r.out, "<metadata>\n" + kUsers);
}

TEST_F(SaveMetadata, FailedDocumentWriteIsReportedWithItsErrno) {
  dir_.write("out", "");
  const int readOnly = open(dir_.file("out").c_str(), O_RDONLY);
  const int saved = dup(1);
  dup2(readOnly, 1);
  CapturedFd err(2);
  const int status = saveMetadata("VOL", dir_.dir().c_str(), "u", nullptr, nullptr);
  const std::string errText = err.take();
  dup2(saved, 1);
  close(saved);
  close(readOnly);
  EXPECT_EQ(status, EBADF);
  EXPECT_EQ(errText, "Error Bad file descriptor writing to output file\n"
                     "An error has caused early termination. ccode=9\n");
}

TEST_F(SaveMetadata, EmptyInfoFilesGiveOnlyTheDocumentElement) {
  dir_.write("TrusteeInfo.xml", "");
  dir_.write("UserInfo.xml", "");
  dir_.write("DirInfo.xml", "");
  const Outcome r = save("");
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "<metadata>\n</metadata>\n");
}

}  // namespace
