// Inside the strict reader: what it knows between two parser callbacks. The parser (libxml2's
// push parser, SAX callbacks) is driven by document_reader.cpp; the element rules are applied
// here, one callback at a time. What a callback finds waits in a queue, in document order, until
// next() hands it out: the parser reads a whole chunk of the input at once.
#pragma once
#include <libxml/parser.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/document_grammar.h"
#include "model/document_reader.h"
#include "model/input_window.h"
#include "model/key_set.h"
#include "model/slot_ring.h"

// The longest value kept of an element's text; a longer text is cut (and reported).
inline constexpr std::size_t kValueLimit = 65536;
// How many open elements are remembered by name, for the message of a mismatched end tag.
inline constexpr std::size_t kOpenNamesLimit = 256;

// An open element. Its place is found only when something needs it (an entry's, a finding's),
// or before the input's bytes of its tag are let go: from its tag's end, in order, once.
struct OpenName {
  const char *name;           // the parser's copy, kept as long as the parser
  unsigned long long tagEnd;  // where the parser stood at its start tag: its '>' or "/>"
  std::uint32_t length;       // the name's length
  bool hasAttributes;
  Position at;  // known for the first `placed` of openNames
};

// An accepted element; the one at depth i is also openNames[i].
struct Frame {
  Element element;
  bool hasAttributes = false;
  std::string_view name() const { return elementName(element); }
};

// The file element around the trustees and filters being read.
struct FileContext {
  bool hasPath = false;
  bool entryWithoutPath = false;  // a trustee or filter came before the path (reported)
  Position pathAt;
  std::string path;
  std::string zid;
  std::string rawPath;
  bool pathCdata = false;
  unsigned seenChildren = 0;  // bits of Element values already met in this file
};

// What waits to be handed out, in document order.
struct ReaderEvent {
  enum class Kind : std::uint8_t { entry, sectionOpens, sectionCloses, finding } kind;
  Section section = Section::trustees;
  unsigned long long offset = 0;  // an entry's: where its end tag starts
  Finding finding;
  std::uint64_t keyHash = 0;  // an entry's: keyHash() of its entryKey()
};

// The first error the parser reported.
struct ParserError {
  int code = 0;
  Position at;          // where the parser puts it
  bool atEnd = false;   // found once the end of the input was given
  std::string message;  // the parser's own words
};

// A name met: its element and its length in bytes.
struct NameMatch {
  ElementMatch match;
  std::size_t length = 0;
};

// The elements of the names met last: the parser keeps one copy of each name, so that a name's
// address stands for it while the parser lives.
class NameCache {
public:
  const NameMatch &match(const char *name) {
    // The parser packs its names closely: the address is mixed before it picks a pair of
    // slots, so that two names met in turn seldom take each other's place.
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(name) * 0x9E3779B97F4A7C15ull;
    Slot *const pair = &slots_[(mixed >> 57) & ~std::uint64_t{1}];
    if (pair[0].name == name) return pair[0].found;
    if (pair[1].name == name) return pair[1].found;
    // The slot not used last takes the new name.
    Slot &slot = pair[pair[0].recent ? 1 : 0];
    pair[0].recent = &slot == &pair[0];
    pair[1].recent = !pair[0].recent;
    const std::string_view text = name;
    slot.name = name;
    slot.found = {matchElement(text), text.size()};
    return slot.found;
  }

private:
  static constexpr std::size_t kSlots = 128;
  struct Slot {
    const char *name = nullptr;
    NameMatch found;
    bool recent = false;
  };
  Slot slots_[kSlots];
};

// XML's blanks: space, tab, LF and CR.
inline bool isXmlBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The offset in the document of a byte of the parser's buffer.
inline unsigned long long offsetIn(const xmlParserInput &in, const xmlChar *byte) {
  return in.consumed + static_cast<unsigned long long>(byte - in.base);
}

// Where an end tag starts: its '<', in the parser's buffer from `base`, for the end tag the
// parser stands just after (`cur`), whose name as written is `length` bytes long.
const xmlChar *endTagOpen(const xmlChar *base, const xmlChar *cur, std::size_t length);

// `to` takes the fields of `from`, whose texts are left to be cleared and reused: short texts
// are copied, long ones change buffers with those they replace.
void takeEntry(Entry &to, Entry &from);

struct DocumentReader::State {
  xmlParserCtxtPtr parser = nullptr;
  int fd = -1;
  ByteSource source;  // used instead of fd when set
  FindingSink findings;
  std::function<void(Section, bool)> sectionObserver;
  InputWindow input;

  // Where reading stands.
  bool finalGiven = false;  // the end of the input has been given to the parser
  bool finished = false;    // the parser has nothing more to say
  bool failed = false;      // as handed out: set when the queue reaches the failure
  bool failing = false;     // as parsed
  bool aborted = false;     // stopped by the reader itself (a finding has been made)
  bool declarationChecked = false;
  bool errorSeen = false;
  ParserError error;
  int readError = 0;
  unsigned long long offset = 0;
  std::uint64_t handedHash = 0;      // the key hash of the entry handed out last
  Position endAt;                    // the place after the end or of the failure, once finished
  unsigned long long lastEnd = 0;    // where the last parser event ended
  unsigned long long endOffset = 0;  // where the element ending now ends (see offset())

  // Handed out by next(), in order; entries wait in `ready`, built in place in its next slot.
  SlotRing<ReaderEvent> events;
  SlotRing<Entry> ready;

  // Elements.
  std::vector<Frame> frames;    // accepted elements only; depth is bounded by the grammar
  unsigned long skipDepth = 0;  // inside an element that was not accepted
  std::array<OpenName, kOpenNamesLimit> openNames;  // every open element, up to the limit
  std::size_t openKept = 0;                         // how many of openNames stand
  std::size_t placed = 0;  // openNames whose place is known, from the first
  unsigned long openDepth = 0;
  bool rootSeen = false;
  bool emptyRight = false;  // a right written <x/> was opened without a frame: its end is next

  // The value being read, and whether any of it came from a CDATA section.
  std::string text;
  std::string rawText;   // the same as the input has it (see Entry's raw fields)
  bool keepRaw = false;  // rawText is wanted of this value
  bool textCdata = false;
  bool textTooLong = false;
  bool textReported = false;  // text outside a value, reported once per element

  // The entry being read, in the next slot of `ready` while inEntry.
  FileContext file;
  bool inEntry = false;
  bool entryValid = true;
  unsigned seenChildren = 0;  // bits of Element values already met in this entry
  Entry *entry = nullptr;

  NameCache names;
  KeySet ownKeys;
  KeySet *keys = &ownKeys;  // the set duplicates are looked up in (see useKeys())
  // The entry handed out last, whose key waits to be looked up until the next event (its slot
  // of the key set is fetched meanwhile): the lookup's finding comes just before it.
  struct Unsettled {
    bool waiting = false;
    std::uint64_t hash = 0;
    EntryKind kind = EntryKind::trustee;
    Position at;
    unsigned long long offset = 0;
  } unsettled;

  // Absolute offsets of the parser's place and of a byte of its buffer.
  unsigned long long parserOffset() const { return offsetOf(parser->input->cur); }
  unsigned long long offsetOf(const xmlChar *byte) const { return offsetIn(*parser->input, byte); }
  bool inParserBuffer(const xmlChar *byte) const {
    return byte >= parser->input->base && byte < parser->input->end;
  }
  // The place of `offset`, at or after every open element's start tag (whose places are found
  // first: the input's places are found in order).
  Position place(unsigned long long offset) {
    placeOpen(openKept);
    return input.position(offset);
  }
  // The place of openNames[index]'s start tag (and of those before it).
  Position placeOfOpen(std::size_t index) {
    placeOpen(index + 1);
    return openNames[index].at;
  }
  // Where the markup the parser has just read starts: the first '<' after the last event.
  unsigned long long markupStart() const;
  // Findings are rare: their code stays out of the way of the code run for every element.
  [[gnu::cold, gnu::noinline]] void report(Position at, const char *code, std::string message);
  // Queues an event, after the entry handed out last.
  void pushEvent(ReaderEvent event);
  // Queues the entry handed out last, after its duplicate finding if it has one.
  void settle();
  // Queues an event (an entry's with its key hash) in the ring's next slot; its finding,
  // returned, is to be set.
  Finding &queue(ReaderEvent::Kind kind, Section section, unsigned long long offset,
                 std::uint64_t keyHash = 0);
  void checkDeclaration();

  // The commonest element, a right written <read/> in its list, is taken here: it ends at once
  // with nothing to report (its place is not needed), and the work for other elements is
  // left out of its way.
  void startElement(const char *name, const char **attributes) {
    const xmlChar *const cur = parser->input->cur;
    if (cur[0] == '/' && cur[1] == '>' && (attributes == nullptr || attributes[0] == nullptr) &&
        skipDepth == 0 && !frames.empty()) {
      const NameMatch &found = names.match(name);
      if (found.match.element == Element::right &&
          allowedIn(Element::right, frames.back().element)) {
        lastEnd = offsetOf(cur) + 2;
        textReported = false;
        ++openDepth;
        emptyRight = true;
        if (inEntry) entry->rights |= found.match.right;
        return;
      }
    }
    startTag(name, attributes);
  }
  void endElement(const char *name) {
    if (emptyRight) {
      emptyRight = false;
      lastEnd = parserOffset();
      --openDepth;
      return;
    }
    endTag(name);
  }
  // Text between elements, blanks most often, is passed over here.
  void characters(const xmlChar *data, int length) {
    const bool outside = skipDepth > 0 || frames.empty() || !holdsText(frames.back().element);
    if (outside && inParserBuffer(data) &&
        (textReported || skipDepth > 0 || frames.empty() ||
         blanks(reinterpret_cast<const char *>(data), static_cast<std::size_t>(length)))) {
      lastEnd = offsetOf(data) + static_cast<unsigned>(length);
      return;
    }
    takeCharacters(data, length);
  }
  void cdata(const xmlChar *text, int length);
  void misplacedMarkup(const char *what);
  void doctype();
  void parserError();
  void finish();

private:
  // The handlers of the other elements and texts.
  void startTag(const char *name, const char **attributes);
  void endTag(const char *name);
  void takeCharacters(const xmlChar *data, int length);
  static bool blanks(const char *data, std::size_t length) {
    for (const char *byte = data; byte < data + length; ++byte)
      if (!isXmlBlank(*byte)) return false;
    return true;
  }
  // Those marked always_inline run for every text, element or entry and are called from one or
  // two places: a call of their own cost more than much of their work.
  [[gnu::always_inline]] void takeText(const char *data, std::size_t length,
                                       unsigned long long from, unsigned long long to);
  [[gnu::always_inline]] void appendRaw(unsigned long long from, unsigned long long to);
  [[gnu::cold, gnu::noinline]] void reportText(unsigned long long from, unsigned long long to);
  Finding errorFinding();
  [[gnu::always_inline]] void acceptElement(Element element, Element parent,
                                            const char **attributes);
  // `index`: the element's in openNames.
  void checkAttributes(Element element, std::size_t index, const char **attributes);
  void openName(const char *name, unsigned long long tagEnd, std::size_t length,
                bool hasAttributes) {
    if (openKept >= kOpenNamesLimit || openDepth != openKept) return;
    if (placed > openKept) placed = openKept;
    openNames[openKept] = {name, tagEnd, static_cast<std::uint32_t>(length), hasAttributes, {}};
    ++openKept;
  }
  // Finds the places of the first `count` of openNames.
  void placeOpen(std::size_t count) {
    for (; placed < count; ++placed)
      openNames[placed].at = input.position(tagOpenOf(openNames[placed]));
  }
  // The offset of the '<' of an open element's start tag, whose bytes the input still holds.
  unsigned long long tagOpenOf(const OpenName &open) const;
  [[gnu::cold, gnu::noinline]] void rejectElement(Element element, std::string_view name,
                                                  Position at);
  [[gnu::cold, gnu::noinline]] void repeatedChild(const Frame &frame);
  [[gnu::always_inline]] void beginEntry(EntryKind kind, Position at);
  void beginFileEntry(Element element, Position at);
  // Those after the ended element's frame is popped: its place is placeOfOpen(frames.size()).
  [[gnu::always_inline]] void endValue(const Frame &frame);
  void endEntry(const Frame &frame);
  [[gnu::always_inline]] void handOut();
  // Counts a value or rights list among its parent's children (a second one is reported).
  void countChild(Element element, Element parent) {
    const unsigned bit = 1u << static_cast<unsigned>(element);
    // The children of a file and those of the entry inside it are counted apart.
    unsigned &seen = parent == Element::file ? file.seenChildren : seenChildren;
    if ((seen & bit) != 0) repeatedChild(frames.back());
    seen |= bit;
  }
};
