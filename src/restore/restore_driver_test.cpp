// The restore driver on documents whose selected sections need no volume: the mask or RXL mode
// skips the others. Sections that reach the file system are tested under the simulator.
#include "restore/restore_driver.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <ostream>
#include <string>

#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

class RestoreDriverTest : public RestoreWalkTest {
protected:
  int run(const std::string &doc, const char *mask, int rxlMode = 0) {
    return walkDocument(
        doc, [mask, rxlMode] { return restoreMetadata("VOL1", nullptr, mask, nullptr, rxlMode); });
  }
  // Restores `doc` with the actions shown and checks that it succeeds printing nothing.
  void expectQuiet(const std::string &doc, const char *mask, int rxlMode = 0) {
    showActions = 1;
    EXPECT_EQ(run(doc, mask, rxlMode), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
  }
};

const std::string kQuotaSections =
    "<userInfo>\n<user><quotaAmount>1</quotaAmount><name>a.T.</name></user>\n</userInfo>\n"
    "<dirInfo>\n<directory><path>\\a</path><quotaAmount>1</quotaAmount></directory>\n</dirInfo>\n";

TEST_F(RestoreDriverTest, EmptyMetadataRestoresNothing) {
  expectQuiet("<metadata></metadata>", "");
}

TEST_F(RestoreDriverTest, TrusteeMaskSkipsQuotaSectionsQuietly) {
  expectQuiet("<metadata>\n" + kQuotaSections + "</metadata>\n", "t");
}

TEST_F(RestoreDriverTest, RxlModeNeverRestoresQuotas) {
  expectQuiet("<metadata>\n" + kQuotaSections + "</metadata>\n", "a", 1);
}

// Documents of which the status and the messages are all there is to check.
struct DriverCase {
  const char *name;
  std::string document;
  const char *mask;
  int result;
  const char *err;
};

void PrintTo(const DriverCase &driverCase, std::ostream *out) { *out << driverCase.name; }

class RestoreDriverCase : public RestoreDriverTest,
                          public testing::WithParamInterface<DriverCase> {};

TEST_P(RestoreDriverCase, GivesItsStatusAndMessages) {
  EXPECT_EQ(run(GetParam().document, GetParam().mask), GetParam().result);
  EXPECT_EQ(err, GetParam().err);
}

constexpr char kUnrecognized[] = "Unrecognized file contents.  Unable to start the restore\n";

INSTANTIATE_TEST_SUITE_P(
    RestoreDriverTest, RestoreDriverCase,
    testing::Values(
        DriverCase{"EmptyInputIsUnrecognizedNotCutOff", "", "", -1, kUnrecognized},
        DriverCase{"XmlDeclarationFirstIsUnrecognized",
                   "<?xml version=\"1.0\"?>\n<metadata></metadata>", "", -1, kUnrecognized},
        DriverCase{"DocumentWithoutTheRootIsRefusedAsAWhole", "<trusteeInfo></trusteeInfo>", "", -1,
                   kUnrecognized},
        DriverCase{"EndTagMetadataFirstIsAccepted", "</metadata><x/></metadata>", "t", 0,
                   "Unrecognized tag: x\n"},
        DriverCase{"UserMaskSkipsTrusteeSections",
                   "<metadata><trusteeInfo><file><path>/f</path></file></trusteeInfo>"
                   "<dirInfo></dirInfo></metadata>",
                   "u", 0, ""},
        // The input runs out after the last tag: the reader gives that tag once more, then -99.
        DriverCase{"MissingMetadataEndGivesMinus99", "<metadata>\n<foo>\n", "t", kEndOfInput,
                   "Unrecognized tag: foo\nUnrecognized tag: foo\n"},
        // The repeated start tag of the skipped section is skipped once more, and finds no end
        // tag.
        DriverCase{"MissingMetadataEndAfterASkippedSectionSkipsItAgain",
                   "<metadata>\n" + kQuotaSections, "t", -1, "Unable to find end tag: dirInfo\n"},
        DriverCase{"StrayTopLevelTagIsReportedAndTheRestoreGoesOn",
                   "<metadata><foo><bar/></foo></metadata>", "", 0,
                   "Unrecognized tag: foo\nUnrecognized tag: bar\n"},
        DriverCase{"SkippedSectionWithoutItsEndTagEndsTheRestore", "<metadata><userInfo><user>",
                   "t", -1, "Unable to find end tag: userInfo\n"},
        DriverCase{"UnknownMaskLetterIsReturnedAsItStands", "<metadata></metadata>", "q", -1,
                   "Unknown metadata type in the mask: q\n"}),
    [](const testing::TestParamInfo<DriverCase> &info) { return std::string(info.param.name); });

TEST_F(RestoreDriverTest, DebugTraceLabelsTheFirstTagAndTheDriver) {
  debug = 1;
  EXPECT_EQ(run("<metadata><dirInfo></dirInfo></metadata>", "t"), 0);
  EXPECT_EQ(out, "**restoreMetadata(1)** ccode=0  endtag=0  tag=metadata\n"
                 "**restoreMetadata** ccode=0  endtag=0  tag=dirInfo\n"
                 "**goPastEndTag** ccode=0  endtag=1  tag=dirInfo\n"
                 "**restoreMetadata** ccode=0  endtag=1  tag=metadata\n");
}

TEST_F(RestoreDriverTest, RxlTrusteeSectionWithAnUnknownVolumeEndsTheRestore) {
  showActions = 1;
  const std::string savedPath = getenv("PATH") ? getenv("PATH") : "";
  setenv("PATH", dir.path().c_str(), 1);  // no rxlcon to run
  const int result = run("<metadata><trusteeInfo></trusteeInfo></metadata>", "t", 1);
  setenv("PATH", savedPath.c_str(), 1);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(out, "Restoring trustees\n");
  EXPECT_EQ(err, "RXL volume not found.\n");
}

}  // namespace

namespace {

TEST_F(RestoreDriverTest, RxlModeReadsTheInputNoFurtherThanTheWindow) {
  const std::string savedPath = getenv("PATH") ? getenv("PATH") : "";
  setenv("PATH", dir.path().c_str(), 1);  // no rxlcon to run: the restore ends at trusteeInfo
  const std::string head = "<metadata><userInfo>" + std::string(30000, ' ') + "</userInfo>";
  const std::string document =
      head + "<trusteeInfo>" + std::string(100000, ' ') + "</trusteeInfo></metadata>";
  const int result = run(document, "a", 1);
  setenv("PATH", savedPath.c_str(), 1);
  EXPECT_EQ(result, -1);
  // The window starts at <trusteeInfo>, the last tag read.
  EXPECT_LE(lseek(inputFd, 0, SEEK_CUR), static_cast<off_t>(head.size() + kInputWindowSize));
}

}  // namespace
