// The input is read in the reader's own chunk size; each chunk is scanned once, byte by byte,
// into an output buffer with room for the end tags one tag can need. Buffers are allocated once.
#include "model/repair_end_tags.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

constexpr std::size_t kChunk = 65536;
// Room for the end tags put back before one tag, and the tag's start held until then.
constexpr std::size_t kSlack = 4096;
static_assert(kSlack >= EndTagRepair::kDepthLimit * (EndTagRepair::kNameLimit + 3) +
                            EndTagRepair::kNameLimit + 3);

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool endsName(char c) { return isBlank(c) || c == '/' || c == '>'; }

bool before(Position one, Position other) {
  return one.line < other.line || (one.line == other.line && one.column <= other.column);
}

}  // namespace

EndTagRepair::EndTagRepair(int fd)
    : fd_(fd), in_(new char[kChunk]), out_(new char[kChunk + kSlack]) {
  insertions_.reserve(kInsertionLimit);
  findings_.reserve(kInsertionLimit + 1);
}

long EndTagRepair::read(char *buffer, std::size_t size) {
  while (outTaken_ == outUsed_) {
    if (ended_) return 0;
    outTotal_ += outUsed_;
    outUsed_ = outTaken_ = 0;
    if (inNext_ == inUsed_) {
      ssize_t count;
      do
        count = ::read(fd_, in_.get(), kChunk);
      while (count < 0 && errno == EINTR);
      if (count < 0) return -1;
      inUsed_ = static_cast<std::size_t>(count);
      inNext_ = 0;
      if (count == 0) {
        // A tag cut off by the end of the input goes on as it is.
        flushHold();
        ended_ = true;
        continue;
      }
    }
    scan();
  }
  const std::size_t count = std::min(size, outUsed_ - outTaken_);
  std::memcpy(buffer, out_.get() + outTaken_, count);
  outTaken_ += count;
  return static_cast<long>(count);
}

void EndTagRepair::scan() {
  while (inNext_ < inUsed_ && outUsed_ + kSlack <= kChunk + kSlack) {
    if (mode_ == Mode::through) {
      const std::size_t count = std::min(inUsed_ - inNext_, kChunk + kSlack - outUsed_);
      std::memcpy(out_.get() + outUsed_, in_.get() + inNext_, count);
      outUsed_ += count;
      inNext_ += count;
      return;
    }
    const char c = in_[inNext_++];
    step(c);
    track(c);
  }
}

// Lines end at LF, CR LF or a lone CR; columns count characters (UTF-8 sequences).
void EndTagRepair::track(char c) {
  if (c == '\n' || c == '\r') {
    if (c == '\r' || !afterCr_) ++line_;
    column_ = 1;
    afterCr_ = c == '\r';
    return;
  }
  afterCr_ = false;
  if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++column_;
}

void EndTagRepair::step(char c) {
  switch (mode_) {
  case Mode::text:
    if (c != '<') {
      put(c);
      return;
    }
    tagAt_ = {line_, column_};
    hold_[0] = c;
    holdLength_ = 1;
    mode_ = Mode::afterLt;
    return;
  case Mode::afterLt:
    if (c == '/' || c == '!' || c == '?') {
      hold_[holdLength_++] = c;
      mode_ = c == '/' ? Mode::endName : c == '!' ? Mode::bang : Mode::pi;
      matched_ = 0;
      if (c != '/') flushHold();
      return;
    }
    if (endsName(c) || c == '<') {
      // Not a tag: the reader says what is wrong.
      flushHold();
      mode_ = Mode::text;
      step(c);
      return;
    }
    hold_[holdLength_++] = c;
    mode_ = Mode::startName;
    return;
  case Mode::startName:
  case Mode::endName: stepName(c); return;
  case Mode::startTag:
  case Mode::quoted: stepTag(c); return;
  case Mode::endTag:
    put(c);
    if (c == '>') mode_ = Mode::text;
    return;
  case Mode::bang: stepBang(c); return;
  case Mode::comment:
  case Mode::cdata:
  case Mode::pi: stepSkipped(c); return;
  case Mode::through: put(c); return;
  }
}

void EndTagRepair::stepName(char c) {
  const bool start = mode_ == Mode::startName;
  if (!endsName(c)) {
    if (holdLength_ - (start ? 1 : 2) >= kNameLimit) {
      flushHold();
      giveUp();
      put(c);
      return;
    }
    hold_[holdLength_++] = c;
    return;
  }
  if (start)
    startNamed();
  else
    endNamed();
  flushHold();
  if (mode_ == Mode::through) {
    put(c);
  } else if (start) {
    mode_ = Mode::startTag;
    slash_ = false;
    stepTag(c);
  } else {
    put(c);
    mode_ = c == '>' ? Mode::text : Mode::endTag;
  }
}

// The attributes of a start tag, up to its '>' (or "/>", which opens nothing).
void EndTagRepair::stepTag(char c) {
  put(c);
  if (mode_ == Mode::quoted) {
    if (c == quote_) mode_ = Mode::startTag;
    return;
  }
  if (c == '"' || c == '\'') {
    quote_ = c;
    mode_ = Mode::quoted;
  } else if (c == '>') {
    if (!slash_) ++depth_;
    mode_ = Mode::text;
  }
  slash_ = c == '/';
}

// After "<!": a comment ("<!--"), a CDATA section ("<![CDATA["), or a declaration, which ends
// the repairs.
void EndTagRepair::stepBang(char c) {
  put(c);
  if (matched_ == 0) bangCdata_ = c == '[';
  const char *const opening = bangCdata_ ? "[CDATA[" : "--";
  if (c != opening[matched_]) {
    giveUp();
    return;
  }
  if (opening[++matched_] != '\0') return;
  mode_ = bangCdata_ ? Mode::cdata : Mode::comment;
  matched_ = 0;
}

// Inside a comment, a CDATA section or a processing instruction, up to "-->", "]]>" or "?>".
void EndTagRepair::stepSkipped(char c) {
  put(c);
  const char repeated = mode_ == Mode::comment ? '-' : mode_ == Mode::cdata ? ']' : '?';
  const unsigned needed = mode_ == Mode::pi ? 1 : 2;
  if (c == repeated) {
    matched_ = std::min(matched_ + 1, needed);
  } else if (c == '>' && matched_ == needed) {
    mode_ = Mode::text;
    matched_ = 0;
  } else {
    matched_ = 0;
  }
}

void EndTagRepair::flushHold() {
  std::memcpy(out_.get() + outUsed_, hold_, holdLength_);
  outUsed_ += holdLength_;
  holdLength_ = 0;
}

// A start tag's name is read: close what keeps the element out of place, then note the element
// (it opens at the tag's '>').
void EndTagRepair::startNamed() {
  const std::string_view name(hold_ + 1, holdLength_ - 1);
  const Element element = matchElement(name).element;
  if (depth_ > 0) {
    Frame &top = frames_[depth_ - 1];
    bool placed = element != Element::unknown && allowedIn(element, top.element);
    for (std::size_t keep = depth_; !placed && element != Element::unknown && keep > 1; --keep) {
      if (!closable(frames_[keep - 1])) break;
      if (allowedIn(element, frames_[keep - 2].element)) {
        if (!insertClosings(keep - 1)) return;
        placed = true;
      }
    }
    if (!placed) top.tainted = true;
  }
  if (depth_ == kDepthLimit) {
    giveUp();
    return;
  }
  Frame &frame = frames_[depth_];
  std::memcpy(frame.name, name.data(), name.size());
  frame.length = static_cast<unsigned char>(name.size());
  frame.element = element;
  frame.tainted = false;
  frame.line = tagAt_.line;
}

// An end tag's name is read: it closes the open element, or closing open elements makes it.
void EndTagRepair::endNamed() {
  const std::string_view name(hold_ + 2, holdLength_ - 2);
  std::size_t match = depth_;
  for (; match > 0; --match) {
    const Frame &frame = frames_[match - 1];
    if (std::string_view(frame.name, frame.length) == name) break;
    if (!closable(frame)) match = 1;
  }
  if (match == 0 || name.empty()) {
    // Left for the reader to refuse.
    giveUp();
    return;
  }
  if (!insertClosings(match)) return;
  depth_ = match - 1;
}

bool EndTagRepair::closable(const Frame &frame) {
  return frame.element != Element::unknown && frame.element != Element::metadata && !frame.tainted;
}

// Puts back the end tags of the open elements above the first `keep`, innermost first.
bool EndTagRepair::insertClosings(std::size_t keep) {
  for (; depth_ > keep; --depth_) {
    const Frame &frame = frames_[depth_ - 1];
    const std::string name(frame.name, frame.length);
    if (insertions_.size() == kInsertionLimit) {
      findings_.push_back({outTotal_ + outUsed_,
                           {tagAt_, "repair-limit",
                            "the missing </" + name + "> is not put back: " +
                                std::to_string(kInsertionLimit) + " end tags were already"}});
      giveUp();
      return false;
    }
    const std::string tag = "</" + name + ">";
    insertions_.push_back({outTotal_ + outUsed_, tagAt_, tag.size()});
    findings_.push_back({outTotal_ + outUsed_,
                         {tagAt_, "repaired-end-tag",
                          "inserted the missing " + tag + " (the open element is <" + name +
                              "> of line " + std::to_string(frame.line) + ")"}});
    std::memcpy(out_.get() + outUsed_, tag.data(), tag.size());
    outUsed_ += tag.size();
  }
  return true;
}

Position EndTagRepair::original(Position repaired) const {
  auto at = std::lower_bound(
      insertions_.begin(), insertions_.end(), repaired.line,
      [](const Insertion &insertion, unsigned long line) { return insertion.at.line < line; });
  unsigned long shift = 0;
  for (; at != insertions_.end() && at->at.line == repaired.line; ++at) {
    const unsigned long from = at->at.column + shift;
    if (repaired.column < from) break;
    // A place inside the inserted text is the place of the insertion.
    if (repaired.column < from + at->length) return at->at;
    shift += at->length;
  }
  return {repaired.line, repaired.column - shift};
}

void EndTagRepair::releaseUpTo(unsigned long long offset, const FindingSink &sink) {
  for (; released_ < findings_.size() && findings_[released_].offset < offset; ++released_)
    sink(findings_[released_].finding);
}

void EndTagRepair::releaseUpTo(Position at, const FindingSink &sink) {
  for (; released_ < findings_.size() && before(findings_[released_].finding.at, at); ++released_)
    sink(findings_[released_].finding);
}

void EndTagRepair::releaseAll(const FindingSink &sink) {
  for (; released_ < findings_.size(); ++released_)
    sink(findings_[released_].finding);
}
