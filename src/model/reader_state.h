// Inside the strict reader: what it knows between two parser callbacks. The parser (libxml2's
// push parser, SAX callbacks) is driven by document_reader.cpp; the element rules are applied
// here, one callback at a time. What a callback finds waits in a queue, in document order, until
// next() hands it out: the parser reads a whole chunk of the input at once.
#pragma once
#include <libxml/parser.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "model/document_grammar.h"
#include "model/document_reader.h"
#include "model/input_window.h"
#include "model/key_set.h"

// The longest value kept of an element's text; a longer text is cut (and reported).
inline constexpr std::size_t kValueLimit = 65536;
// How many open elements are remembered by name, for the message of a mismatched end tag.
inline constexpr std::size_t kOpenNamesLimit = 256;

struct OpenName {
  const char *name;  // the parser's copy, kept as long as the parser
  unsigned long line;
};

struct Frame {
  Element element;
  std::string_view name;  // the element's name as written (static for known elements)
  Position at;
  bool hasAttributes = false;
};

// The file element around the trustees and filters being read.
struct FileContext {
  Position at;
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

// The elements of the names met last: the parser keeps one copy of each name, so that a name's
// address stands for it while the parser lives.
class NameCache {
public:
  ElementMatch match(const char *name) {
    // The parser packs its names closely: the address is mixed before it picks a slot.
    const std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(name) * 0x9E3779B97F4A7C15ull;
    Slot &slot = slots_[mixed >> 58];
    if (slot.name != name) slot = {name, matchElement(name)};
    return slot.match;
  }

private:
  static constexpr std::size_t kSlots = 64;
  struct Slot {
    const char *name = nullptr;
    ElementMatch match;
  };
  Slot slots_[kSlots];
};

// Two entries exchanged field by field (their buffers change hands, none is copied).
void swapEntries(Entry &one, Entry &other);

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

  // Handed out by next(), in order; entries wait in `ready`, a ring whose buffers are reused.
  std::deque<ReaderEvent> events;
  std::vector<Entry> ready;
  std::size_t readyFirst = 0;
  std::size_t readyCount = 0;

  // Elements.
  std::vector<Frame> frames;        // accepted elements only; depth is bounded by the grammar
  unsigned long skipDepth = 0;      // inside an element that was not accepted
  std::vector<OpenName> openNames;  // every open element, up to kOpenNamesLimit (reused)
  std::size_t openKept = 0;         // how many of openNames stand
  unsigned long openDepth = 0;
  bool rootSeen = false;

  // The value being read, and whether any of it came from a CDATA section.
  std::string text;
  std::string rawText;  // the same as the input has it (see Entry's raw fields)
  bool textCdata = false;
  bool textTooLong = false;
  bool textReported = false;  // text outside a value, reported once per element

  // The entry being read.
  FileContext file;
  bool inEntry = false;
  bool entryValid = true;
  unsigned seenChildren = 0;  // bits of Element values already met in this entry
  Entry entry;

  NameCache names;
  KeySet keys;
  std::string keyBuffer;
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
  unsigned long long parserOffset() const;
  unsigned long long offsetOf(const xmlChar *byte) const;
  bool inParserBuffer(const xmlChar *byte) const;
  // Where the markup the parser has just read starts: the first '<' after the last event.
  unsigned long long markupStart() const;
  void report(Position at, const char *code, std::string message);
  // Queues an event, after the entry handed out last.
  void pushEvent(ReaderEvent event);
  // Queues the entry handed out last, after its duplicate finding if it has one.
  void settle();
  void checkDeclaration();

  void startElement(const char *name, const char **attributes);
  void endElement();
  void characters(const xmlChar *text, int length);
  void cdata(const xmlChar *text, int length);
  void misplacedMarkup(const char *what);
  void doctype();
  void parserError();
  void finish();

private:
  void takeText(const char *data, std::size_t length, unsigned long long from,
                unsigned long long to);
  void appendRaw(unsigned long long from, unsigned long long to);
  void reportText(unsigned long long from, unsigned long long to);
  Finding errorFinding();
  void acceptElement(Element element, std::string_view name, Position at, const char **attributes);
  void checkAttributes(Element element, std::string_view name, Position at,
                       const char **attributes);
  void openName(const char *name, unsigned long line);
  void rejectElement(Element element, std::string_view name, Position at);
  void beginEntry(EntryKind kind, Position at);
  void endValue(const Frame &frame);
  void endEntry(const Frame &frame);
  void handOut();
  bool firstChild(Element element, const Frame &frame);
};
