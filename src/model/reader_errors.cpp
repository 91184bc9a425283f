// The end of reading: where a document stops being well-formed XML, and in what words. The
// parser's first error stops it; the words are the reader's own where it knows the case (an end
// tag that does not match, a document cut short), the parser's otherwise.
#include <libxml/xmlerror.h>

#include <cstring>

#include "model/reader_state.h"

namespace {

// The first byte at or after `from` that is not blank (the window's end if none).
unsigned long long firstNonBlank(const InputWindow &input, unsigned long long from) {
  if (from < input.start()) from = input.start();
  while (from < input.end() && isXmlBlank(*input.at(from)))
    ++from;
  return from;
}

// The parser's message, without its line end.
std::string parserWords(const char *message) {
  std::string words = message != nullptr ? message : "error";
  while (!words.empty() && (words.back() == '\n' || words.back() == ' '))
    words.pop_back();
  return words;
}

}  // namespace

void DocumentReader::State::parserError() {
  const xmlError *last = &parser->lastError;
  if (errorSeen || aborted || last->level != XML_ERR_FATAL || last->code == XML_ERR_USER_STOP)
    return;
  if (!declarationChecked) checkDeclaration();
  errorSeen = true;
  error.code = last->code;
  error.at = {static_cast<unsigned long>(last->line > 0 ? last->line : 1),
              static_cast<unsigned long>(last->int2 > 0 ? last->int2 : 1)};
  error.atEnd = finalGiven;
  error.message = parserWords(last->message);
  xmlStopParser(parser);
}

Finding DocumentReader::State::errorFinding() {
  const std::string prefix = "not well-formed XML: ";
  const unsigned long long rest = firstNonBlank(input, lastEnd);
  if (error.code == XML_ERR_TAG_NAME_MISMATCH) {
    Position at = place(markupStart());
    at.column += 2;  // the name after "</"
    std::string message = prefix + "mismatched tag";
    if (openKept > 0 && openKept == openDepth)
      message += " (the open element is <" + std::string(openNames[openKept - 1].name) +
                 "> of line " + std::to_string(placeOfOpen(openKept - 1).line) + ")";
    return {at, "not-well-formed", message};
  }
  switch (error.code) {
  case XML_ERR_ENTITYREF_SEMICOL_MISSING:
  case XML_ERR_ENTITYREF_NO_NAME:
    return {error.at, "not-well-formed", prefix + "not well-formed (invalid token)"};
  case XML_ERR_UNDECLARED_ENTITY:
    return {place(rest), "not-well-formed", prefix + "undefined entity"};
  case XML_ERR_ATTRIBUTE_REDEFINED:
    return {error.at, "not-well-formed", prefix + "duplicate attribute"};
  default: break;
  }
  if (error.atEnd || error.code == XML_ERR_DOCUMENT_END) {
    if (rootSeen && openDepth == 0)
      return {place(rest), "not-well-formed", prefix + "junk after document element"};
    if (rest == input.end() && openDepth == 0)
      return {place(rest), "not-well-formed", "the document holds no element"};
    if (rest == input.end()) {
      std::string message = "the document ends inside <" +
                            std::string(openKept == 0 ? "?" : openNames[openKept - 1].name) + ">";
      if (openKept > 0) message += " of line " + std::to_string(placeOfOpen(openKept - 1).line);
      return {place(rest), "not-well-formed", message};
    }
    const bool cdata = input.end() - rest >= 9 && std::memcmp(input.at(rest), "<![CDATA[", 9) == 0;
    return {place(rest), "not-well-formed",
            prefix + (cdata ? "unclosed CDATA section" : "unclosed token")};
  }
  return {error.at, "not-well-formed", prefix + error.message};
}

void DocumentReader::State::finish() {
  finished = true;
  if (!declarationChecked) checkDeclaration();
  if (aborted) {
    failing = true;
    return;
  }
  if (!errorSeen) {
    endAt = place(input.end());
    return;
  }
  failing = true;
  Finding finding = errorFinding();
  endAt = finding.at;
  pushEvent({ReaderEvent::Kind::finding, Section::trustees, 0, std::move(finding)});
}
