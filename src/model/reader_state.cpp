#include "model/reader_state.h"

#include <cstring>

#include "model/quota_amount.h"

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// An entry emptied, its buffers kept for the next one.
void clearEntry(Entry &entry) {
  entry.kind = EntryKind::trustee;
  entry.at = {};
  entry.pathAt = {};
  entry.ad = false;
  entry.rights = 0;
  entry.cdata = 0;
  for (std::string *text :
       {&entry.path, &entry.name, &entry.id, &entry.amount, &entry.spaceUsed, &entry.zid,
        &entry.rawPath, &entry.rawName, &entry.rawId, &entry.rawAmount})
    text->clear();
}

// A file context emptied, its buffers kept for the next file.
void resetFile(FileContext &file) {
  std::string path = std::move(file.path);
  std::string zid = std::move(file.zid);
  std::string rawPath = std::move(file.rawPath);
  file = FileContext();
  file.path = std::move(path);
  file.zid = std::move(zid);
  file.rawPath = std::move(rawPath);
  file.path.clear();
  file.zid.clear();
  file.rawPath.clear();
}

std::string tagText(std::string_view name) { return "<" + std::string(name) + ">"; }

// An attribute's value: the parser hands an '&' over as the reference "&#38;" (and nothing else
// in that form, the other references being replaced).
std::string attributeValue(const char *text) {
  std::string value = text;
  for (std::size_t at = value.find("&#38;"); at != std::string::npos;
       at = value.find("&#38;", at + 1))
    value.replace(at, 5, "&");
  return value;
}

// Where an element stands, for messages: "in <file>", or "at the top" for the root.
std::string placeText(const std::vector<Frame> &frames) {
  if (frames.empty()) return "as the root element";
  return "in " + tagText(frames.back().name);
}

}  // namespace

void swapEntries(Entry &one, Entry &other) {
  std::swap(one.kind, other.kind);
  std::swap(one.at, other.at);
  std::swap(one.pathAt, other.pathAt);
  std::swap(one.ad, other.ad);
  std::swap(one.rights, other.rights);
  std::swap(one.cdata, other.cdata);
  // Most entries leave half their fields empty: two empty texts stay where they are.
  for (auto field :
       {&Entry::path, &Entry::name, &Entry::id, &Entry::amount, &Entry::spaceUsed, &Entry::zid,
        &Entry::rawPath, &Entry::rawName, &Entry::rawId, &Entry::rawAmount})
    if (!(one.*field).empty() || !(other.*field).empty()) (one.*field).swap(other.*field);
}

unsigned long long DocumentReader::State::parserOffset() const {
  return offsetOf(parser->input->cur);
}

unsigned long long DocumentReader::State::offsetOf(const xmlChar *byte) const {
  return parser->input->consumed + static_cast<unsigned long long>(byte - parser->input->base);
}

bool DocumentReader::State::inParserBuffer(const xmlChar *byte) const {
  return byte >= parser->input->base && byte < parser->input->end;
}

unsigned long long DocumentReader::State::markupStart() const {
  const unsigned long long from = lastEnd > input.start() ? lastEnd : input.start();
  if (from >= input.end()) return input.end();
  const void *found =
      std::memchr(input.at(from), '<', static_cast<std::size_t>(input.end() - from));
  if (found == nullptr) return input.end();
  return from + static_cast<unsigned long long>(static_cast<const char *>(found) - input.at(from));
}

void DocumentReader::State::report(Position at, const char *code, std::string message) {
  pushEvent(
      {ReaderEvent::Kind::finding, Section::trustees, 0, Finding{at, code, std::move(message)}});
}

// A document that starts with an XML declaration (the parser reads it without an event).
void DocumentReader::State::checkDeclaration() {
  declarationChecked = true;
  if (input.start() != 0 || input.end() < 6 || std::memcmp(input.at(0), "<?xml", 5) != 0) return;
  const char after = *input.at(5);
  if (after != ' ' && after != '\t' && after != '\n' && after != '\r') return;
  report({1, 1}, "xml-declaration",
         "an XML declaration: trovan restore refuses a document that does not start "
         "with <metadata>");
}

void DocumentReader::State::openName(const char *name, unsigned long line) {
  if (openKept >= kOpenNamesLimit || openDepth != openKept) return;
  if (openNames.size() == openKept) openNames.emplace_back();
  openNames[openKept].name = name;
  openNames[openKept].line = line;
  ++openKept;
}

void DocumentReader::State::startElement(const char *name, const char **attributes) {
  if (!declarationChecked) checkDeclaration();
  const xmlChar *const cur = parser->input->cur;
  // The parser stands on the '>' or "/>" of the tag; at the end of the input it also hands
  // over a tag cut short, an error follows.
  const bool whole = cur[0] == '>' || (cur[0] == '/' && cur[1] == '>');
  if (!whole) return;
  const void *open =
      memrchr(parser->input->base, '<', static_cast<std::size_t>(cur - parser->input->base));
  const Position at = input.position(open != nullptr ? offsetOf(static_cast<const xmlChar *>(open))
                                                     : parserOffset());
  lastEnd = offsetOf(cur) + (cur[0] == '>' ? 1 : 2);
  openName(name, at.line);
  ++openDepth;
  rootSeen = true;
  textReported = false;
  if (skipDepth > 0) {
    ++skipDepth;
    return;
  }
  const Element parent = frames.empty() ? Element::document : frames.back().element;
  const ElementMatch match = names.match(name);
  if (match.element == Element::unknown || !allowedIn(match.element, parent)) {
    rejectElement(match.element, name, at);
    skipDepth = 1;
    return;
  }
  if (!frames.empty() && holdsText(frames.back().element)) {
    skipDepth = 1;
    return;
  }
  static const char *kNoAttributes[] = {nullptr};
  acceptElement(match.element, elementName(match.element), at,
                attributes != nullptr ? attributes : kNoAttributes);
  if (match.element == Element::right && inEntry) entry.rights |= match.right;
}

void DocumentReader::State::rejectElement(Element element, std::string_view name, Position at) {
  const Element parent = frames.empty() ? Element::document : frames.back().element;
  const std::string tag = tagText(name);
  if (parent == Element::document) {
    report(at, "misplaced-element", "the root element is " + tag + ", not <metadata>");
  } else if (parent == Element::rights || parent == Element::inheritedRightsFilter) {
    report(at, "unknown-right", tag + " is not a right " + placeText(frames));
  } else if (element == Element::trustee || element == Element::inheritedRightsFilter) {
    report(at, "entry-outside-file", tag + " outside a <file> (" + placeText(frames) + ")");
  } else if (element == Element::unknown) {
    report(at, "unknown-element", "unknown element " + tag + " " + placeText(frames));
  } else {
    report(at, "misplaced-element", "element " + tag + " is not allowed " + placeText(frames));
  }
}

void DocumentReader::State::checkAttributes(Element element, std::string_view name, Position at,
                                            const char **attributes) {
  for (const char **pair = attributes; pair[0] != nullptr; pair += 2) {
    const std::string_view attribute = pair[0];
    const std::string value = attributeValue(pair[1]);
    if (!allowsAttribute(element, attribute)) {
      report(at, "unknown-attribute",
             "unknown attribute " + std::string(attribute) + " on " + tagText(name));
    } else if (attribute == "type" && value != "adID") {
      report(at, "unknown-attribute",
             "type=\"" + std::string(value) + "\" on " + tagText(name) +
                 ": only type=\"adID\" is known");
    } else if (attribute == "type") {
      entry.ad = true;
    }
  }
}

bool DocumentReader::State::firstChild(Element element, const Frame &frame) {
  const unsigned bit = 1u << static_cast<unsigned>(element);
  // The children of a file and those of the entry inside it are counted apart.
  const bool ofFile = frames.size() >= 2 && frames[frames.size() - 2].element == Element::file;
  unsigned &seen = ofFile ? file.seenChildren : seenChildren;
  if ((seen & bit) == 0) {
    seen |= bit;
    return true;
  }
  const std::string parent = frames.size() >= 2 ? tagText(frames[frames.size() - 2].name) : "";
  report(frame.at, "repeated-element",
         "a second " + tagText(frame.name) + " in one " + parent + "; the last one counts");
  return false;
}

void DocumentReader::State::beginEntry(EntryKind kind, Position at) {
  clearEntry(entry);
  entry.kind = kind;
  entry.at = at;
  inEntry = true;
  entryValid = true;
  seenChildren = 0;
}

void DocumentReader::State::acceptElement(Element element, std::string_view name, Position at,
                                          const char **attributes) {
  switch (element) {
  case Element::trustee:
  case Element::inheritedRightsFilter:
    beginEntry(element == Element::trustee ? EntryKind::trustee : EntryKind::filter, at);
    if (!file.hasPath) {
      report(at, "entry-before-path", tagText(name) + " before the <path> of its <file>");
      file.entryWithoutPath = true;
      entryValid = false;
    }
    entry.path = file.path;
    entry.rawPath = file.rawPath;
    entry.pathAt = file.pathAt;
    entry.zid = file.zid;
    if (file.pathCdata) entry.cdata |= kCdataPath;
    break;
  case Element::user: beginEntry(EntryKind::userQuota, at); break;
  case Element::directory: beginEntry(EntryKind::dirQuota, at); break;
  case Element::file:
    resetFile(file);
    file.at = at;
    break;
  case Element::trusteeInfo:
  case Element::userInfo:
  case Element::dirInfo:
    pushEvent({ReaderEvent::Kind::sectionOpens,
               element == Element::trusteeInfo ? Section::trustees
               : element == Element::userInfo  ? Section::userQuotas
                                               : Section::dirQuotas,
               0, Finding{}});
    break;
  default: break;
  }
  if (attributes[0] != nullptr) checkAttributes(element, name, at, attributes);
  frames.push_back({element, name, at, attributes[0] != nullptr});
  if (element == Element::path || element == Element::name || element == Element::id ||
      element == Element::quotaAmount || element == Element::rights || element == Element::zid ||
      element == Element::spaceUsed)
    firstChild(element, frames.back());
  if (holdsText(element)) {
    text.clear();
    rawText.clear();
    textCdata = false;
    textTooLong = false;
  }
}

// Text: a value's (decoded, and as the input has it), or text where only elements belong.
// `from` and `to` are the input bytes of the event.
void DocumentReader::State::takeText(const char *data, std::size_t length, unsigned long long from,
                                     unsigned long long to) {
  if (skipDepth > 0 || frames.empty()) return;
  const Frame &frame = frames.back();
  if (holdsText(frame.element)) {
    const std::size_t room = kValueLimit - text.size();
    if (length > room) textTooLong = true;
    text.append(data, length > room ? room : length);
    appendRaw(from, to);
    return;
  }
  for (std::size_t at = 0; at < length; ++at) {
    if (isBlank(data[at])) continue;
    if (!textReported) reportText(from, to);
    textReported = true;
    return;
  }
}

// Text is reported at the start of the line of its first character that is not blank.
void DocumentReader::State::reportText(unsigned long long from, unsigned long long to) {
  if (from < input.start()) from = input.start();
  unsigned long long at = from;
  for (unsigned long long byte = from; byte < to && byte < input.end(); ++byte) {
    const char c = *input.at(byte);
    if (c == '\n' || c == '\r') at = byte + 1;
    if (!isBlank(c)) break;
  }
  report(input.position(at), "text-outside-value",
         "text in " + tagText(frames.back().name) + ", where only elements belong");
}

// The input's own bytes of a value: an entity reference as written, where the text handed
// over holds the character it stands for; a line end written CR LF as it is.
void DocumentReader::State::appendRaw(unsigned long long from, unsigned long long to) {
  if (from < input.start()) from = input.start();
  if (to > input.end()) to = input.end();
  if (to <= from) return;
  const std::size_t room = kValueLimit - rawText.size();
  const std::size_t count = static_cast<std::size_t>(to - from);
  rawText.append(input.at(from), count > room ? room : count);
}

void DocumentReader::State::characters(const xmlChar *data, int length) {
  const std::size_t count = static_cast<std::size_t>(length);
  unsigned long long from = lastEnd;
  unsigned long long to = parserOffset();
  if (inParserBuffer(data)) {
    // Text read straight from the input; a CR before LF was left out of it.
    to = offsetOf(data) + count;
    const unsigned long long start = offsetOf(data);
    const bool crBefore = start == from + 1 && from >= input.start() && *input.at(from) == '\r';
    if (!crBefore) from = start;
  }
  lastEnd = to;
  takeText(reinterpret_cast<const char *>(data), count, from, to);
}

void DocumentReader::State::cdata(const xmlChar *data, int length) {
  const std::size_t count = static_cast<std::size_t>(length);
  unsigned long long from = parserOffset();
  unsigned long long to = from;
  if (inParserBuffer(data)) {
    from = offsetOf(data);
    to = from + count;
    const xmlChar *const after = data + count;
    lastEnd = to;
    if (parser->input->end - after >= 3 && std::memcmp(after, "]]>", 3) == 0) lastEnd = to + 3;
  } else {
    lastEnd = to;
  }
  if (skipDepth == 0 && !frames.empty() && holdsText(frames.back().element)) textCdata = true;
  // A line end in a CDATA section comes as the input has it: CR LF and CR are LF.
  const char *bytes = reinterpret_cast<const char *>(data);
  if (std::memchr(bytes, '\r', count) == nullptr) {
    takeText(bytes, count, from, to);
    return;
  }
  std::string lines(bytes, count);
  std::size_t kept = 0;
  for (std::size_t at = 0; at < count; ++at) {
    if (lines[at] == '\r' && at + 1 < count && lines[at + 1] == '\n') continue;
    lines[kept++] = lines[at] == '\r' ? '\n' : lines[at];
  }
  lines.resize(kept);
  takeText(lines.data(), lines.size(), from, to);
}

void DocumentReader::State::misplacedMarkup(const char *what) {
  if (!declarationChecked) checkDeclaration();
  const unsigned long long start = markupStart();
  lastEnd = parserOffset();
  report(input.position(start), "not-metadata",
         std::string(what) + ": trovan restore reads it as a tag");
}

// A document type declaration could define entities; a Metadata document has none.
void DocumentReader::State::doctype() {
  if (!declarationChecked) checkDeclaration();
  endAt = input.position(parserOffset());
  report(endAt, "doctype",
         "a document type declaration, which a Metadata document never holds; "
         "reading stops here");
  aborted = true;
  xmlStopParser(parser);
}
