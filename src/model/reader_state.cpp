#include "model/reader_state.h"

#include <cstring>

#include "model/quota_amount.h"

namespace {

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
  file.hasPath = false;
  file.entryWithoutPath = false;
  file.pathAt = {};
  file.path.clear();
  file.zid.clear();
  file.rawPath.clear();
  file.pathCdata = false;
  file.seenChildren = 0;
}

// A text handed over: a short one is copied (a string holds it in itself), a long one changes
// buffers with the one it replaces.
void handOverText(std::string &to, std::string &from) {
  constexpr std::size_t kShort = 15;
  if (from.empty())
    to.clear();
  else if (from.size() <= kShort && to.capacity() >= from.size())
    to.assign(from);
  else
    to.swap(from);
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
  return "in " + tagText(frames.back().name());
}

}  // namespace

void takeEntry(Entry &to, Entry &from) {
  to.kind = from.kind;
  to.at = from.at;
  to.pathAt = from.pathAt;
  to.ad = from.ad;
  to.rights = from.rights;
  to.cdata = from.cdata;
  for (auto field :
       {&Entry::path, &Entry::name, &Entry::id, &Entry::amount, &Entry::spaceUsed, &Entry::zid,
        &Entry::rawPath, &Entry::rawName, &Entry::rawId, &Entry::rawAmount})
    handOverText(to.*field, from.*field);
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

namespace {

// The '<' of a tag whose name (`length` bytes, after "<", or "</" for an end tag) ends at
// `nameEnd` but for blanks: known from the name's length without a search. Else the last '<'
// before `cur`, since neither a name nor an attribute value holds one.
const xmlChar *tagOpen(const xmlChar *base, const xmlChar *nameEnd, const xmlChar *cur,
                       std::size_t length, bool endTag) {
  while (nameEnd > base && isXmlBlank(static_cast<char>(nameEnd[-1])))
    --nameEnd;
  const std::size_t opening = endTag ? 2 : 1;
  if (static_cast<std::size_t>(nameEnd - base) >= length + opening &&
      (!endTag || *(nameEnd - length - 1) == '/') && *(nameEnd - length - opening) == '<')
    return nameEnd - length - opening;
  return static_cast<const xmlChar *>(memrchr(base, '<', static_cast<std::size_t>(cur - base)));
}

// The '<' of a start tag the parser stands at the end of (on its '>' or "/>").
const xmlChar *startTagOpen(const xmlChar *base, const xmlChar *cur, std::size_t length,
                            bool hasAttributes) {
  if (hasAttributes)
    return static_cast<const xmlChar *>(memrchr(base, '<', static_cast<std::size_t>(cur - base)));
  return tagOpen(base, cur, cur, length, false);
}

}  // namespace

unsigned long long DocumentReader::State::tagOpenOf(const OpenName &open) const {
  const auto *base = reinterpret_cast<const xmlChar *>(input.at(input.start()));
  const auto *cur = reinterpret_cast<const xmlChar *>(input.at(open.tagEnd));
  const xmlChar *const found = startTagOpen(base, cur, open.length, open.hasAttributes);
  return found != nullptr ? open.tagEnd - static_cast<unsigned long long>(cur - found)
                          : open.tagEnd;
}

const xmlChar *endTagOpen(const xmlChar *base, const xmlChar *cur, std::size_t length) {
  const bool closed = cur > base && cur[-1] == '>';
  return tagOpen(base, closed ? cur - 1 : base, cur, length, true);
}

void DocumentReader::State::startTag(const char *name, const char **attributes) {
  if (!declarationChecked) checkDeclaration();
  const xmlParserInput &in = *parser->input;
  const xmlChar *const cur = in.cur;
  // The parser stands on the '>' or "/>" of the tag; at the end of the input it also hands
  // over a tag cut short, an error follows.
  const bool whole = cur[0] == '>' || (cur[0] == '/' && cur[1] == '>');
  if (!whole) return;
  const NameMatch found = names.match(name);
  const bool hasAttributes = attributes != nullptr && attributes[0] != nullptr;
  const unsigned long long tagEnd = offsetIn(in, cur);
  lastEnd = tagEnd + (cur[0] == '>' ? 1 : 2);
  rootSeen = true;
  textReported = false;
  const Element element = found.match.element;
  const Element parent = frames.empty() ? Element::document : frames.back().element;
  openName(name, tagEnd, found.length, hasAttributes);
  ++openDepth;
  if (skipDepth > 0) {
    ++skipDepth;
    return;
  }
  if (element == Element::unknown || !allowedIn(element, parent)) {
    rejectElement(element, name, placeOfOpen(frames.size()));
    skipDepth = 1;
  } else if (holdsText(parent)) {
    skipDepth = 1;
  } else if (element == Element::right) {
    if (hasAttributes) checkAttributes(element, frames.size(), attributes);
    frames.push_back({element, hasAttributes});
    if (inEntry) entry->rights |= found.match.right;
  } else {
    acceptElement(element, parent, hasAttributes ? attributes : nullptr);
  }
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

void DocumentReader::State::checkAttributes(Element element, std::size_t index,
                                            const char **attributes) {
  const std::string_view name = elementName(element);
  for (const char **pair = attributes; pair[0] != nullptr; pair += 2) {
    const std::string_view attribute = pair[0];
    if (!allowsAttribute(element, attribute)) {
      report(placeOfOpen(index), "unknown-attribute",
             "unknown attribute " + std::string(attribute) + " on " + tagText(name));
    } else if (attribute == "type" && std::string_view(pair[1]) != "adID") {
      // "adID" holds no '&': the value is decoded only for the message.
      report(placeOfOpen(index), "unknown-attribute",
             "type=\"" + attributeValue(pair[1]) + "\" on " + tagText(name) +
                 ": only type=\"adID\" is known");
    } else if (attribute == "type") {
      entry->ad = true;
    }
  }
}

void DocumentReader::State::repeatedChild(const Frame &frame) {
  const std::string parentTag = frames.size() >= 2 ? tagText(frames[frames.size() - 2].name()) : "";
  report(placeOfOpen(frames.size() - 1), "repeated-element",
         "a second " + tagText(frame.name()) + " in one " + parentTag + "; the last one counts");
}

inline void DocumentReader::State::beginEntry(EntryKind kind, Position at) {
  entry = &ready.next();
  clearEntry(*entry);
  entry->kind = kind;
  entry->at = at;
  inEntry = true;
  entryValid = true;
  seenChildren = 0;
}

// The elements counted by firstChild(): the values and the rights list, once each.
constexpr unsigned kCountedChildren =
    1u << static_cast<unsigned>(Element::path) | 1u << static_cast<unsigned>(Element::name) |
    1u << static_cast<unsigned>(Element::id) | 1u << static_cast<unsigned>(Element::quotaAmount) |
    1u << static_cast<unsigned>(Element::rights) | 1u << static_cast<unsigned>(Element::zid) |
    1u << static_cast<unsigned>(Element::spaceUsed);

// `attributes`: null when the tag has none.
inline void DocumentReader::State::acceptElement(Element element, Element parent,
                                                 const char **attributes) {
  // Only an entry's place is needed now; the others' are found if a finding needs them.
  switch (element) {
  case Element::trustee:
  case Element::inheritedRightsFilter: beginFileEntry(element, placeOfOpen(frames.size())); break;
  case Element::user: beginEntry(EntryKind::userQuota, placeOfOpen(frames.size())); break;
  case Element::directory: beginEntry(EntryKind::dirQuota, placeOfOpen(frames.size())); break;
  case Element::file: resetFile(file); break;
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
  if (attributes != nullptr) checkAttributes(element, frames.size(), attributes);
  frames.push_back({element, attributes != nullptr});
  if ((kCountedChildren >> static_cast<unsigned>(element)) & 1u) countChild(element, parent);
  if (holdsText(element)) {
    text.clear();
    rawText.clear();
    // A zid and spaceUsed are kept decoded only: their input bytes are not needed.
    keepRaw = element != Element::zid && element != Element::spaceUsed;
    textCdata = false;
    textTooLong = false;
  }
}

// A trustee or filter: it stands for the file around it, whose path it takes.
void DocumentReader::State::beginFileEntry(Element element, Position at) {
  beginEntry(element == Element::trustee ? EntryKind::trustee : EntryKind::filter, at);
  if (!file.hasPath) {
    report(at, "entry-before-path",
           tagText(elementName(element)) + " before the <path> of its <file>");
    file.entryWithoutPath = true;
    entryValid = false;
  }
  entry->path = file.path;
  entry->rawPath = file.rawPath;
  entry->pathAt = file.pathAt;
  entry->zid = file.zid;
  if (file.pathCdata) entry->cdata |= kCdataPath;
}

// Text: a value's (decoded, and as the input has it), or text where only elements belong.
// `from` and `to` are the input bytes of the event.
inline void DocumentReader::State::takeText(const char *data, std::size_t length,
                                            unsigned long long from, unsigned long long to) {
  if (skipDepth > 0 || frames.empty()) return;
  const Frame &frame = frames.back();
  if (holdsText(frame.element)) {
    const std::size_t room = kValueLimit - text.size();
    if (length > room) textTooLong = true;
    text.append(data, length > room ? room : length);
    if (keepRaw) appendRaw(from, to);
    return;
  }
  if (textReported || blanks(data, length)) return;
  reportText(from, to);
  textReported = true;
}

// Text is reported at the start of the line of its first character that is not blank.
void DocumentReader::State::reportText(unsigned long long from, unsigned long long to) {
  if (from < input.start()) from = input.start();
  unsigned long long at = from;
  for (unsigned long long byte = from; byte < to && byte < input.end(); ++byte) {
    const char c = *input.at(byte);
    if (c == '\n' || c == '\r') at = byte + 1;
    if (!isXmlBlank(c)) break;
  }
  report(place(at), "text-outside-value",
         "text in " + tagText(frames.back().name()) + ", where only elements belong");
}

// The input's own bytes of a value: an entity reference as written, where the text handed
// over holds the character it stands for; a line end written CR LF as it is.
inline void DocumentReader::State::appendRaw(unsigned long long from, unsigned long long to) {
  if (from < input.start()) from = input.start();
  if (to > input.end()) to = input.end();
  if (to <= from) return;
  const std::size_t room = kValueLimit - rawText.size();
  const std::size_t count = static_cast<std::size_t>(to - from);
  rawText.append(input.at(from), count > room ? room : count);
}

void DocumentReader::State::takeCharacters(const xmlChar *data, int length) {
  const xmlParserInput &in = *parser->input;
  const std::size_t count = static_cast<std::size_t>(length);
  unsigned long long from = lastEnd;
  unsigned long long to = offsetIn(in, in.cur);
  if (data >= in.base && data < in.end) {
    // Text read straight from the input; a CR before LF was left out of it.
    const unsigned long long start = offsetIn(in, data);
    to = start + count;
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
  report(place(start), "not-metadata", std::string(what) + ": trovan restore reads it as a tag");
}

// A document type declaration could define entities; a Metadata document has none.
void DocumentReader::State::doctype() {
  if (!declarationChecked) checkDeclaration();
  endAt = place(parserOffset());
  report(endAt, "doctype",
         "a document type declaration, which a Metadata document never holds; "
         "reading stops here");
  aborted = true;
  xmlStopParser(parser);
}
