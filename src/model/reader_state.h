// Inside the strict reader: what it knows between two parser callbacks. The parser (expat) is
// driven by document_reader.cpp; the element rules are applied here, one callback at a time.
#pragma once
#include <expat.h>

#include <functional>
#include <string>
#include <vector>

#include "model/document_grammar.h"
#include "model/document_reader.h"
#include "model/key_set.h"

// The longest value kept of an element's text; a longer text is cut (and reported).
inline constexpr std::size_t kValueLimit = 65536;
// How many open elements are remembered by name, for the message of a mismatched end tag.
inline constexpr std::size_t kOpenNamesLimit = 256;

struct OpenName {
  std::string name;
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

struct DocumentReader::State {
  XML_Parser parser = nullptr;
  int fd = -1;
  FindingSink findings;
  std::function<void(Section, bool)> sectionObserver;

  // Where reading stands.
  bool started = false;
  bool suspended = false;
  bool finalGiven = false;  // the end of the input has been given to the parser
  bool finished = false;
  bool failed = false;
  bool aborted = false;  // stopped by the reader itself (a finding has been made)
  int readError = 0;
  unsigned long long offset = 0;

  // Elements.
  std::vector<Frame> frames;        // accepted elements only; depth is bounded by the grammar
  unsigned long skipDepth = 0;      // inside an element that was not accepted
  std::vector<OpenName> openNames;  // every open element, up to kOpenNamesLimit
  unsigned long openDepth = 0;
  bool rootSeen = false;

  // The value being read, and whether any of it came from a CDATA section.
  std::string text;
  std::string rawText;  // the same as the input has it (see Entry's raw fields)
  bool textCdata = false;
  bool textTooLong = false;
  bool textReported = false;  // text outside a value, reported once per element

  // The entry being read, and the one ready to be handed out.
  FileContext file;
  bool inEntry = false;
  bool entryValid = true;
  unsigned seenChildren = 0;  // bits of Element values already met in this entry
  Entry entry;
  bool ready = false;
  Entry readyEntry;

  KeySet keys;
  std::string keyBuffer;

  Position position() const;
  void report(Position at, const char *code, std::string message);

  void startElement(const char *name, const char **attributes);
  void endElement(const char *name);
  void characters(const char *text, int length);
  void startCdata();
  void appendRaw();
  void misplacedMarkup(const char *what);

private:
  void acceptElement(Element element, std::string_view name, Position at, const char **attributes);
  void checkAttributes(Element element, std::string_view name, Position at,
                       const char **attributes);
  void rejectElement(Element element, std::string_view name, Position at);
  void beginEntry(EntryKind kind, Position at);
  void endValue(const Frame &frame);
  void endEntry(const Frame &frame);
  void handOut();
  bool firstChild(Element element, const Frame &frame);
};
