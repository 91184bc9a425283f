#include "legacy/trustee_report.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <string>

#include "file_text.h"
#include "legacy/report_line.h"
#include "report_input.h"
#include "temp_directory.h"

namespace {

using namespace testing_support;

constexpr char kNotices[] =
    "Tokens ATTR and OWNER are not supported.\nSkipping tokens ATTR and OWNER.\n";
constexpr char kHeader[] = "TRUSTEE.KXM\r\n";

struct Conversion {
  int result;
  std::string document;
  std::string errors;
};

class ConvertTrusteeReport : public testing::Test {
protected:
  void SetUp() override { resetReportInput(); }
  void TearDown() override { resetReportInput(); }

  std::string outputPath() const { return directory_.path() + "/document.xml"; }

  Conversion convert(std::string_view report, const char *tree = "CORP",
                     const char *prefix = nullptr) {
    return convertTo(outputPath(), report, tree, prefix);
  }

  Conversion convertTo(const std::string &path, std::string_view report, const char *tree,
                       const char *prefix) {
    StdinFromBytes input(directory_.path(), report);
    testing::internal::CaptureStderr();
    const int result = convertTrusteeReport(tree, path.c_str(), prefix);
    std::string errors = testing::internal::GetCapturedStderr();
    return {result, readFile(path).value_or(""), errors};
  }

  // The document for one report line after the header.
  std::string documentFor(const std::string &line, const char *tree = "CORP",
                          const char *prefix = nullptr) {
    return convert(std::string(kHeader) + line + "\r\n", tree, prefix).document;
  }

  TempDir directory_;
};

std::string trusteeRecord(const std::string &path, const std::string &name,
                          const std::string &letters, const std::string &elements) {
  return "<trusteeInfo>\n<file>\n<zid></zid><path>" + path + "</path>\n<trustee><name>" + name +
         "</name><id></id><rights value=\"" + letters + "\">" + elements +
         "</rights></trustee>\n</file>\n</trusteeInfo>\n";
}

std::string document(const std::string &body) { return "<metadata>\n" + body + "</metadata>"; }

// --- The record kinds ---

TEST_F(ConvertTrusteeReport, TrusteeWithTreeAndNoPrefix) {
  const Conversion got =
      convert(std::string(kHeader) + R"("TRUSTEE","VOL1:\HOME\JDOE","x","JDOE.SALES","RWF")"
                                     "\r\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.errors, kNotices);
  EXPECT_EQ(got.document, document(trusteeRecord("/HOME/JDOE", "JDOE.SALES.CORP", "RWF",
                                                 "<read/><write/><fileScan/>")));
}

TEST_F(ConvertTrusteeReport, PublicTrusteeStaysUnqualified) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","VOL1:\HOME\JDOE","x","[Public]","RWF")"),
            document(trusteeRecord("/HOME/JDOE", "[Public]", "RWF", "<read/><write/><fileScan/>")));
}

TEST_F(ConvertTrusteeReport, OnlyTheFirstEightCharactersMarkPublic) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","[Public]X","R")"),
            document(trusteeRecord("/A", "[Public]X", "R", "<read/>")));
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","[public]","R")"),
            document(trusteeRecord("/A", "[public].CORP", "R", "<read/>")));
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","[Public","R")"),
            document(trusteeRecord("/A", "[Public.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, NoTreeLeavesNamesAsWritten) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","JDOE.SALES","R")", nullptr),
            document(trusteeRecord("/A", "JDOE.SALES", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, DirectoryQuota) {
  EXPECT_EQ(documentFor(R"("DIRQUOTA","VOL1:\SHARED","x","1048576","2048")"),
            document("<dirInfo>\n<directory><zid></zid><path>/SHARED</path>"
                     "<spaceUsed>2048</spaceUsed><quotaAmount>1048576</quotaAmount></directory>\n"
                     "</dirInfo>\n"));
}

TEST_F(ConvertTrusteeReport, UserQuota) {
  EXPECT_EQ(documentFor(R"("USERQUOTA","VOL1:","x","JDOE.SALES","512000")"),
            document("<userInfo>\n<user><id></id><spaceUsed></spaceUsed>"
                     "<quotaAmount>512000</quotaAmount>\n<name>JDOE.SALES.CORP</name>\n"
                     "<idNotFound><time><utc>0</utc><string>Invalid UTC Time</string></time>"
                     "<numberOfTimes>0</numberOfTimes></idNotFound></user>\n</userInfo>\n"));
}

TEST_F(ConvertTrusteeReport, PublicUserQuotaStaysUnqualified) {
  EXPECT_NE(documentFor(R"("USERQUOTA","VOL1:","x","[Public]","1")").find("<name>[Public]</name>"),
            std::string::npos);
}

TEST_F(ConvertTrusteeReport, InheritedRightsFilter) {
  EXPECT_EQ(documentFor(R"("IRM","VOL1:\HOME","x","SRF","y")"),
            document("<trusteeInfo>\n<file>\n<zid></zid><path>/HOME</path>\n"
                     "<inheritedRightsFilter value=\"SRF\"><supervisor/><read/><fileScan/>"
                     "</inheritedRightsFilter>\n</file>\n</trusteeInfo>\n"));
}

TEST_F(ConvertTrusteeReport, EmptyFilterLettersWriteNoElements) {
  EXPECT_EQ(documentFor(R"("IRM","V:\H","x","","y")"),
            document("<trusteeInfo>\n<file>\n<zid></zid><path>/H</path>\n"
                     "<inheritedRightsFilter value=\"\"></inheritedRightsFilter>\n"
                     "</file>\n</trusteeInfo>\n"));
}

TEST_F(ConvertTrusteeReport, KeywordsAreMatchedAsPrefixes) {
  EXPECT_EQ(documentFor(R"("TRUSTEES","V:\A","x","N","R")"),
            document(trusteeRecord("/A", "N.CORP", "R", "<read/>")));
  EXPECT_NE(documentFor(R"("DIRQUOTAS","V:\A","x","1","2")").find("<dirInfo>"), std::string::npos);
  EXPECT_NE(documentFor(R"("USERQUOTAX","V:","x","N","1")").find("<userInfo>"), std::string::npos);
  EXPECT_NE(documentFor(R"("IRMASK","V:\A","x","R","")").find("<inheritedRightsFilter"),
            std::string::npos);
}

TEST_F(ConvertTrusteeReport, KeywordsAreCaseSensitive) {
  EXPECT_EQ(documentFor(R"("trustee","V:\A","x","N","R")"), document(""));
}

// --- Paths ---

TEST_F(ConvertTrusteeReport, PrefixBeforeAPathWithoutVolume) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","APPS\TOOLS","x","N","R")", "CORP", "data"),
            document(trusteeRecord("/data/APPS/TOOLS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, PathWithVolumeDropsThePrefix) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","VOL1:\APPS\TOOLS","x","N","R")", "CORP", "data"),
            document(trusteeRecord("/APPS/TOOLS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, RelativePathWithoutPrefixHasNoLeadingSlash) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","APPS\TOOLS","x","N","R")"),
            document(trusteeRecord("APPS/TOOLS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, PrefixStartingWithSlashGetsNoSecondOne) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","APPS","x","N","R")", "CORP", "/data\\sub"),
            document(trusteeRecord("/data/sub/APPS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, ColonInThePrefixCutsThere) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","VOL1:\APPS","x","N","R")", "CORP", "X:pre"),
            document(trusteeRecord("pre/VOL1:/APPS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, EmptyPrefixStillAddsBothSlashes) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","APPS","x","N","R")", "CORP", ""),
            document(trusteeRecord("//APPS", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, OnlyTheFirstColonCuts) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","VOL1:\A:B\C","x","N","R")"),
            document(trusteeRecord("/A:B/C", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, DirectoryQuotaPathTakesThePrefix) {
  EXPECT_NE(documentFor(R"("DIRQUOTA","SHARED\X","x","1","2")", "CORP", "data")
                .find("<path>/data/SHARED/X</path>"),
            std::string::npos);
}

// --- Rights letters ---

TEST_F(ConvertTrusteeReport, RightsWrittenLetterByLetterInTheirOrder) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","N","FRRwacems")"),
            document(trusteeRecord("/A", "N.CORP", "FRRwacems",
                                   "<fileScan/><read/><read/><write/><accessControl/><create/>"
                                   "<erase/><modify/><supervisor/>")));
}

TEST_F(ConvertTrusteeReport, LetterThatIsNoRightWritesNothingAndIsReported) {
  const Conversion got = convert(std::string(kHeader) + R"("TRUSTEE","V:\A","x","N","R[V]x")"
                                                        "\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(trusteeRecord("/A", "N.CORP", "R[V]x", "<read/>")));
  EXPECT_EQ(got.errors, std::string(kNotices) +
                            "Invalid access right : [\nInvalid access right : V\n"
                            "Invalid access right : ]\nInvalid access right : X\n");
}

// --- Lines that write nothing ---

TEST_F(ConvertTrusteeReport, ThreeValueFieldsIsAnInvalidEntry) {
  const Conversion got = convert(std::string(kHeader) + R"("TRUSTEE","VOL1:\HOME","x","JDOE")"
                                                        "\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors,
            std::string(kNotices) + "Invalid entry for \"TRUSTEE in input file at line 1.\n");
}

// The keyword field is the whole line when no separator follows it: the message holds it whole,
// however long (the text is written as it stands, never through a printf count).
TEST_F(ConvertTrusteeReport, AnInvalidEntryOfALongLineIsReportedWhole) {
  const std::string keyword = "TRUSTEE" + std::string(300000, 'x');
  const Conversion got = convert(std::string(kHeader) + "\"" + keyword + "\"\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors, std::string(kNotices) + "Invalid entry for \"" + keyword +
                            " in input file at line 1.\n");
}

TEST_F(ConvertTrusteeReport, InvalidEntriesCountOnlyNonEmptyLinesAfterTheHeader) {
  const Conversion got = convert(std::string(kHeader) + "\r\n"
                                                        R"("TRUSTEE","V:\A","x","N","R")"
                                                        "\r\n\r\n"
                                                        R"("ATTR","V:\A")"
                                                        "\n\n\n"
                                                        R"("DIRQUOTAS","V:\A","x","1")"
                                                        "\r"
                                                        R"("IRM")"
                                                        "\r\n"
                                                        R"("USERQUOTA","V:","x","N",)"
                                                        "\n"
                                                        R"("TRUSTEE")"
                                                        "\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(trusteeRecord("/A", "N.CORP", "R", "<read/>")));
  EXPECT_EQ(got.errors, std::string(kNotices) +
                            "Invalid entry for \"DIRQUOTAS in input file at line 3.\n"
                            "Invalid entry for \"IRM in input file at line 4.\n"
                            "Invalid entry for \"USERQUOTA in input file at line 5.\n"
                            "Invalid entry for \"TRUSTEE in input file at line 6.\n");
}

TEST_F(ConvertTrusteeReport, FieldShorterThanTwoCharactersIsMissing) {
  const Conversion got = convert(std::string(kHeader) +
                                 R"("IRM","V:\A",x,"R","y")"
                                 "\n" +
                                 R"("IRM","V:\A","x","R",")"
                                 "\n");
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors, std::string(kNotices) +
                            "Invalid entry for \"IRM in input file at line 1.\n"
                            "Invalid entry for \"IRM in input file at line 2.\n");
}

TEST_F(ConvertTrusteeReport, AttrAndOwnerLinesWriteAndPrintNothing) {
  const Conversion got = convert(std::string(kHeader) +
                                 R"("ATTR","VOL1:\HOME","x","RO","y")"
                                 "\n" +
                                 R"("OWNER","VOL1:\HOME","x","JDOE.SALES","y")"
                                 "\n" +
                                 R"("ATTR")"
                                 "\n"
                                 R"("OWNER","V")"
                                 "\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors, kNotices);
}

TEST_F(ConvertTrusteeReport, LineWithoutFieldZeroIsPassedOverSilently) {
  const Conversion got = convert(std::string(kHeader) + "x\n\"\n");
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors, kNotices);
}

TEST_F(ConvertTrusteeReport, KeywordReadWithoutItsFirstCharacterIsUnknown) {
  // The first character is dropped as a quote whatever it is: "RUSTEE" is no keyword.
  const Conversion got = convert(std::string(kHeader) + R"(TRUSTEE","V:\A","x","N","R")"
                                                        "\n");
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors, kNotices);
}

// --- Fields ---

TEST_F(ConvertTrusteeReport, FieldsAfterTheFourthAreIgnored) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A","x","N","R","extra","more")"),
            document(trusteeRecord("/A", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, LineEndingInACommaStopsAtTheEndOfTheText) {
  // The final comma is no separator: it stays in the last field, whose closing quote is kept.
  const Conversion last = convert(std::string(kHeader) + R"("TRUSTEE","V:\A","x","N","R",)"
                                                         "\n");
  EXPECT_EQ(last.document, document(trusteeRecord("/A", "N.CORP", "R\"", "<read/>")));
  EXPECT_EQ(last.errors, std::string(kNotices) + "Invalid access right : \"\n");
  const Conversion got = convert(std::string(kHeader) + R"("TRUSTEE","V:\A","x","N",)"
                                                        "\n");
  EXPECT_EQ(got.document, document(""));
  EXPECT_EQ(got.errors,
            std::string(kNotices) + "Invalid entry for \"TRUSTEE in input file at line 1.\n");
}

TEST_F(ConvertTrusteeReport, FieldsMayHoldCommasAndQuotes) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\A,B","x","J"DOE, X","R")"),
            document(trusteeRecord("/A,B", "J\"DOE, X.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, ValuesAreNotEscaped) {
  EXPECT_EQ(documentFor(R"("TRUSTEE","V:\<&>","x","A&B<C>","R")", "T&<"),
            document(trusteeRecord("/<&>", "A&B<C>.T&<", "R", "<read/>")));
}

// --- Lines and the header ---

TEST_F(ConvertTrusteeReport, HeaderIsJudgedOnItsFirstElevenCharacters) {
  const Conversion got = convert("TRUSTEE.KXM listing\n"
                                 R"("TRUSTEE","V:\A","x","N","R")"
                                 "\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, document(trusteeRecord("/A", "N.CORP", "R", "<read/>")));
}

TEST_F(ConvertTrusteeReport, OnlyTheHeaderGivesAnEmptyDocument) {
  const Conversion got = convert("TRUSTEE.KXM");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, "<metadata>\n</metadata>");
  EXPECT_EQ(got.errors, kNotices);
}

TEST_F(ConvertTrusteeReport, EmptyLinesBeforeTheHeaderArePassedOver) {
  const Conversion got = convert("\r\n\nTRUSTEE.KXM\n");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.document, "<metadata>\n</metadata>");
}

TEST_F(ConvertTrusteeReport, LfCrAndCrLfLineEnds) {
  const std::string line = R"("TRUSTEE","V:\A","x","N","R")";
  const std::string record = trusteeRecord("/A", "N.CORP", "R", "<read/>");
  for (const char *end : {"\n", "\r", "\r\n", "\n\r", "\r\r\n\n"}) {
    const Conversion got = convert(std::string("TRUSTEE.KXM") + end + line + end + line);
    EXPECT_EQ(got.document, document(record + record)) << testing::PrintToString(end);
  }
}

TEST_F(ConvertTrusteeReport, LinesLongerThanEightyBytes) {
  const std::string name(300, 'N');
  const std::string path(5000, 'P');
  EXPECT_EQ(documentFor("\"TRUSTEE\",\"V:\\" + path + "\",\"x\",\"" + name + "\",\"RW\""),
            document(trusteeRecord("/" + path, name + ".CORP", "RW", "<read/><write/>")));
}

TEST_F(ConvertTrusteeReport, MissingInputIsAnInvalidFile) {
  const Conversion got = convert("");
  EXPECT_EQ(got.result, -1);
  EXPECT_EQ(got.errors, "Invalid input file\n");
  EXPECT_EQ(got.document, "");
}

TEST_F(ConvertTrusteeReport, WrongHeaderIsAnInvalidFileAndLeavesTheOutputAlone) {
  for (const char *header : {"TRUSTEE.KX\n", "trustee.kxm\n", " TRUSTEE.KXM\n",
                             "\"TRUSTEE\",\"V:\\A\",\"x\",\"N\",\"R\"\n"}) {
    std::ofstream(outputPath()) << "before";
    const Conversion got = convert(header);
    EXPECT_EQ(got.result, -1) << header;
    EXPECT_EQ(got.errors, "Invalid input file\n") << header;
    EXPECT_EQ(got.document, "before") << header;
  }
}

TEST_F(ConvertTrusteeReport, OutputThatCannotBeOpened) {
  const std::string path = directory_.path() + "/missing/document.xml";
  const Conversion got = convertTo(path, "TRUSTEE.KXM\n", "CORP", nullptr);
  EXPECT_EQ(got.result, -1);
  EXPECT_EQ(got.errors, "Unable to open temporary file : " + path + "\n");
}

TEST_F(ConvertTrusteeReport, OutputIsEmptiedFirst) {
  std::ofstream(outputPath()) << std::string(500, 'z');
  EXPECT_EQ(convert("TRUSTEE.KXM\n").document, "<metadata>\n</metadata>");
}

TEST_F(ConvertTrusteeReport, OutputThatCannotBeWritten) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
  StdinFromBytes input(directory_.path(), "TRUSTEE.KXM\n");
  testing::internal::CaptureStderr();
  const int result = convertTrusteeReport("CORP", "/dev/full", nullptr);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            std::string(kNotices) + "Unable to write temporary file : /dev/full\n");
}

TEST_F(ConvertTrusteeReport, AllKindsInOneReport) {
  const Conversion got = convert("TRUSTEE.KXM /R\r\n"
                                 R"("TRUSTEE","VOL1:\HOME\JDOE","x","JDOE.SALES","RWF")"
                                 "\r\n"
                                 R"("ATTR","VOL1:\HOME\JDOE","x","H","")"
                                 "\r\n"
                                 R"("IRM","HOME","x","SRF","y")"
                                 "\r\n"
                                 R"("OWNER","VOL1:\HOME","x","ADMIN","")"
                                 "\r\n"
                                 R"("DIRQUOTA","VOL1:\SHARED","x","1048576","2048")"
                                 "\r\n"
                                 R"("USERQUOTA","VOL1:","x","[Public]","512000")"
                                 "\r\n",
                                 "CORP", "/vol");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.errors, kNotices);
  EXPECT_EQ(
      got.document,
      document(trusteeRecord("/HOME/JDOE", "JDOE.SALES.CORP", "RWF", "<read/><write/><fileScan/>") +
               "<trusteeInfo>\n<file>\n<zid></zid><path>/vol/HOME</path>\n"
               "<inheritedRightsFilter value=\"SRF\"><supervisor/><read/><fileScan/>"
               "</inheritedRightsFilter>\n</file>\n</trusteeInfo>\n"
               "<dirInfo>\n<directory><zid></zid><path>/SHARED</path>"
               "<spaceUsed>2048</spaceUsed><quotaAmount>1048576</quotaAmount></directory>\n"
               "</dirInfo>\n"
               "<userInfo>\n<user><id></id><spaceUsed></spaceUsed>"
               "<quotaAmount>512000</quotaAmount>\n<name>[Public]</name>\n"
               "<idNotFound><time><utc>0</utc><string>Invalid UTC Time</string></time>"
               "<numberOfTimes>0</numberOfTimes></idNotFound></user>\n</userInfo>\n"));
}

}  // namespace

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressLimitWorks = false;  // the sanitizer reserves far more address space
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kAddressLimitWorks = false;
#else
constexpr bool kAddressLimitWorks = true;
#endif
#else
constexpr bool kAddressLimitWorks = true;
#endif

// Address space in use by this process, in bytes.
std::size_t addressSpaceInUse() {
  std::ifstream statm("/proc/self/statm");
  std::size_t pages = 0;
  statm >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST_F(ConvertTrusteeReport, LineWithoutBufferIsTheEndOfTheInput) {
  if (!kAddressLimitWorks) GTEST_SKIP() << "address-space limits do not mix with the sanitizer";
  const std::string errorsPath = directory_.path() + "/errors";
  const std::string output = outputPath();
  const pid_t reader = fork();
  ASSERT_GE(reader, 0);
  if (reader == 0) {
    // A report whose second record line never ends: its buffer outgrows the address space.
    int pipeFds[2];
    if (pipe(pipeFds) != 0) _exit(2);
    const pid_t writer = fork();
    if (writer == 0) {
      close(pipeFds[0]);
      const std::string start = "TRUSTEE.KXM\n\"IRM\",\"V:\\A\",\"x\",\"R\",\"y\"\n\"TRUSTEE\",\"";
      if (write(pipeFds[1], start.data(), start.size()) < 0) _exit(0);
      const std::string endless(1 << 20, 'A');
      while (write(pipeFds[1], endless.data(), endless.size()) > 0) {
      }
      _exit(0);
    }
    close(pipeFds[1]);
    dup2(pipeFds[0], 0);
    close(pipeFds[0]);
    const int errors = open(errorsPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(errors, 2);
    close(errors);
    const rlimit limit{addressSpaceInUse() + (256u << 20), RLIM_INFINITY};
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(2);
    const int result = convertTrusteeReport("CORP", output.c_str(), nullptr);
    _exit(result == 0 ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(reader, &status, 0), reader);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(readFile(errorsPath).value_or(""),
            std::string(kNotices) + "Error getting enough buffer for reading input file\n");
  EXPECT_EQ(readFile(output).value_or(""),
            document("<trusteeInfo>\n<file>\n<zid></zid><path>/A</path>\n"
                     "<inheritedRightsFilter value=\"R\"><read/></inheritedRightsFilter>\n"
                     "</file>\n</trusteeInfo>\n"));
}

}  // namespace
