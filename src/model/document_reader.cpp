// Drives expat over the input, 64 KiB at a time, and stops it after each entry so that the
// entries come out one by one.
#include "model/document_reader.h"

#include <unistd.h>

#include <cerrno>

#include "model/reader_state.h"

namespace {

constexpr int kReadSize = 65536;

using State = DocumentReader::State;

State &stateOf(void *data) { return *static_cast<State *>(data); }

void XMLCALL onStart(void *data, const XML_Char *name, const XML_Char **attributes) {
  stateOf(data).startElement(name, attributes);
}
void XMLCALL onEnd(void *data, const XML_Char *name) { stateOf(data).endElement(name); }
void XMLCALL onText(void *data, const XML_Char *text, int length) {
  stateOf(data).characters(text, length);
}
void XMLCALL onCdata(void *data) { stateOf(data).startCdata(); }
void XMLCALL onComment(void *data, const XML_Char *) { stateOf(data).misplacedMarkup("a comment"); }
void XMLCALL onInstruction(void *data, const XML_Char *, const XML_Char *) {
  stateOf(data).misplacedMarkup("a processing instruction");
}
void XMLCALL onDeclaration(void *data, const XML_Char *, const XML_Char *, int) {
  State &state = stateOf(data);
  state.report(state.position(), "xml-declaration",
               "an XML declaration: trovan restore refuses a document that does not start "
               "with <metadata>");
}
// A document type declaration could define entities; a Metadata document has none.
void XMLCALL onDoctype(void *data, const XML_Char *, const XML_Char *, const XML_Char *, int) {
  State &state = stateOf(data);
  state.report(state.position(), "doctype",
               "a document type declaration, which a Metadata document never holds; "
               "reading stops here");
  state.aborted = true;
  XML_StopParser(state.parser, XML_FALSE);
}

// The message of a parser error, with what the reader knows of the open elements.
std::string errorMessage(const State &state, XML_Error code) {
  std::string message = std::string("not well-formed XML: ") + XML_ErrorString(code);
  if (code == XML_ERROR_TAG_MISMATCH && !state.openNames.empty() &&
      state.openNames.size() == state.openDepth) {
    const OpenName &open = state.openNames.back();
    message +=
        " (the open element is <" + open.name + "> of line " + std::to_string(open.line) + ")";
  } else if (code == XML_ERROR_NO_ELEMENTS && state.openDepth > 0) {
    message = "the document ends inside <" +
              (state.openNames.empty() ? std::string("?") : state.openNames.back().name) + ">";
    if (!state.openNames.empty())
      message += " of line " + std::to_string(state.openNames.back().line);
  } else if (code == XML_ERROR_NO_ELEMENTS) {
    message = "the document holds no element";
  }
  return message;
}

}  // namespace

DocumentReader::DocumentReader(int fd, FindingSink findings) : state_(std::make_unique<State>()) {
  State &state = *state_;
  state.fd = fd;
  state.findings = std::move(findings);
  state.parser = XML_ParserCreate("UTF-8");
  XML_SetUserData(state.parser, &state);
  XML_SetElementHandler(state.parser, onStart, onEnd);
  XML_SetCharacterDataHandler(state.parser, onText);
  XML_SetStartCdataSectionHandler(state.parser, onCdata);
  XML_SetCommentHandler(state.parser, onComment);
  XML_SetProcessingInstructionHandler(state.parser, onInstruction);
  XML_SetXmlDeclHandler(state.parser, onDeclaration);
  XML_SetStartDoctypeDeclHandler(state.parser, onDoctype);
}

DocumentReader::~DocumentReader() {
  if (state_->parser != nullptr) XML_ParserFree(state_->parser);
}

void DocumentReader::onSection(std::function<void(Section, bool)> observer) {
  state_->sectionObserver = std::move(observer);
}

bool DocumentReader::failed() const { return state_->failed; }
int DocumentReader::readError() const { return state_->readError; }
unsigned long long DocumentReader::offset() const { return state_->offset; }
Position DocumentReader::position() const { return state_->position(); }

bool DocumentReader::next(Entry &entry) {
  State &state = *state_;
  while (!state.finished) {
    XML_Status status;
    if (state.suspended) {
      status = XML_ResumeParser(state.parser);
      if (state.finalGiven && status == XML_STATUS_OK) state.finished = true;
    } else {
      void *buffer = XML_GetBuffer(state.parser, kReadSize);
      if (buffer == nullptr) {
        state.readError = ENOMEM;
        state.finished = true;
        break;
      }
      ssize_t count;
      do
        count = read(state.fd, buffer, kReadSize);
      while (count < 0 && errno == EINTR);
      if (count < 0) {
        state.readError = errno;
        state.finished = true;
        break;
      }
      state.finalGiven = count == 0;
      status = XML_ParseBuffer(state.parser, static_cast<int>(count), state.finalGiven);
      if (state.finalGiven && status == XML_STATUS_OK) state.finished = true;
    }
    state.suspended = status == XML_STATUS_SUSPENDED;
    if (status == XML_STATUS_ERROR) {
      state.finished = true;
      state.failed = true;
      const XML_Error code = XML_GetErrorCode(state.parser);
      if (!state.aborted)
        state.report(state.position(), "not-well-formed", errorMessage(state, code));
    }
    if (state.ready) {
      state.ready = false;
      entry = std::move(state.readyEntry);
      return true;
    }
  }
  return false;
}
