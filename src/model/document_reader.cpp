// Drives libxml2's push parser over the input, 64 KiB at a time, with the SAX callbacks of the
// first version of its interface: names as written (no namespace processing), attributes in
// document order. The parser loads no DTD, reaches no network and replaces no entity of a
// document type declaration: reading stops at the declaration.
#include "model/document_reader.h"

#include <libxml/parserInternals.h>
#include <unistd.h>

#include <cerrno>

#include "model/reader_state.h"

namespace {

constexpr std::size_t kReadSize = 65536;

using State = DocumentReader::State;

State &stateOf(void *data) { return *static_cast<State *>(data); }

void onStart(void *data, const xmlChar *name, const xmlChar **attributes) {
  stateOf(data).startElement(reinterpret_cast<const char *>(name),
                             reinterpret_cast<const char **>(attributes));
}
void onEnd(void *data, const xmlChar *name) {
  stateOf(data).endElement(reinterpret_cast<const char *>(name));
}
void onText(void *data, const xmlChar *text, int length) { stateOf(data).characters(text, length); }
void onCdata(void *data, const xmlChar *text, int length) { stateOf(data).cdata(text, length); }
void onComment(void *data, const xmlChar *) { stateOf(data).misplacedMarkup("a comment"); }
void onInstruction(void *data, const xmlChar *, const xmlChar *) {
  stateOf(data).misplacedMarkup("a processing instruction");
}
void onDoctype(void *data, const xmlChar *, const xmlChar *, const xmlChar *) {
  stateOf(data).doctype();
}
void onError(void *data, const char *, ...) { stateOf(data).parserError(); }
void onWarning(void *, const char *, ...) {}

xmlSAXHandler handlers() {
  xmlSAXHandler sax{};
  sax.startElement = onStart;
  sax.endElement = onEnd;
  sax.characters = onText;
  sax.ignorableWhitespace = onText;
  sax.cdataBlock = onCdata;
  sax.comment = onComment;
  sax.processingInstruction = onInstruction;
  sax.internalSubset = onDoctype;
  sax.error = onError;
  sax.fatalError = onError;
  sax.warning = onWarning;
  return sax;
}

// Reads the next chunk of the input into the window and gives it to the parser.
void parseChunk(State &state) {
  char *buffer = state.input.reserve(kReadSize);
  ssize_t count;
  do
    count = state.source ? state.source(buffer, kReadSize) : read(state.fd, buffer, kReadSize);
  while (count < 0 && errno == EINTR);
  if (count < 0) {
    state.readError = errno;
    state.finished = true;
    return;
  }
  state.input.commit(static_cast<std::size_t>(count));
  state.finalGiven = count == 0;
  xmlParseChunk(state.parser, buffer, static_cast<int>(count), state.finalGiven ? 1 : 0);
  state.settle();
  if (state.finalGiven || state.errorSeen || state.aborted) {
    state.finish();
    return;
  }
  if (!state.declarationChecked && state.input.end() >= 6) state.checkDeclaration();
  if (!state.declarationChecked) return;
  // Later events start where the parser stands or after; a value's raw text from lastEnd.
  unsigned long long keep = state.parserOffset();
  if (state.lastEnd < keep) keep = state.lastEnd;
  state.place(keep);
  state.input.forgetBefore(keep);
}

}  // namespace

DocumentReader::DocumentReader(int fd, FindingSink findings) : state_(std::make_unique<State>()) {
  State &state = *state_;
  state.fd = fd;
  state.findings = std::move(findings);
  xmlSAXHandler sax = handlers();
  state.parser = xmlCreatePushParserCtxt(&sax, &state, nullptr, 0, nullptr);
  if (state.parser == nullptr) {
    state.readError = ENOMEM;
    state.finished = true;
    return;
  }
  xmlCtxtUseOptions(state.parser, XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
  xmlSwitchEncoding(state.parser, XML_CHAR_ENCODING_UTF8);
}

DocumentReader::DocumentReader(ByteSource source, FindingSink findings)
    : DocumentReader(-1, std::move(findings)) {
  state_->source = std::move(source);
}

DocumentReader::~DocumentReader() {
  if (state_->parser != nullptr) xmlFreeParserCtxt(state_->parser);
}

void DocumentReader::onSection(std::function<void(Section, bool)> observer) {
  state_->sectionObserver = std::move(observer);
}

void DocumentReader::useKeys(KeySet &keys) {
  keys.clear();
  state_->keys = &keys;
}

bool DocumentReader::failed() const { return state_->failed; }
int DocumentReader::readError() const { return state_->readError; }
unsigned long long DocumentReader::offset() const { return state_->offset; }
std::uint64_t DocumentReader::entryHash() const { return state_->handedHash; }
Position DocumentReader::position() const { return state_->endAt; }

bool DocumentReader::next(Entry &entry) {
  State &state = *state_;
  while (true) {
    if (!state.events.empty()) {
      ReaderEvent &event = state.events.front();
      const ReaderEvent::Kind kind = event.kind;
      if (kind == ReaderEvent::Kind::entry) {
        takeEntry(entry, state.ready.front());
        state.ready.pop();
        state.offset = event.offset;
        state.handedHash = event.keyHash;
        state.events.pop();
        return true;
      }
      if (kind == ReaderEvent::Kind::finding) {
        Finding finding = std::move(event.finding);
        state.events.pop();
        if (state.findings) state.findings(std::move(finding));
        continue;
      }
      const Section section = event.section;
      state.events.pop();
      if (state.sectionObserver)
        state.sectionObserver(section, kind == ReaderEvent::Kind::sectionOpens);
      continue;
    }
    if (state.finished) {
      state.failed = state.failing;
      return false;
    }
    parseChunk(state);
  }
}
