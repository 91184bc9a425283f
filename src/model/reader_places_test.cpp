// The places of elements that only a finding needs, found after later places were: after CR LF
// line ends, after multi-byte characters, and with the input given a few bytes at a time.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "model/document_reader.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

// The document read from a source that gives at most `size` bytes a read.
ReadResult readInPieces(std::string_view bytes, std::size_t size) {
  ReadResult result;
  std::size_t done = 0;
  DocumentReader reader(
      [&](char *buffer, std::size_t room) -> long {
        const std::size_t count = std::min({size, room, bytes.size() - done});
        std::memcpy(buffer, bytes.data() + done, count);
        done += count;
        return static_cast<long>(count);
      },
      [&result](Finding finding) { result.findings.push_back(finding); });
  Entry entry;
  while (reader.next(entry))
    result.entries.push_back(entry);
  result.failed = reader.failed();
  return result;
}

Texts messages(const ReadResult &result) {
  Texts texts;
  for (const Finding &finding : result.findings)
    texts.push_back(finding.message);
  return texts;
}

// Every finding and entry place is the same whatever the size of the reads.
void expectSameInPieces(std::string_view bytes) {
  const ReadResult whole = readDocument(bytes);
  for (std::size_t size : {1u, 2u, 3u, 7u, 64u}) {
    SCOPED_TRACE("reads of " + std::to_string(size));
    const ReadResult pieces = readInPieces(bytes, size);
    EXPECT_EQ(findingTexts(pieces), findingTexts(whole));
    EXPECT_EQ(messages(pieces), messages(whole));
    ASSERT_EQ(pieces.entries.size(), whole.entries.size());
    for (std::size_t at = 0; at < whole.entries.size(); ++at) {
      EXPECT_EQ(pieces.entries[at].at.line, whole.entries[at].at.line);
      EXPECT_EQ(pieces.entries[at].at.column, whole.entries[at].at.column);
      EXPECT_EQ(pieces.entries[at].pathAt.line, whole.entries[at].pathAt.line);
      EXPECT_EQ(pieces.entries[at].pathAt.column, whole.entries[at].pathAt.column);
    }
  }
}

constexpr char kCrLfAndAccents[] =
    "<metadata>\r\n<trusteeInfo>\r\n"
    "<file><zid>\xC3\xA9</zid></file><file><zid>\xC3\xBC</zid><zid>2</zid></file>\r\n"
    "<file><path>/\xC3\xA9</path><trustee><name>n</name><rights x=\"1\"><read/></rights>"
    "</trustee></file>\r\n"
    "</trusteeInfo>\r\n</metadata>\r\n";

TEST(ReaderPlaces, FileAndValuePlacesFoundLateCountCharactersAfterCrLf) {
  const ReadResult result = readDocument(kCrLfAndAccents);
  EXPECT_EQ(findingTexts(result), (Texts{"3:1 missing-path", "3:44 repeated-element",
                                         "3:26 missing-path", "4:45 unknown-attribute"}));
  ASSERT_EQ(result.entries.size(), 1u);
  EXPECT_EQ(result.entries[0].at.line, 4u);
  EXPECT_EQ(result.entries[0].at.column, 22u);
  EXPECT_EQ(result.entries[0].pathAt.line, 4u);
  EXPECT_EQ(result.entries[0].pathAt.column, 7u);
  expectSameInPieces(kCrLfAndAccents);
}

TEST(ReaderPlaces, ValueTooLongIsPlacedAtItsElementAfterAFindingInside) {
  const std::string document = "<metadata>\n<trusteeInfo>\n\xC3\xA9<file><zid><foo/>" +
                               std::string(70000, 'x') + "</zid></file>\n</trusteeInfo>\n" +
                               "</metadata>\n";
  const ReadResult result = readDocument(document);
  EXPECT_EQ(findingTexts(result), (Texts{"3:1 text-outside-value", "3:13 unknown-element",
                                         "3:8 value-too-long", "3:2 missing-path"}));
  expectSameInPieces(document);
}

TEST(ReaderPlaces, MismatchedTagNamesTheLineOfAnOpenElementAfterCrLf) {
  const std::string document = "<metadata>\r\n<trusteeInfo>\r\n<file>\r\n<zid>1</path>\r\n";
  const ReadResult result = readDocument(document);
  EXPECT_EQ(findingTexts(result), Texts{"4:9 not-well-formed"});
  EXPECT_EQ(messages(result),
            Texts{"not well-formed XML: mismatched tag (the open element is <zid> of line 4)"});
  expectSameInPieces(document);
}

TEST(ReaderPlaces, CutShortNamesTheLineOfTheInnermostOpenElement) {
  const std::string document = "<metadata>\r\n<trusteeInfo>\r<file>\n<zid>";
  const ReadResult result = readDocument(document);
  EXPECT_EQ(findingTexts(result), Texts{"4:6 not-well-formed"});
  EXPECT_EQ(messages(result), Texts{"the document ends inside <zid> of line 4"});
  expectSameInPieces(document);
}

TEST(ReaderPlaces, EmptyElementWithAttributesIsPlacedAtItsTag) {
  const std::string document =
      "<metadata>\n<trusteeInfo>\n<file><path>/\xC3\xA9</path><trustee><name>n</name>"
      "<rights value=\"R\"/></trustee></file>\n</trusteeInfo>\n</metadata>\n";
  const ReadResult result = readDocument(document);
  EXPECT_EQ(findingTexts(result), Texts{"3:45 empty-element-with-attributes"});
  expectSameInPieces(document);
}

}  // namespace
