// The strict reader's end-of-element rules: values taken into the entry, and entries checked
// and handed out as they end.
#include <algorithm>
#include <cstring>

#include "model/entry_index.h"
#include "model/quota_amount.h"
#include "model/reader_state.h"

namespace {

std::string tagText(std::string_view name) { return "<" + std::string(name) + ">"; }

std::string lineText(unsigned long line) { return std::to_string(line); }

}  // namespace

void DocumentReader::State::endTag(const char *name) {
  const xmlParserInput &in = *parser->input;
  const xmlChar *const cur = in.cur;
  const unsigned long long after = offsetIn(in, cur);
  lastEnd = after;
  if (openDepth > 0) --openDepth;
  if (openKept > openDepth) openKept = openDepth;
  if (skipDepth > 0) {
    --skipDepth;
    return;
  }
  if (frames.empty()) return;
  const Frame frame = frames.back();
  frames.pop_back();
  // An element written <x/> ends where its tag ends; another where its end tag starts.
  const bool empty = cur - in.base >= 2 && cur[-2] == '/' && cur[-1] == '>';
  // An element written <x a="v"/>: trovan's reader names its end "x a="v"", which no end tag
  // it waits for equals.
  if (frame.hasAttributes && empty)
    report(placeOfOpen(frames.size()), "empty-element-with-attributes",
           tagText(frame.name()) +
               " written as an empty element with attributes: trovan restore "
               "does not see where it ends and reads the elements after it as its content");
  if (holdsText(frame.element)) {
    endValue(frame);
    return;
  }
  switch (frame.element) {
  case Element::trustee:
  case Element::inheritedRightsFilter:
  case Element::user:
  case Element::directory: {
    // Only an entry's end is needed (see offset()).
    const std::size_t length = name != nullptr ? names.match(name).length : 0;
    const xmlChar *const open = empty ? nullptr : endTagOpen(in.base, cur, length);
    endOffset = open != nullptr ? after - static_cast<unsigned long long>(cur - open) : after;
    endEntry(frame);
    break;
  }
  case Element::file:
    if (!file.hasPath && !file.entryWithoutPath)
      report(placeOfOpen(frames.size()), "missing-path", "<file> without a <path>");
    break;
  case Element::trusteeInfo:
  case Element::userInfo:
  case Element::dirInfo:
    pushEvent({ReaderEvent::Kind::sectionCloses,
               frame.element == Element::trusteeInfo ? Section::trustees
               : frame.element == Element::userInfo  ? Section::userQuotas
                                                     : Section::dirQuotas,
               0, Finding{}});
    break;
  default: break;
  }
}

inline void DocumentReader::State::endValue(const Frame &frame) {
  if (textTooLong)
    report(placeOfOpen(frames.size()), "value-too-long",
           tagText(frame.name()) + " longer than " + std::to_string(kValueLimit) + " bytes");
  const Element parent = frames.empty() ? Element::document : frames.back().element;
  if (parent == Element::file) {
    if (frame.element == Element::path) {
      // The texts are read again from empty for the next value: they take the old buffers.
      file.path.swap(text);
      file.rawPath.swap(rawText);
      file.hasPath = true;
      file.pathAt = placeOfOpen(frames.size());
      file.pathCdata = textCdata;
    } else if (frame.element == Element::zid) {
      file.zid.swap(text);
    }
    return;
  }
  if (!inEntry) return;
  if (frame.element == Element::quotaAmount && !isQuotaAmount(text))
    report(placeOfOpen(frames.size()), "quota-not-a-number",
           "quota amount \"" + text + "\" is not a whole number from 0 to 9223372036854775807");
  // The value's texts go to the entry and take its old buffers, emptied before the next value.
  const std::uint8_t cdata = textCdata ? 1 : 0;
  switch (frame.element) {
  case Element::path:
    entry->path.swap(text);
    entry->rawPath.swap(rawText);
    entry->pathAt = placeOfOpen(frames.size());
    entry->cdata |= cdata * kCdataPath;
    break;
  case Element::name:
    entry->name.swap(text);
    entry->rawName.swap(rawText);
    entry->cdata |= cdata * kCdataName;
    break;
  case Element::id:
    entry->id.swap(text);
    entry->rawId.swap(rawText);
    entry->cdata |= cdata * kCdataId;
    break;
  case Element::zid: entry->zid.swap(text); break;
  case Element::spaceUsed: entry->spaceUsed.swap(text); break;
  case Element::quotaAmount:
    entry->amount.swap(text);
    entry->rawAmount.swap(rawText);
    entry->cdata |= cdata * kCdataAmount;
    break;
  default: break;
  }
}

void DocumentReader::State::endEntry(const Frame &frame) {
  inEntry = false;
  switch (entry->kind) {
  case EntryKind::trustee:
    if (entry->ad && entry->id.empty()) {
      report(entry->at, "missing-id", "AD trustee without an <id>: trovan restore stops there");
      entryValid = false;
    } else if (!entry->ad && entry->name.empty()) {
      report(entry->at, "missing-name", "trustee without a <name>: trovan restore stops there");
      entryValid = false;
    }
    break;
  case EntryKind::filter: break;
  case EntryKind::userQuota:
  case EntryKind::dirQuota:
    if (entry->kind == EntryKind::userQuota && entry->name.empty()) {
      report(entry->at, "missing-name",
             tagText(frame.name()) + " without a <name>: trovan restore skips it");
      entryValid = false;
    }
    if (entry->kind == EntryKind::dirQuota &&
        (seenChildren & (1u << unsigned(Element::path))) == 0) {
      report(entry->at, "missing-path",
             tagText(frame.name()) + " without a <path>: trovan restore skips it");
      entryValid = false;
    }
    if ((seenChildren & (1u << unsigned(Element::quotaAmount))) == 0) {
      report(entry->at, "missing-quota",
             tagText(frame.name()) + " without a <quotaAmount>: trovan restore skips it");
      entryValid = false;
    }
    break;
  }
  if (entryValid) handOut();
}

inline void DocumentReader::State::handOut() {
  settle();
  unsettled = {true, entryKeyHash(*entry), entry->kind, entry->at, endOffset};
  keys->prefetch(unsettled.hash);
  ready.push();
}

void DocumentReader::State::settle() {
  if (!unsettled.waiting) return;
  unsettled.waiting = false;
  keys->makeRoom(unsettled.offset, fd);
  if (const unsigned long first = keys->insertHash(unsettled.hash, unsettled.at.line); first != 0)
    queue(ReaderEvent::Kind::finding, Section::trustees, 0) = {
        unsettled.at, "duplicate-entry",
        "the same " + std::string(kindName(unsettled.kind)) + " as on line " + lineText(first)};
  queue(ReaderEvent::Kind::entry, Section::trustees, unsettled.offset, unsettled.hash);
}

void DocumentReader::State::pushEvent(ReaderEvent event) {
  settle();
  queue(event.kind, event.section, event.offset) = std::move(event.finding);
}

Finding &DocumentReader::State::queue(ReaderEvent::Kind kind, Section section,
                                      unsigned long long offset, std::uint64_t keyHash) {
  ReaderEvent &event = events.next();
  event.kind = kind;
  event.section = section;
  event.offset = offset;
  event.keyHash = keyHash;
  events.push();
  return event.finding;
}
