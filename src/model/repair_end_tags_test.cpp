#include "model/repair_end_tags.h"

#include <gtest/gtest.h>

#include "model/repaired_reader.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

struct Repaired {
  std::string bytes;
  Texts findings;  // "LINE:COLUMN code: message"
};

Texts texts(const std::vector<Finding> &findings) {
  Texts result;
  for (const Finding &finding : findings)
    result.push_back(std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
                     " " + finding.code + ": " + finding.message);
  return result;
}

// The repaired bytes of `input`, read `size` bytes at a time, and the repair's findings.
Repaired repair(std::string_view input, std::size_t size = 65536) {
  BytesFd fd(input);
  EndTagRepair step(fd.fd());
  Repaired result;
  std::string buffer(size, '\0');
  for (long count; (count = step.read(buffer.data(), size)) > 0;)
    result.bytes.append(buffer.data(), static_cast<std::size_t>(count));
  std::vector<Finding> findings;
  step.releaseAll([&findings](const Finding &finding) { findings.push_back(finding); });
  result.findings = texts(findings);
  return result;
}

constexpr char kSaved[] =
    "<metadata>\n"
    "<trusteeInfo>\n"
    "<file><zid>1</zid><path><![CDATA[/b]]></path>\n"
    "<trustee><name>u0.corp.T.</name><id></id><rights value=\"RF\"><read/><fileScan/>"
    "</rights></trustee>\n"
    "</file>\n"
    "<file><zid>2</zid><path><![CDATA[/b/y.txt]]></path>\n"
    "<trustee><name>u1.corp.T.</name><id></id><rights value=\"R\"><read/></rights></trustee>\n"
    "</file>\n"
    "</trusteeInfo>\n"
    "</metadata>\n";

// kSaved with the first occurrence of `cut` taken out, where `context` (which starts with it)
// stands first.
std::string without(std::string_view cut, std::string_view context = {},
                    std::string document = kSaved) {
  document.erase(document.find(context.empty() ? cut : context), cut.size());
  return document;
}

TEST(EndTagRepair, PassesAWellFormedDocumentAsItIs) {
  const Repaired result = repair(kSaved);
  EXPECT_EQ(result.bytes, kSaved);
  EXPECT_TRUE(result.findings.empty());
}

TEST(EndTagRepair, PutsBackAMissingTrusteeEndTagBeforeTheEndTagOfItsFile) {
  const Repaired cut = repair(without("</trustee>", "</trustee>\n</file>"));
  std::string expected = kSaved;
  expected.replace(expected.find("</trustee>\n</file>"), 18, "\n</trustee></file>");
  EXPECT_EQ(cut.bytes, expected);
  EXPECT_EQ(cut.findings, Texts{"5:1 repaired-end-tag: inserted the missing </trustee> (the "
                                "open element is <trustee> of line 4)"});
}

TEST(EndTagRepair, ClosesAnOpenNameWhereTheNextElementOfItsEntryStarts) {
  const Repaired result = repair(without("</name>"));
  EXPECT_EQ(result.bytes, kSaved);
  EXPECT_EQ(result.findings, Texts{"4:26 repaired-end-tag: inserted the missing </name> (the "
                                   "open element is <name> of line 4)"});
}

TEST(EndTagRepair, ClosesAnOpenFileWhereTheNextFileStarts) {
  const Repaired result = repair(without("</file>\n"));
  std::string expected = kSaved;
  expected.replace(expected.find("</file>\n"), 8, "");
  expected.insert(expected.find("<file><zid>2"), "</file>");
  EXPECT_EQ(result.bytes, expected);
  EXPECT_EQ(result.findings, Texts{"5:1 repaired-end-tag: inserted the missing </file> (the open "
                                   "element is <file> of line 3)"});
}

TEST(EndTagRepair, ClosesSeveralElementsInnermostFirst) {
  const Repaired result =
      repair(without("</read></rights></trustee>", {},
                     "<metadata><trusteeInfo><file><trustee><rights><read></read></rights>"
                     "</trustee></file>"));
  EXPECT_EQ(result.bytes, "<metadata><trusteeInfo><file><trustee><rights><read></read></rights>"
                          "</trustee></file>");
  EXPECT_EQ(result.findings,
            (Texts{"1:53 repaired-end-tag: inserted the missing </read> (the open element is "
                   "<read> of line 1)",
                   "1:53 repaired-end-tag: inserted the missing </rights> (the open element is "
                   "<rights> of line 1)",
                   "1:53 repaired-end-tag: inserted the missing </trustee> (the open element is "
                   "<trustee> of line 1)"}));
}

TEST(EndTagRepair, ClosesASectionWhereTheNextSectionStarts) {
  const Repaired result = repair("<metadata><trusteeInfo>\n<userInfo></userInfo></metadata>");
  EXPECT_EQ(result.bytes,
            "<metadata><trusteeInfo>\n</trusteeInfo><userInfo></userInfo></metadata>");
  EXPECT_EQ(result.findings, Texts{"2:1 repaired-end-tag: inserted the missing </trusteeInfo> "
                                   "(the open element is <trusteeInfo> of line 1)"});
}

TEST(EndTagRepair, TakesMarkupInCdataCommentsInstructionsAndAttributesAsText) {
  const std::string document =
      "<metadata><trusteeInfo><file><path><![CDATA[/a</trustee>]]]]></path>"
      "<!-- </file> <trustee> --><?pi </file> ?>"
      "<trustee><rights value=\"a>b</file>\" other='<file>'></rights></trustee></file>"
      "</trusteeInfo></metadata>";
  const Repaired result = repair(document);
  EXPECT_EQ(result.bytes, document);
  EXPECT_TRUE(result.findings.empty());
}

TEST(EndTagRepair, LeavesAnEndTagThatNoClosingMatchesForTheReader) {
  const std::string document =
      "<metadata><trusteeInfo><file><trustee></user></file></trusteeInfo></metadata>";
  const Repaired result = repair(document);
  EXPECT_EQ(result.bytes, document);
  EXPECT_TRUE(result.findings.empty());
}

TEST(EndTagRepair, NeverClosesAnElementThatHoldsAnElementOutOfPlace) {
  for (const char *document :
       {"<metadata><trusteeInfo><file><trustee><foo/></file></trusteeInfo></metadata>",
        "<metadata><trusteeInfo><file><trustee><name>a<foo/></trustee></file>",
        "<metadata><trusteeInfo><file><trustee><rights><foo/></file></trusteeInfo>"}) {
    const Repaired result = repair(document);
    EXPECT_EQ(result.bytes, document);
    EXPECT_TRUE(result.findings.empty()) << document;
  }
}

TEST(EndTagRepair, TakesAnElementOutOfPlaceForALostEndTag) {
  // Well-formed, with a <file> inside a <file>: the inner one is taken for the next file, and
  // the outer end tag is then left without its element, for the reader to refuse.
  const Repaired result =
      repair("<metadata><trusteeInfo><file><file></file></file></trusteeInfo></metadata>");
  EXPECT_EQ(result.bytes,
            "<metadata><trusteeInfo><file></file><file></file></file></trusteeInfo></metadata>");
  EXPECT_EQ(result.findings.size(), 1u);
}

TEST(EndTagRepair, StopsRepairingAtADocumentTypeDeclaration) {
  const std::string document = "<!DOCTYPE metadata><metadata><trusteeInfo></metadata>";
  EXPECT_EQ(repair(document).bytes, document);
}

TEST(EndTagRepair, StopsRepairingAtANameOverTheLimit) {
  const std::string name(EndTagRepair::kNameLimit + 1, 'n');
  const std::string document = "<metadata><trusteeInfo><" + name + "/></metadata>";
  EXPECT_EQ(repair(document).bytes, document);
  const std::string fits(EndTagRepair::kNameLimit, 'n');
  const std::string closed = "<metadata><" + fits + "></" + fits + "><trusteeInfo></metadata>";
  EXPECT_EQ(repair(closed).findings.size(), 1u);
}

TEST(EndTagRepair, StopsRepairingPastTheDepthLimit) {
  std::string document = "<metadata><trusteeInfo>";
  for (std::size_t depth = 2; depth < EndTagRepair::kDepthLimit; ++depth)
    document += "<a>";
  document += "<b></b>";  // the deepest element that is still followed
  EXPECT_EQ(repair(document + "<file></trusteeInfo>").findings.size(), 0u);
  document += "<c>";
  EXPECT_EQ(repair(document + "<file></trusteeInfo>").bytes, document + "<file></trusteeInfo>");
}

TEST(EndTagRepair, GivesTheSameBytesWhateverTheReadSize) {
  const std::string edited =
      without("</trustee>", "</trustee>\n</file>") + std::string(70000, ' ') + without("</name>");
  const std::string whole = repair(edited).bytes;
  EXPECT_EQ(repair(edited, 1).bytes, whole);
  EXPECT_EQ(repair(edited, 7).bytes, whole);
  EXPECT_EQ(repair(edited).findings.size(), 2u);
}

TEST(EndTagRepair, PlacesItsInsertionsByLineAndCharacter) {
  const Repaired result =
      repair("<metadata>\r\n<trusteeInfo>\r<file><path>\xC3\xA9</path><trustee></file>");
  EXPECT_EQ(result.findings, Texts{"3:30 repaired-end-tag: inserted the missing </trustee> (the "
                                   "open element is <trustee> of line 3)"});
}

TEST(EndTagRepair, TakesPlacesBackToTheInputAsRead) {
  BytesFd fd("<metadata><trusteeInfo><file><trustee><name>a</file><file><trustee></file>");
  EndTagRepair step(fd.fd());
  char buffer[512];
  while (step.read(buffer, sizeof buffer) > 0) {
  }
  ASSERT_EQ(step.insertions().size(), 3u);
  // </name></trustee> before column 46 of the input, </trustee> before column 68.
  for (const auto &[repaired, input] :
       std::vector<std::pair<unsigned long, unsigned long>>{{45, 45},
                                                            {46, 46},
                                                            {62, 46},
                                                            {63, 46},
                                                            {64, 47},
                                                            {84, 67},
                                                            {85, 68},
                                                            {94, 68},
                                                            {95, 68},
                                                            {96, 69}})
    EXPECT_EQ(step.original({1, repaired}).column, input) << repaired;
  EXPECT_EQ(step.original({1, 96}).line, 1u);
  EXPECT_EQ(step.original({2, 90}).column, 90u);
}

TEST(EndTagRepair, PutsBackAtMostItsLimitAndSaysSo) {
  std::string document = "<metadata><trusteeInfo><file>";
  for (std::size_t count = 0; count <= EndTagRepair::kInsertionLimit; ++count)
    document += "<trustee></file><file>";
  const Repaired result = repair(document);
  ASSERT_EQ(result.findings.size(), EndTagRepair::kInsertionLimit + 1);
  EXPECT_EQ(result.findings.back(), "1:" + std::to_string(30 + 22 * 1024 + 9) +
                                        " repair-limit: the missing </trustee> is not put back: "
                                        "1024 end tags were already");
  EXPECT_EQ(result.bytes.size(), document.size() + 10 * EndTagRepair::kInsertionLimit);
}

TEST(RepairedReader, ReadsTheRepairedDocumentWithThePlacesOfTheInput) {
  std::string oneLine = without("</trustee>", "</trustee>\n</file>");
  oneLine.replace(oneLine.find("</file>\n<file>"), 14, "</file><foo/><file>");
  BytesFd fd(oneLine);
  std::vector<Finding> findings;
  std::vector<Entry> entries;
  RepairedReader reader(fd.fd(), true,
                        [&findings](Finding finding) { findings.push_back(finding); });
  Entry entry;
  while (reader.next(entry))
    entries.push_back(entry);
  EXPECT_FALSE(reader.reader().failed());
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].path, "/b");
  EXPECT_EQ(entries[1].path, "/b/y.txt");
  EXPECT_EQ(entries[1].at.line, 6u);
  EXPECT_EQ(texts(findings),
            (Texts{"5:1 repaired-end-tag: inserted the missing </trustee> (the open element is "
                   "<trustee> of line 4)",
                   "5:8 unknown-element: unknown element <foo> in <trusteeInfo>"}));
}

TEST(RepairedReader, WithoutTheRepairReadsAsTheReader) {
  BytesFd fd(without("</trustee>", "</trustee>\n</file>"));
  std::vector<Finding> findings;
  RepairedReader reader(fd.fd(), false,
                        [&findings](Finding finding) { findings.push_back(finding); });
  Entry entry;
  while (reader.next(entry)) {
  }
  EXPECT_TRUE(reader.reader().failed());
  EXPECT_EQ(texts(findings), Texts{"5:3 not-well-formed: not well-formed XML: mismatched tag (the "
                                   "open element is <trustee> of line 4)"});
}

}  // namespace
