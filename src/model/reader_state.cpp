#include "model/reader_state.h"

#include <cstring>

#include "model/quota_amount.h"

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string tagText(std::string_view name) { return "<" + std::string(name) + ">"; }

// Where an element stands, for messages: "in <file>", or "at the top" for the root.
std::string placeText(const std::vector<Frame> &frames) {
  if (frames.empty()) return "as the root element";
  return "in " + tagText(frames.back().name);
}

}  // namespace

Position DocumentReader::State::position() const {
  return {XML_GetCurrentLineNumber(parser), XML_GetCurrentColumnNumber(parser) + 1};
}

void DocumentReader::State::report(Position at, const char *code, std::string message) {
  if (findings) findings(Finding{at, code, std::move(message)});
}

void DocumentReader::State::startElement(const char *name, const char **attributes) {
  const Position at = position();
  if (openNames.size() < kOpenNamesLimit && openDepth == openNames.size())
    openNames.push_back({name, at.line});
  ++openDepth;
  textReported = false;
  if (skipDepth > 0) {
    ++skipDepth;
    return;
  }
  const Element parent = frames.empty() ? Element::document : frames.back().element;
  const Element element = elementOf(name);
  if (element == Element::unknown || !allowedIn(element, parent)) {
    rejectElement(element, name, at);
    skipDepth = 1;
    return;
  }
  if (!frames.empty() && holdsText(frames.back().element)) {
    skipDepth = 1;
    return;
  }
  acceptElement(element, elementName(element), at, attributes);
  if (element == Element::right && inEntry) entry.rights |= rightBit(name);
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
    const std::string_view value = pair[1];
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
  entry = Entry();
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
    file = FileContext();
    file.at = at;
    break;
  case Element::trusteeInfo:
  case Element::userInfo:
  case Element::dirInfo:
    if (sectionObserver)
      sectionObserver(element == Element::trusteeInfo ? Section::trustees
                      : element == Element::userInfo  ? Section::userQuotas
                                                      : Section::dirQuotas,
                      true);
    break;
  default: break;
  }
  checkAttributes(element, name, at, attributes);
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

void DocumentReader::State::characters(const char *data, int length) {
  if (skipDepth > 0 || frames.empty()) return;
  const Frame &frame = frames.back();
  if (holdsText(frame.element)) {
    const std::size_t room = kValueLimit - text.size();
    const std::size_t count = static_cast<std::size_t>(length);
    if (count > room) textTooLong = true;
    text.append(data, count > room ? room : count);
    appendRaw();
    return;
  }
  for (int at = 0; at < length; ++at) {
    if (isBlank(data[at])) continue;
    if (!textReported)
      report(position(), "text-outside-value",
             "text in " + tagText(frame.name) + ", where only elements belong");
    textReported = true;
    return;
  }
}

// The input's own bytes of the current text event: an entity reference as written, where the
// text handed over holds the character it stands for.
void DocumentReader::State::appendRaw() {
  int offset = 0;
  int size = 0;
  const char *context = XML_GetInputContext(parser, &offset, &size);
  const int count = XML_GetCurrentByteCount(parser);
  if (context == nullptr || count <= 0 || offset + count > size) return;
  const std::size_t room = kValueLimit - rawText.size();
  const std::size_t take =
      static_cast<std::size_t>(count) > room ? room : static_cast<std::size_t>(count);
  // A line end written as CR LF reaches the handler as LF; the raw text keeps the input's bytes.
  rawText.append(context + offset, take);
}

void DocumentReader::State::startCdata() {
  if (skipDepth > 0 || frames.empty()) return;
  if (holdsText(frames.back().element)) textCdata = true;
}

void DocumentReader::State::misplacedMarkup(const char *what) {
  report(position(), "not-metadata", std::string(what) + ": trovan restore reads it as a tag");
}
