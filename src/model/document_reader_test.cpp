#include "model/document_reader.h"

#include <gtest/gtest.h>

#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kOneOfEach[] =
    "<metadata>\n"
    "<trusteeInfo>\n"
    "<file><zid>7</zid><path><![CDATA[/docs/a&b]]></path>\n"
    "<trustee><name>admin.corp.T.</name><id></id><rights value=\"RF\"><read/><fileScan/>"
    "</rights></trustee>\n"
    "<trustee type=\"adID\"><name>ann&amp;co</name><id>S-1-5-21-9</id><rights value=\"R\">"
    "<read/></rights></trustee>\n"
    "<inheritedRightsFilter value=\"S\"><supervisor/></inheritedRightsFilter>\n"
    "</file>\n"
    "</trusteeInfo>\n"
    "<userInfo>\n"
    "<user><id></id><spaceUsed>5</spaceUsed><quotaAmount>1000</quotaAmount><name>u.T.</name>"
    "</user>\n"
    "</userInfo>\n"
    "<dirInfo>\n"
    "<directory><zid>9</zid><path>\\q\\a&amp;b</path><spaceUsed>0</spaceUsed>"
    "<quotaAmount>77</quotaAmount></directory>\n"
    "</dirInfo>\n"
    "</metadata>\n";

TEST(DocumentReader, YieldsEachEntryWithItsPlace) {
  const ReadResult result = readDocument(kOneOfEach);
  EXPECT_TRUE(result.findings.empty());
  ASSERT_EQ(result.entries.size(), 5u);
  const Entry &arbor = result.entries[0];
  EXPECT_EQ(arbor.kind, EntryKind::trustee);
  EXPECT_EQ(arbor.at.line, 4u);
  EXPECT_EQ(arbor.at.column, 1u);
  EXPECT_EQ(arbor.path, "/docs/a&b");
  EXPECT_EQ(arbor.rawPath, "/docs/a&b");
  EXPECT_EQ(arbor.pathAt.line, 3u);
  EXPECT_EQ(arbor.pathAt.column, 19u);
  EXPECT_EQ(arbor.zid, "7");
  EXPECT_EQ(arbor.name, "admin.corp.T.");
  EXPECT_EQ(rightsLetters(arbor.rights), "rf");
  EXPECT_EQ(arbor.cdata, kCdataPath);
  const Entry &ad = result.entries[1];
  EXPECT_TRUE(ad.ad);
  EXPECT_EQ(ad.name, "ann&co");
  EXPECT_EQ(ad.rawName, "ann&amp;co");
  EXPECT_EQ(ad.id, "S-1-5-21-9");
  EXPECT_EQ(result.entries[2].kind, EntryKind::filter);
  EXPECT_EQ(rightsLetters(result.entries[2].rights), "s");
  const Entry &user = result.entries[3];
  EXPECT_EQ(user.kind, EntryKind::userQuota);
  EXPECT_EQ(user.amount, "1000");
  EXPECT_EQ(user.spaceUsed, "5");
  const Entry &directory = result.entries[4];
  EXPECT_EQ(directory.kind, EntryKind::dirQuota);
  EXPECT_EQ(directory.path, "\\q\\a&b");
  EXPECT_EQ(directory.rawPath, "\\q\\a&amp;b");
  EXPECT_EQ(comparablePath(directory), "/q/a&b");
  const std::vector<std::pair<Section, bool>> sections = {
      {Section::trustees, true},    {Section::trustees, false}, {Section::userQuotas, true},
      {Section::userQuotas, false}, {Section::dirQuotas, true}, {Section::dirQuotas, false}};
  EXPECT_EQ(result.sections, sections);
}

TEST(DocumentReader, MissingEndTagIsNotWellFormedWithItsPlace) {
  const ReadResult result =
      readDocument("<metadata>\n<trusteeInfo>\n<file><zid></zid><path><![CDATA[/b]]></path>\n"
                   "<trustee><name>u0</name><id></id><rights value=\"R\"><read/></rights>\n"
                   "</file>\n</trusteeInfo>\n</metadata>\n");
  EXPECT_TRUE(result.failed);
  EXPECT_EQ(findingTexts(result), Texts{"5:3 not-well-formed"});
  EXPECT_EQ(result.findings[0].message,
            "not well-formed XML: mismatched tag (the open element is <trustee> of line 4)");
  EXPECT_TRUE(result.entries.empty());
}

TEST(DocumentReader, DocumentCutShort) {
  const ReadResult result = readDocument("<metadata>\n<userInfo>\n");
  EXPECT_EQ(findingTexts(result), Texts{"3:1 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "the document ends inside <userInfo> of line 2");
}

TEST(DocumentReader, EmptyInput) {
  const ReadResult result = readDocument("");
  EXPECT_EQ(findingTexts(result), Texts{"1:1 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "the document holds no element");
}

TEST(DocumentReader, UnknownAndMisplacedElements) {
  const ReadResult result = readDocument(
      "<metadata><foo><bar/></foo>\n"
      "<trusteeInfo><trustee><name>x</name></trustee><user/></trusteeInfo>\n"
      "<userInfo><user><name>u</name><quotaAmount>1</quotaAmount><email/></user></userInfo>\n"
      "</metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"1:11 unknown-element", "2:14 entry-outside-file",
                                         "2:47 misplaced-element", "3:59 unknown-element"}));
  EXPECT_EQ(result.findings[0].message, "unknown element <foo> in <metadata>");
  EXPECT_EQ(result.findings[1].message, "<trustee> outside a <file> (in <trusteeInfo>)");
  EXPECT_EQ(result.findings[2].message, "element <user> is not allowed in <trusteeInfo>");
  EXPECT_EQ(result.entries.size(), 1u);
}

TEST(DocumentReader, WrongRoot) {
  const ReadResult result = readDocument("<trusteeInfo></trusteeInfo>");
  EXPECT_EQ(findingTexts(result), Texts{"1:1 misplaced-element"});
  EXPECT_EQ(result.findings[0].message, "the root element is <trusteeInfo>, not <metadata>");
}

TEST(DocumentReader, EntryBeforeItsPath) {
  const ReadResult result = readDocument("<metadata><trusteeInfo><file>\n"
                                         "<trustee><name>u</name></trustee>\n"
                                         "<path><![CDATA[/a]]></path>\n"
                                         "<inheritedRightsFilter/>\n"
                                         "</file><file><zid/></file></trusteeInfo></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"2:1 entry-before-path", "5:8 missing-path"}));
  EXPECT_EQ(result.findings[0].message, "<trustee> before the <path> of its <file>");
  ASSERT_EQ(result.entries.size(), 1u);
  EXPECT_EQ(result.entries[0].kind, EntryKind::filter);
}

TEST(DocumentReader, RightsOutsideTheTable) {
  const ReadResult result =
      readDocument("<metadata><trusteeInfo><file><path>/a</path>\n"
                   "<trustee><name>u</name><rights><read/><READ/><delete/></rights></trustee>\n"
                   "</file></trusteeInfo></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"2:39 unknown-right", "2:46 unknown-right"}));
  EXPECT_EQ(result.findings[0].message, "<READ> is not a right in <rights>");
  ASSERT_EQ(result.entries.size(), 1u);
  EXPECT_EQ(rightsLetters(result.entries[0].rights), "r");
}

TEST(DocumentReader, QuotaAmountsThatAreNotNumbers) {
  const ReadResult result =
      readDocument("<metadata><userInfo>\n"
                   "<user><name>a</name><quotaAmount>12kB</quotaAmount></user>\n"
                   "<user><name>b</name><quotaAmount> 5</quotaAmount></user>\n"
                   "<user><name>c</name><quotaAmount>9223372036854775808</quotaAmount></user>\n"
                   "<user><name>d</name><quotaAmount>9223372036854775807</quotaAmount></user>\n"
                   "</userInfo></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"2:21 quota-not-a-number", "3:21 quota-not-a-number",
                                         "4:21 quota-not-a-number"}));
  EXPECT_EQ(result.findings[0].message,
            "quota amount \"12kB\" is not a whole number from 0 to 9223372036854775807");
}

TEST(DocumentReader, SameEntryTwice) {
  const ReadResult result = readDocument(
      "<metadata><trusteeInfo>\n"
      "<file><path>/a</path><trustee><name>u</name></trustee></file>\n"
      "<file><path>/a</path><trustee type=\"adID\"><id>S-1</id></trustee></file>\n"
      "<file><path>/a</path><trustee><name>u</name><rights><read/></rights></trustee></file>\n"
      "</trusteeInfo><dirInfo>\n"
      "<directory><path>\\q</path><quotaAmount>1</quotaAmount></directory>\n"
      "<directory><path>/q</path><quotaAmount>2</quotaAmount></directory>\n"
      "</dirInfo></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"4:22 duplicate-entry", "7:1 duplicate-entry"}));
  EXPECT_EQ(result.findings[0].message, "the same trustee as on line 2");
  EXPECT_EQ(result.findings[1].message, "the same directory quota as on line 6");
  EXPECT_EQ(result.entries.size(), 5u);
}

// A set given from outside serves one document after another: each starts with it empty.
TEST(DocumentReader, AnOutsideKeySetIsEmptiedForEachDocument) {
  KeySet keys;
  EXPECT_TRUE(readDocument(kOneOfEach, &keys).findings.empty());
  EXPECT_EQ(keys.size(), 5u);
  EXPECT_TRUE(readDocument(kOneOfEach, &keys).findings.empty());
  EXPECT_EQ(keys.size(), 5u);
  const ReadResult twice =
      readDocument("<metadata><trusteeInfo>\n"
                   "<file><path>/a</path><trustee><name>u</name></trustee></file>\n"
                   "<file><path>/a</path><trustee><name>u</name></trustee></file>\n"
                   "</trusteeInfo></metadata>",
                   &keys);
  EXPECT_EQ(findingTexts(twice), (Texts{"3:22 duplicate-entry"}));
  EXPECT_EQ(twice.findings[0].message, "the same trustee as on line 2");
  EXPECT_EQ(keys.size(), 1u);
}

TEST(DocumentReader, EntriesWithoutWhatTrovanNeeds) {
  const ReadResult result = readDocument(
      "<metadata><trusteeInfo><file><path>/a</path>\n"
      "<trustee><id></id></trustee>\n"
      "<trustee type=\"adID\"><name>x</name></trustee>\n"
      "</file></trusteeInfo><userInfo>\n"
      "<user><quotaAmount>1</quotaAmount></user><user><name>u</name></user>\n"
      "</userInfo><dirInfo><directory><quotaAmount>1</quotaAmount></directory></dirInfo>"
      "</metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"2:1 missing-name", "3:1 missing-id", "5:1 missing-name",
                                         "5:42 missing-quota", "6:21 missing-path"}));
  EXPECT_TRUE(result.entries.empty());
}

TEST(DocumentReader, AttributesAndText) {
  const ReadResult result =
      readDocument("<metadata><trusteeInfo><file><path>/a</path>\n"
                   "<trustee type=\"ad\" x=\"1\"><name>u</name></trustee>stray\n"
                   "</file></trusteeInfo></metadata>");
  EXPECT_EQ(findingTexts(result),
            (Texts{"2:1 unknown-attribute", "2:1 unknown-attribute", "2:50 text-outside-value"}));
  EXPECT_EQ(result.findings[0].message, "type=\"ad\" on <trustee>: only type=\"adID\" is known");
  EXPECT_EQ(result.findings[1].message, "unknown attribute x on <trustee>");
  EXPECT_EQ(result.findings[2].message, "text in <file>, where only elements belong");
}

// The form xmllint --format writes: a declaration, and empty elements with attributes.
TEST(DocumentReader, FormattedDocument) {
  const ReadResult result =
      readDocument("<?xml version=\"1.0\"?>\n<metadata>\n  <trusteeInfo>\n    <file>\n"
                   "      <path><![CDATA[/a]]></path>\n      <inheritedRightsFilter value=\"\"/>\n"
                   "      <trustee>\n        <name>u</name>\n        <id/>\n      </trustee>\n"
                   "    </file>\n  </trusteeInfo>\n</metadata>\n");
  EXPECT_EQ(findingTexts(result),
            (Texts{"1:1 xml-declaration", "6:7 empty-element-with-attributes"}));
  EXPECT_EQ(result.entries.size(), 2u);
}

TEST(DocumentReader, CommentsAndDoctype) {
  ReadResult result = readDocument("<metadata><!-- c --><?pi x?></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"1:11 not-metadata", "1:21 not-metadata"}));
  EXPECT_EQ(result.findings[0].message, "a comment: trovan restore reads it as a tag");
  result = readDocument("<!DOCTYPE metadata [<!ENTITY a \"b\">]><metadata>&a;</metadata>");
  EXPECT_EQ(findingTexts(result), Texts{"1:20 doctype"});
  EXPECT_TRUE(result.failed);
}

// A reference that never meets its ';' would keep the parser waiting for more input: the parser
// gives up past its lookup limit (10 MB), so the reader never holds the whole document.
TEST(DocumentReader, ReferenceNeverEndedStopsReading) {
  std::string document = "<metadata><trusteeInfo><file><path>/a &amp";
  document.append(17u << 20, 'x');
  document += "</path></file></trusteeInfo></metadata>";
  const ReadResult result = readDocument(document);
  EXPECT_EQ(findingTexts(result), Texts{"1:39 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "not well-formed XML: internal error: Huge input lookup");
  EXPECT_TRUE(result.failed);
}

TEST(DocumentReader, RepeatedChildren) {
  const ReadResult result = readDocument(
      "<metadata><trusteeInfo><file><path>/a</path><path>/b</path>\n"
      "<trustee><name>u</name><name>v</name></trustee></file></trusteeInfo></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"1:45 repeated-element", "2:24 repeated-element"}));
  EXPECT_EQ(result.findings[0].message, "a second <path> in one <file>; the last one counts");
  ASSERT_EQ(result.entries.size(), 1u);
  EXPECT_EQ(result.entries[0].path, "/b");
  EXPECT_EQ(result.entries[0].name, "v");
}

TEST(DocumentReader, EntriesComeOneAtATimeFromALargeDocument) {
  std::string document = "<metadata><userInfo>\n";
  for (int at = 0; at < 20000; ++at)
    document +=
        "<user><name>u" + std::to_string(at) + "</name><quotaAmount>1</quotaAmount></user>\n";
  document += "</userInfo></metadata>\n";
  const ReadResult result = readDocument(document);
  EXPECT_TRUE(result.findings.empty());
  ASSERT_EQ(result.entries.size(), 20000u);
  EXPECT_EQ(result.entries[19999].at.line, 20001u);
  EXPECT_EQ(result.entries[19999].name, "u19999");
}

// A line end written CR LF is LF in the value and CR LF in its raw text; a CDATA section's too.
TEST(DocumentReader, LineEndsInValues) {
  const ReadResult result = readDocument(
      "<metadata><trusteeInfo><file><path>/a\r\nb&amp;c</path>"
      "<trustee><name><![CDATA[x\r\ny\rz]]></name></trustee></file></trusteeInfo></metadata>");
  EXPECT_TRUE(result.findings.empty());
  ASSERT_EQ(result.entries.size(), 1u);
  EXPECT_EQ(result.entries[0].path, "/a\nb&c");
  EXPECT_EQ(result.entries[0].rawPath, "/a\r\nb&amp;c");
  EXPECT_EQ(result.entries[0].name, "x\ny\nz");
  EXPECT_EQ(result.entries[0].rawName, "x\r\ny\rz");
  EXPECT_EQ(result.entries[0].cdata, kCdataName);
}

TEST(DocumentReader, ReferencesInAttributeValues) {
  const ReadResult result =
      readDocument("<metadata><userInfo>\n"
                   "<user type=\"ad&#73;D\"><id>S-1</id><name>a</name><quotaAmount>1</quotaAmount>"
                   "</user>\n<user type=\"a&amp;b&lt;\"><name>b</name><quotaAmount>1</quotaAmount>"
                   "</user>\n</userInfo></metadata>");
  EXPECT_EQ(findingTexts(result), Texts{"3:1 unknown-attribute"});
  EXPECT_EQ(result.findings[0].message, "type=\"a&b<\" on <user>: only type=\"adID\" is known");
  ASSERT_EQ(result.entries.size(), 2u);
  EXPECT_TRUE(result.entries[0].ad);
}

// Names are taken as written: a prefix is part of the name, a namespace declaration is an
// attribute.
TEST(DocumentReader, NoNamespaces) {
  const ReadResult result =
      readDocument("<metadata xmlns=\"urn:x\"><q:trusteeInfo/><trusteeInfo/></metadata>");
  EXPECT_EQ(findingTexts(result), (Texts{"1:1 unknown-attribute", "1:25 unknown-element"}));
  EXPECT_EQ(result.findings[0].message, "unknown attribute xmlns on <metadata>");
  EXPECT_EQ(result.findings[1].message, "unknown element <q:trusteeInfo> in <metadata>");
}

TEST(DocumentReader, TagCutShortAtTheEnd) {
  const ReadResult result = readDocument("<metadata><userInfo><us");
  EXPECT_TRUE(result.failed);
  EXPECT_EQ(findingTexts(result), Texts{"1:21 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "not well-formed XML: unclosed token");
}

TEST(DocumentReader, CdataSectionCutShortAtTheEnd) {
  const ReadResult result = readDocument("<metadata>\n <![CDATA[x");
  EXPECT_EQ(findingTexts(result), Texts{"2:2 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "not well-formed XML: unclosed CDATA section");
}

TEST(DocumentReader, JunkAfterTheRoot) {
  const ReadResult result = readDocument("<metadata></metadata>\n x");
  EXPECT_EQ(findingTexts(result), Texts{"2:2 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "not well-formed XML: junk after document element");
}

TEST(DocumentReader, WhatTheParserSaysInItsOwnWords) {
  ReadResult result = readDocument("<metadata a=\"1\" a=\"2\"></metadata>");
  EXPECT_EQ(result.findings.at(0).message, "not well-formed XML: duplicate attribute");
  result = readDocument("<metadata>&nbsp;</metadata>");
  EXPECT_EQ(findingTexts(result), Texts{"1:11 not-well-formed"});
  EXPECT_EQ(result.findings[0].message, "not well-formed XML: undefined entity");
  result = readDocument("<metadata><1/></metadata>");
  EXPECT_EQ(result.findings.at(0).message,
            "not well-formed XML: xmlParseStartTag: invalid element name");
}

// Values, raw texts and places stay whole where the input is read in several pieces.
TEST(DocumentReader, ValuesAcrossReads) {
  std::string document = "<metadata><userInfo>\n";
  for (int at = 0; at < 3000; ++at)
    document += "<user><name>a&amp;b\xc3\xa9" + std::to_string(at) +
                "</name><quotaAmount>1</quotaAmount></user>\r\n";
  document += "</userInfo></metadata>\n";
  const ReadResult result = readDocument(document);
  EXPECT_TRUE(result.findings.empty());
  ASSERT_EQ(result.entries.size(), 3000u);
  for (std::size_t at = 0; at < result.entries.size(); ++at) {
    const Entry &entry = result.entries[at];
    ASSERT_EQ(entry.name, "a&b\xc3\xa9" + std::to_string(at));
    ASSERT_EQ(entry.rawName, "a&amp;b\xc3\xa9" + std::to_string(at));
    ASSERT_EQ(entry.at.line, at + 2);
    ASSERT_EQ(entry.at.column, 1u);
  }
}

// Entries, findings and sections in one stream, as a consumer meets them.
Texts eventOrder(std::string_view bytes) {
  BytesFd input(bytes);
  Texts order;
  DocumentReader reader(input.fd(), [&order](Finding finding) {
    order.push_back(std::to_string(finding.at.line) + " " + finding.code);
  });
  reader.onSection([&order](Section section, bool opening) {
    order.push_back(std::string(opening ? "open " : "close ") +
                    std::string(sectionElement(section)));
  });
  Entry entry;
  while (reader.next(entry))
    order.push_back(std::to_string(entry.at.line) + " " + std::string(kindName(entry.kind)));
  return order;
}

// A duplicate's finding comes just before the entry, after everything met before it.
TEST(DocumentReader, DuplicateFindingsStandJustBeforeTheirEntry) {
  const Texts order =
      eventOrder("<metadata><trusteeInfo>\n"
                 "<file><path>/a</path><trustee><name>u</name></trustee></file>\n"
                 "<file><path>/a</path><trustee><name>u</name></trustee></file>\n"
                 "<file><path>/a</path><zid/><zid/><trustee><name>u</name></trustee></file>\n"
                 "</trusteeInfo><userInfo>\n"
                 "<user><name>v</name><quotaAmount>1</quotaAmount></user>\n"
                 "<user><name>v</name><quotaAmount>x</quotaAmount></user>\n"
                 "</userInfo>\n"
                 "<userInfo><user><name>v</name><quotaAmount>1</quotaAmount></user><bad");
  EXPECT_EQ(order,
            (Texts{"open trusteeInfo", "2 trustee", "3 duplicate-entry", "3 trustee",
                   "4 repeated-element", "4 duplicate-entry", "4 trustee", "close trusteeInfo",
                   "open userInfo", "6 user quota", "7 quota-not-a-number", "7 duplicate-entry",
                   "7 user quota", "close userInfo", "open userInfo", "9 duplicate-entry",
                   "9 user quota", "9 not-well-formed"}));
}

}  // namespace
