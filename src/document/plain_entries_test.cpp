#include "document/plain_entries.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "document/records.h"
#include "document/run_settings.h"
#include "document/tag_reader.h"
#include "document/tag_reader_state.h"
#include "restore_fixture.h"

using namespace testing_support;

namespace {

// Enough input after an entry that a fast step may read it: two windows' worth.
const std::string kPadding(2 * kInputWindowSize, ' ');

const std::string kPlainBody = "<name>bob.corp.T.</name><id></id><rights value=\"RWF\"><read/>"
                               "<write/><fileScan/></rights></trustee>";

class PlainEntriesTest : public testing::Test {
protected:
  void SetUp() override { resetProcessState(); }
  void TearDown() override {
    usePlainSteps(true);
    if (inputFd > 0) close(inputFd);
    inputFd = 0;
    freeReplyBuffer();
  }
  // Starts reading `text`: its first tag is read the general way.
  void start(const std::string &text) {
    inputFd = openWithContents(dir, "doc.xml", text);
    resetTagReader();
    Tag tag;
    ASSERT_EQ(readTag(tag, "test"), 0);
  }
  bool trustee(const std::string &body, bool padded = true) {
    start("<trustee>" + body + "<next>" + (padded ? kPadding : ""));
    return readPlainTrustee(name, id, rights);
  }
  // The name of the tag the general reader reads next.
  std::string nextTag() {
    Tag tag;
    EXPECT_EQ(readTag(tag, "test"), 0);
    return std::string(tag.isEndTag ? "/" : "") + tag.name;
  }

  TempDir dir;
  char name[kNameTextSize];
  char id[kIdTextSize];
  char rights[kRightsListSize];
};

TEST_F(PlainEntriesTest, PlainTrusteeIsReadAtOnce) {
  ASSERT_TRUE(trustee(kPlainBody));
  EXPECT_STREQ(name, "bob.corp.T.");
  EXPECT_STREQ(id, "");
  EXPECT_STREQ(rights, "<read/><write/><fileScan/>");
  // The window starts at the trustee's end tag, the position is after it.
  const std::size_t end = std::string("<trustee>").size() + kPlainBody.size();
  EXPECT_EQ(tag_reader_state::input.windowStart, end - std::string("</trustee>").size());
  EXPECT_EQ(tag_reader_state::input.windowEnd,
            tag_reader_state::input.windowStart + kInputWindowSize);
  EXPECT_EQ(tag_reader_state::input.position, end);
  EXPECT_EQ(nextTag(), "next");
}

TEST_F(PlainEntriesTest, AdTrusteeGivesItsIdAndACdataNameItsBytes) {
  ASSERT_TRUE(trustee("<name><![CDATA[a<b]c&amp;]]></name><id>S-1-5-21-7</id>"
                      "<rights value=\"\"></rights></trustee>"));
  EXPECT_STREQ(name, "a<b]c&amp;");
  EXPECT_STREQ(id, "S-1-5-21-7");
  EXPECT_STREQ(rights, "");
}

TEST_F(PlainEntriesTest, TrusteeWithoutIdLeavesTheIdEmpty) {
  ASSERT_TRUE(trustee("<name>a</name><rights value=\"R\"><read/></rights></trustee>"));
  EXPECT_STREQ(id, "");
  EXPECT_STREQ(rights, "<read/>");
}

// 39 elements of 13 bytes: 507 bytes.
std::string supervisors() {
  std::string list;
  for (int i = 0; i < 39; ++i)
    list += "<supervisor/>";
  return list;
}

TEST_F(PlainEntriesTest, LongestValuesThatFitAreRead) {
  const std::string longest = std::string(kNameTextSize - 1, 'n');
  // 511 bytes, the most a rights list holds.
  ASSERT_TRUE(trustee("<name>" + longest + "</name><id>" + std::string(kIdTextSize - 1, 'i') +
                      "</id><rights value=\"S\">" + supervisors() + "<x/></rights></trustee>"));
  EXPECT_EQ(std::string(name), longest);
  EXPECT_EQ(std::string(id), std::string(kIdTextSize - 1, 'i'));
  EXPECT_EQ(std::string(rights), supervisors() + "<x/>");
  close(inputFd);
  const std::string right = "<" + std::string(kTagNameSize - 1, 'r') + "/>";
  ASSERT_TRUE(trustee("<name>a</name><rights value=\"R\">" + right + "</rights></trustee>"));
  EXPECT_EQ(std::string(rights), right);
}

// Bodies that a fast step leaves to the general reader: it reads nothing and empties the fields.
TEST_F(PlainEntriesTest, AnythingButThePlainFormIsLeftToTheGeneralReader) {
  const std::string rights = "<rights value=\"R\"><read/></rights></trustee>";
  const std::string refused[] = {
      "<name>a</name>\n<id></id>" + rights,                             // a blank between elements
      " <name>a</name>" + rights,                                       // text first
      "<name>" + std::string(kNameTextSize, 'n') + "</name>" + rights,  // a name too long
      "<name>a</name><id>" + std::string(kIdTextSize, 'i') + "</id>" + rights,
      "<name>a</name><rights value=\"a/b\"><read/></rights></trustee>",
      "<name>a</name><rights value=\"R\" ><read/></rights></trustee>",
      "<name>a</name><rights value=\"R\"><read /></rights></trustee>",
      "<name>a</name><rights value=\"R\"><" + std::string(64, 'x') + "/></rights></trustee>",
      "<name>a</name><rights value=\"R\">text</rights></trustee>",
      "<name><![CDATA[a]]>b</name>" + rights,                // text after the CDATA
      "<name><![CDATA[a]]]]><![CDATA[>]]></name>" + rights,  // two CDATA sections
      "<name>a</name><zid></zid>" + rights,                  // an element read past
      "<name>a</name><rights/></trustee>",
      "<name>a</name><rights value=\"R\"><rights/></rights></trustee>",  // ends the list
      "<name>a</name>" + std::string(1, '\0') + rights,                  // a NUL byte
  };
  for (const std::string &body : refused) {
    EXPECT_FALSE(trustee(body)) << body;
    EXPECT_STREQ(name, "");
    EXPECT_STREQ(id, "");
    EXPECT_STREQ(this->rights, "");
    EXPECT_EQ(tag_reader_state::input.position, std::string("<trustee>").size()) << body;
    close(inputFd);
  }
}

TEST_F(PlainEntriesTest, RightsListOfTheListsFullSizeIsLeftToTheGeneralReader) {
  // 512 bytes: getRights would drop the last element.
  EXPECT_FALSE(
      trustee("<name>a</name><rights value=\"S\">" + supervisors() + "<xx/></rights></trustee>"));
}

TEST_F(PlainEntriesTest, NothingIsReadNearTheEndOfTheInput) {
  // Less than a window's size of input after the entry.
  EXPECT_FALSE(trustee(kPlainBody + std::string(kInputWindowSize - 100, ' '), false));
  EXPECT_EQ(nextTag(), "name");
}

TEST_F(PlainEntriesTest, NothingIsReadWithTheTraceOrWithTheStepsTurnedOff) {
  debug = 1;
  EXPECT_FALSE(trustee(kPlainBody));
  close(inputFd);
  debug = 0;
  usePlainSteps(false);
  EXPECT_FALSE(trustee(kPlainBody));
  close(inputFd);
  usePlainSteps(true);
  EXPECT_TRUE(trustee(kPlainBody));
}

TEST_F(PlainEntriesTest, NothingIsReadAfterAnEmptyElement) {
  start("<trustee/>" + kPlainBody + kPadding);
  EXPECT_FALSE(readPlainTrustee(name, id, rights));
  EXPECT_EQ(nextTag(), "/trustee");
}

TEST_F(PlainEntriesTest, FileHeadGivesThePathText) {
  char path[kPathTextSize];
  start("<file><zid>1234</zid><path><![CDATA[/a<b/c]]></path><next>" + kPadding);
  ASSERT_TRUE(readPlainFileHead(path, sizeof path));
  EXPECT_STREQ(path, "/a<b/c");
  EXPECT_EQ(nextTag(), "next");
  close(inputFd);
  start("<file><path>/p&amp;q</path>" + kPadding);
  ASSERT_TRUE(readPlainFileHead(path, sizeof path));
  EXPECT_STREQ(path, "/p&amp;q");
}

TEST_F(PlainEntriesTest, FileHeadOfAnOddFormIsLeftToTheGeneralReader) {
  char path[kPathTextSize];
  const std::string refused[] = {"<zid/><path>/a</path>", "<path>/a</path >",
                                 "<zid>" + std::string(1024, '1') + "</zid><path>/a</path>",
                                 "<path>" + std::string(kPathTextSize, 'p') + "</path>",
                                 "\n<path>/a</path>"};
  for (const std::string &head : refused) {
    start("<file>" + head + kPadding);
    EXPECT_FALSE(readPlainFileHead(path, sizeof path)) << head;
    close(inputFd);
  }
}

TEST_F(PlainEntriesTest, RightsListUpToItsEndTag) {
  start("<inheritedRightsFilter value=\"RF\"><read/><fileScan/></inheritedRightsFilter><next>" +
        kPadding);
  ASSERT_TRUE(readPlainRights(rights, "</inheritedRightsFilter>"));
  EXPECT_STREQ(rights, "<read/><fileScan/>");
  EXPECT_EQ(nextTag(), "next");
}

TEST_F(PlainEntriesTest, TagsBetweenEntriesAreReadAtOnce) {
  start("<file>\n<trustee>\n<trustee type=\"adID\"></file><file><next>" + kPadding);
  const char *const expected[] = {"trustee", kAdTrusteeElement, "/file", "file"};
  for (const char *name : expected) {
    Tag tag;
    ASSERT_TRUE(readPlainTag(tag)) << name;
    EXPECT_EQ(std::string(tag.isEndTag ? "/" : "") + tag.name, name);
    EXPECT_EQ(tag.length, std::strlen(tag.name));
  }
  EXPECT_EQ(nextTag(), "next");
}

TEST_F(PlainEntriesTest, OtherTagsAreLeftToTheGeneralReader) {
  const std::string refused[] = {"\n\n<trustee>",         " <trustee>", "<trustee >", "<file/>",
                                 "<trustee type='adID'>", "<name>"};
  for (const std::string &text : refused) {
    start("<file>" + text + kPadding);
    Tag tag;
    EXPECT_FALSE(readPlainTag(tag)) << text;
    EXPECT_EQ(tag_reader_state::input.position, std::string("<file>").size()) << text;
    close(inputFd);
  }
}

}  // namespace
