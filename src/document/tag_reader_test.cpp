#include "document/tag_reader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "document/records.h"
#include "document/run_settings.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

class TagReaderTest : public testing::Test {
public:
  void SetUp() override { resetProcessState(); }
  void TearDown() override {
    if (inputFd > 0) close(inputFd);
    inputFd = 0;
  }
  void input(const std::string &text) {
    if (inputFd > 0) close(inputFd);
    inputFd = openWithContents(dir, "doc.xml", text);
    resetTagReader();
  }
  // Reads the next tag: "name" for a start tag, "/name" for an end tag, "#code" on failure.
  std::string next() {
    const int result = readTag(name, &isEndTag, "test");
    if (result != 0) return "#" + std::to_string(result);
    return (isEndTag ? "/" : "") + std::string(name);
  }
  std::string contents(std::size_t size = 4096, bool *tooLong = nullptr) {
    std::string text(size, 'x');
    lastResult = readContents(text.data(), size, tooLong);
    return text.c_str();
  }
  // The whole tag stream up to the end of input.
  std::string stream() {
    std::string all;
    for (std::string tag; (tag = next())[0] != '#';)
      all += tag + " ";
    return all;
  }

  TempDir dir;
  char name[kTagNameSize] = "";
  unsigned long isEndTag = 0;
  int lastResult = 0;
};

TEST_F(TagReaderTest, EmptyElementGivesStartAndEndWithEmptyContents) {
  input("<a/>");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(contents(), "");
  EXPECT_EQ(lastResult, 0);
  EXPECT_EQ(next(), "/a");
  // The data ends where the last tag ends: the window runs out once, which repeats that tag.
  EXPECT_EQ(next(), "/a");
  EXPECT_EQ(next(), "#-99");
}

TEST_F(TagReaderTest, EmptyElementWrittenAsPairReadsTheSame) {
  input("<a></a>");
  EXPECT_EQ(stream(), "a /a /a ");
}

TEST_F(TagReaderTest, GetRightsGathersChildElements) {
  input("<rights value=\"X\"><read/></rights><after>");
  EXPECT_EQ(next(), "rights");
  char out[512];
  getRights(out, "rights", sizeof out);
  EXPECT_STREQ(out, "<read/>");
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, GetRightsKeepsDocumentOrderAndDropsAttributes) {
  input("<rights><fileScan a=\"1\"/><read></read><write/></rights>");
  EXPECT_EQ(next(), "rights");
  char out[512];
  bool tooLong = true;
  getRights(out, "rights", sizeof out, &tooLong);
  EXPECT_STREQ(out, "<fileScan/><read/><write/>");
  EXPECT_FALSE(tooLong);
}

TEST_F(TagReaderTest, GetRightsStopsAtReaderFailureKeepingWhatItGathered) {
  input("<rights><read/><write/>");
  EXPECT_EQ(next(), "rights");
  char out[512];
  getRights(out, "rights", sizeof out);
  EXPECT_STREQ(out, "<read/><write/>");
}

TEST_F(TagReaderTest, GetRightsReportsAListTooLongForItsField) {
  input("<rights><read/><write/><create/></rights><after>");
  EXPECT_EQ(next(), "rights");
  char out[20];
  bool tooLong = false;
  getRights(out, "rights", sizeof out, &tooLong);
  EXPECT_STREQ(out, "<read/><write/>");
  EXPECT_TRUE(tooLong);
  EXPECT_EQ(next(), "after");  // read to its end tag all the same
}

TEST_F(TagReaderTest, AdMarkerStaysInTheName) {
  input("<trustee type=\"adID\"><trustee  type=\"adID\"><trustee other=\"1\" type=\"adID\">");
  EXPECT_EQ(next(), "trustee type=\"adID\"");
  EXPECT_EQ(next(), "trustee type=\"adID\"");
  EXPECT_EQ(next(), "trustee type=\"adID\"");
}

TEST_F(TagReaderTest, TabBeforeTheMarkerGivesAnUnknownName) {
  input("<trustee\ttype=\"adID\"><trustee type='adID'>");
  EXPECT_EQ(next(), "trustee\ttype=\"adID\"");
  EXPECT_EQ(next(), "trustee");
}

TEST_F(TagReaderTest, OtherAttributesAreDropped) {
  input("<rights value=\"RWF\">");
  EXPECT_EQ(next(), "rights");
}

TEST_F(TagReaderTest, SlashInsideAnAttributeEndsTheTagAsEmpty) {
  input("<rights value=\"a/b\">x");
  EXPECT_EQ(next(), "rights");
  EXPECT_EQ(next(), "/rights value=\"a");
}

TEST_F(TagReaderTest, CdataTextIsTakenVerbatim) {
  input("<path><![CDATA[a<b]]></path>");
  EXPECT_EQ(next(), "path");
  EXPECT_EQ(contents(), "a<b");
  EXPECT_EQ(next(), "/path");
}

TEST_F(TagReaderTest, CdataBetweenTagsIsSkippedWhole) {
  input("<a><![CDATA[<b></b>]]><c>");
  EXPECT_EQ(stream(), "a c c ");
}

TEST_F(TagReaderTest, EntitiesAreNotDecoded) {
  input("<name>a&amp;b</name>");
  EXPECT_EQ(next(), "name");
  EXPECT_EQ(contents(), "a&amp;b");
}

TEST_F(TagReaderTest, EmptyInputEndsWithAnEmptyName) {
  input("");
  std::strcpy(name, "old");
  EXPECT_EQ(readTag(name, &isEndTag, "test"), kEndOfInput);
  EXPECT_STREQ(name, "");
}

TEST_F(TagReaderTest, ContentsAtTheEndOfInputAreEmpty) {
  input("<a>");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(contents(), "");
  EXPECT_EQ(lastResult, 0);  // the window still held data
  EXPECT_EQ(contents(), "");
  EXPECT_EQ(lastResult, kEndOfInput);
}

TEST_F(TagReaderTest, LongTextReturnsThePreviousTagAgain) {
  input("<a>" + std::string(9000, 't') + "<b>");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(readTag(name, &isEndTag, "test"), 0);
  EXPECT_STREQ(name, "a");
  EXPECT_EQ(isEndTag, 0u);
  EXPECT_EQ(next(), "b");
}

TEST_F(TagReaderTest, StaleTagAfterAnEndTagComesBackAsAStartTag) {
  // The text bytes set the end-tag flag to 0 before the window runs out.
  input("</a>" + std::string(9000, 't') + "<b>");
  EXPECT_EQ(next(), "/a");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(next(), "b");
}

TEST_F(TagReaderTest, StaleTagWithNoTextKeepsTheEndTagFlag) {
  // The tag fills the window exactly: nothing is scanned before the window runs out.
  const std::string first = "</a" + std::string(8192 - 4, ' ') + ">";
  ASSERT_EQ(first.size(), 8192u);
  input(first + "<b>");
  EXPECT_EQ(next(), "/a");
  EXPECT_EQ(next(), "/a");
  EXPECT_EQ(next(), "b");
}

TEST_F(TagReaderTest, TrailingTextAtTheEndOfInputRepeatsTheLastTag) {
  input("<a>\n");
  EXPECT_EQ(stream(), "a a ");
}

TEST_F(TagReaderTest, LongTextIsCutAtTheWindowAndItsRestSkipped) {
  input("<name>" + std::string(9000, 'n') + "</name><next>");
  EXPECT_EQ(next(), "name");
  bool tooLong = false;
  const std::string text = contents(10000, &tooLong);
  EXPECT_EQ(text.size(), 8192u - 6);
  EXPECT_FALSE(tooLong);
  EXPECT_EQ(lastResult, 0);
  EXPECT_EQ(next(), "/name");  // the rest of the text is skipped as text
  EXPECT_EQ(next(), "next");
}

TEST_F(TagReaderTest, ContentsLongerThanTheFieldAreCutAndFlagged) {
  input("<id>0123456789</id>");
  EXPECT_EQ(next(), "id");
  bool tooLong = false;
  EXPECT_EQ(contents(5, &tooLong), "0123");
  EXPECT_TRUE(tooLong);
  EXPECT_EQ(next(), "/id");
}

TEST_F(TagReaderTest, ContentsThatFillTheFieldExactlyAreNotTooLong) {
  input("<id>0123</id>");
  EXPECT_EQ(next(), "id");
  bool tooLong = true;
  EXPECT_EQ(contents(5, &tooLong), "0123");
  EXPECT_FALSE(tooLong);
}

TEST_F(TagReaderTest, CdataTextRunsPastTheWindowUntilTheFieldStopsIt) {
  std::string inside;
  for (int i = 0; i < 3000; ++i)
    inside += "<x>";
  input("<path><![CDATA[" + inside + "]]></path><after>");
  EXPECT_EQ(next(), "path");
  bool tooLong = false;
  const std::string text = contents(4096, &tooLong);
  EXPECT_EQ(text, inside.substr(0, 4095));
  EXPECT_TRUE(tooLong);
  EXPECT_EQ(next(), "/path");
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, CdataEndLeavesThePositionOnTheSecondBracket) {
  input("<p><![CDATA[ab]]></p>");
  EXPECT_EQ(next(), "p");
  EXPECT_EQ(contents(), "ab");
  EXPECT_EQ(next(), "/p");
}

TEST_F(TagReaderTest, PendingEmptyEndSurvivesReadContents) {
  input("<name/><b>");
  EXPECT_EQ(next(), "name");
  EXPECT_EQ(contents(), "");
  EXPECT_EQ(contents(), "");
  EXPECT_EQ(next(), "/name");
  EXPECT_EQ(next(), "b");
}

TEST_F(TagReaderTest, EmptyElementEndCarriesItsRawAttributes) {
  input("<read a=\"1\"/>");
  EXPECT_EQ(next(), "read");
  EXPECT_EQ(next(), "/read a=\"1\"");
}

TEST_F(TagReaderTest, XmlDeclarationIsAStartTagNamedQuestionXml) {
  input("<?xml version=\"1.0\"?><metadata>");
  EXPECT_EQ(next(), "?xml");
}

TEST_F(TagReaderTest, SlashAsTheLastByteOfTheInputStaysInsideTheData) {
  input("<a/");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(next(), "/a");
  EXPECT_EQ(next(), "/a");  // nothing left but the window's end: the last tag once more
  EXPECT_EQ(next(), "#-99");
}

TEST_F(TagReaderTest, TagCutOffByTheEndOfInputEndsThere) {
  input("<a><metad");
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(next(), "metad");
  EXPECT_EQ(next(), "metad");
  EXPECT_EQ(next(), "#-99");
}

TEST_F(TagReaderTest, LoneLessThanAtTheEndGivesAnEmptyName) {
  input("<a><");
  EXPECT_EQ(stream(), "a   ");
}

TEST_F(TagReaderTest, LongTagNamesAreCutTo63Bytes) {
  const std::string longName(100, 'n');
  input("<" + longName + "><trustee" + std::string(60, ' ') + "type=\"adID\">");
  EXPECT_EQ(next(), longName.substr(0, 63));
  EXPECT_EQ(next(), "trustee type=\"adID\"");
  input("<trustee" + std::string(50, 'x') + " type=\"adID\">");
  EXPECT_EQ(next(), ("trustee" + std::string(50, 'x') + " type=\"adID\"").substr(0, 63));
}

TEST_F(TagReaderTest, TagLongerThanTheWindowEndsAtTheWindowsEnd) {
  input("<a" + std::string(9000, 'b') + "><c>");
  EXPECT_EQ(next(), ("a" + std::string(62, 'b')));
  EXPECT_EQ(next(), ("a" + std::string(62, 'b')));  // the window ran out
  EXPECT_EQ(next(), "c");
}

TEST_F(TagReaderTest, NulByteCutsTheRestOfTheWindowAtAShift) {
  std::string doc = "<a>x<b>y";
  doc += '\0';
  doc += "z<c></c>";
  input(doc);
  // At the shift for <b> the rest is carried as a string: "<b>y", and NULs up to the data's end.
  EXPECT_EQ(stream(), "a b b ");
}

TEST_F(TagReaderTest, NulRuleReachesOnlyTheDataInTheWindowAtTheShift) {
  std::string doc = "<a>x<b>y";
  doc += '\0';
  doc += std::string(8192, 'z') + "<c>";
  input(doc);
  // Bytes read after the shift are whole again: the window then runs out in text, and <c> follows.
  EXPECT_EQ(stream(), "a b b c c ");
}

TEST_F(TagReaderTest, NulByteBeforeTheNextTagIsPlainText) {
  std::string doc = "<a>t";
  doc += '\0';
  doc += "u<b>";
  input(doc);
  EXPECT_EQ(next(), "a");
  EXPECT_EQ(contents(), "t");  // the text keeps the NUL, which ends it as a string
  EXPECT_EQ(next(), "b");
}

TEST_F(TagReaderTest, GoPastEndTagFindsTheNamedEndTag) {
  input("<s><a><b/></a><s2></s2></s><after>");
  EXPECT_EQ(next(), "s");
  EXPECT_EQ(goPastEndTag("s"), 0);
  EXPECT_EQ(next(), "after");
}

// Far from the end of the input, after a few tags, where the end tag that comes next is passed
// without a step of the usual kind.
const std::string kFarFromTheEnd(20000, ' ');
const std::string kFirstTags = "<p>t</p><q/>";

// Reads kFirstTags.
void readFirstTags(TagReaderTest &test) {
  EXPECT_EQ(test.next(), "p");
  EXPECT_EQ(test.contents(), "t");
  EXPECT_EQ(test.next(), "/p");
  EXPECT_EQ(test.next(), "q");
  EXPECT_EQ(test.next(), "/q");
}

TEST_F(TagReaderTest, GoPastEndTagPassesTheEndTagThatComesNext) {
  input(kFirstTags + "<s>text</s><after>" + kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "s");
  EXPECT_EQ(contents(), "text");
  EXPECT_EQ(goPastEndTag("s"), 0);
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, GoPastEndTagFindsAnEndTagAfterOtherTags) {
  input(kFirstTags + "<s><s2></s2></s3></s><after>" + kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "s");
  EXPECT_EQ(goPastEndTag("s"), 0);
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, GoPastEndTagOfANameWithABlankNeverMatches) {
  // "</a b>" reads as the end tag "a": a name holding a blank is never found.
  input(kFirstTags + "<s></a b></a><after>" + kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "s");
  Output output;
  EXPECT_EQ(goPastEndTag("a b"), -1);
  output.finish();
  EXPECT_EQ(output.err, "Unable to find end tag: a b\n");
}

TEST_F(TagReaderTest, GoPastEndTagOfALongName) {
  const std::string name(40, 'n');
  input(kFirstTags + "<s></" + name + "><after>" + kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "s");
  EXPECT_EQ(goPastEndTag(name.c_str()), 0);
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, GetRightsFarFromTheEndGathersEmptyElements) {
  input(kFirstTags + "<rights value=\"RW\"><read/><write /><a></a></rights><after>" +
        kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "rights");
  char out[512];
  getRights(out, "rights", sizeof out);
  EXPECT_STREQ(out, "<read/><write/><a/>");
  EXPECT_EQ(next(), "after");
}

TEST_F(TagReaderTest, GetRightsStopsAtAnEmptyElementOfItsOwnEndName) {
  // The end of <rights/> is the end looked for.
  input(kFirstTags + "<rights><read/><rights/><write/></rights><after>" + kFarFromTheEnd);
  readFirstTags(*this);
  EXPECT_EQ(next(), "rights");
  char out[512];
  getRights(out, "rights", sizeof out);
  EXPECT_STREQ(out, "<read/><rights/>");
  EXPECT_EQ(next(), "write");
}

TEST_F(TagReaderTest, GoPastEndTagReportsAMissingEndTag) {
  input("<s><a>");
  EXPECT_EQ(next(), "s");
  Output output;
  EXPECT_EQ(goPastEndTag("s"), -1);
  output.finish();
  EXPECT_EQ(output.err, "Unable to find end tag: s\n");
}

TEST_F(TagReaderTest, ReadErrorIsReportedWithErrno) {
  if (inputFd > 0) close(inputFd);
  inputFd = open(dir.path().c_str(), O_RDONLY | O_DIRECTORY);
  resetTagReader();
  Output output;
  std::strcpy(name, "prev");
  EXPECT_EQ(readTag(name, &isEndTag, "test"), EISDIR);
  char text[16] = "zzz";
  EXPECT_EQ(readContents(text, sizeof text), EISDIR);
  output.finish();
  EXPECT_STREQ(text, "");
  EXPECT_EQ(output.err, "Error Is a directory reading the input file.\n"
                        "Error Is a directory reading the input file.\n");
}

TEST_F(TagReaderTest, DebugTraceShowsEveryResult) {
  input("<a/><b x='1'>");
  debug = 1;
  Output output;
  for (int i = 0; i < 5; ++i)
    next();
  output.finish();
  EXPECT_EQ(output.out, "**test** ccode=0  endtag=0  tag=a\n"
                        "**test** ccode=0  endtag=1  tag=a\n"
                        "**test** ccode=0  endtag=0  tag=b\n"
                        "**test** ccode=0  endtag=0  tag=b\n"
                        "**test** ccode=-99  endtag=0  tag=\n");
}

TEST_F(TagReaderTest, GoPastEndTagAndGetRightsTraceWithTheirOwnLabels) {
  input("<r><read/></r><s></s>");
  debug = 1;
  Output output;
  next();
  char out[64];
  getRights(out, "r", sizeof out);
  next();
  goPastEndTag("s");
  output.finish();
  EXPECT_EQ(output.out, "**test** ccode=0  endtag=0  tag=r\n"
                        "**getRights** ccode=0  endtag=0  tag=read\n"
                        "**getRights** ccode=0  endtag=1  tag=read\n"
                        "**getRights** ccode=0  endtag=1  tag=r\n"
                        "**test** ccode=0  endtag=0  tag=s\n"
                        "**goPastEndTag** ccode=0  endtag=1  tag=s\n");
}

TEST_F(TagReaderTest, ReadsFromAPipeDeliveringOneByteAtATime) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);
  const std::string doc = "<metadata><a>" + std::string(9000, 't') + "<b/></metadata>";
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    for (char c : doc)
      if (write(fds[1], &c, 1) != 1) _exit(1);
    _exit(0);
  }
  close(fds[1]);
  inputFd = fds[0];
  resetTagReader();
  EXPECT_EQ(stream(), "metadata a a b /b /metadata /metadata ");
  int status = 0;
  waitpid(child, &status, 0);
}

}  // namespace
