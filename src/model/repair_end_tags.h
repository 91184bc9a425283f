// A byte step in front of the strict reader for documents that lost end tags by hand: the bytes
// pass through unchanged, except where an element of the Metadata grammar was left open. There
// the missing end tags are put back, one finding each, at the place of the tag that shows they
// are missing:
// - an end tag that does not match the open element, when closing open elements makes it match
//   (`</file>` while a <trustee> is open: `</trustee>` goes before it);
// - a known element that may not stand in the open element, when closing open elements reaches
//   one where it may (`<id>` in an open <name>: `</name>` goes before it; `<file>` in an open
//   <file>: `</file>` goes before it).
// Only elements of the grammar but the root <metadata> are closed, and none that holds an element
// it may not (an unknown one, or one no closing could place): where the missing end tag belongs
// is then a guess, and the document is left for the reader to refuse. Markup in comments, CDATA
// sections, processing instructions and attribute values is not tags. A document type
// declaration, a name over 63 bytes, elements nested over 32 deep or a 1,025th insertion end the
// repairs: the rest passes as it is.
//
// Places: the reader counts lines and columns in the bytes it is given; original() takes such a
// place back to the input as read (an insertion never holds a line end, so only the columns after
// it on its own line move).
#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "model/document_grammar.h"
#include "model/finding.h"

class EndTagRepair {
public:
  // How many end tags one document may have put back.
  static constexpr std::size_t kInsertionLimit = 1024;
  static constexpr std::size_t kNameLimit = 63;
  static constexpr std::size_t kDepthLimit = 32;

  // Reads the input from `fd` (left open).
  explicit EndTagRepair(int fd);

  // read(2)'s contract: up to `size` bytes of the repaired document, 0 at its end, -1 with errno.
  long read(char *buffer, std::size_t size);

  // The place in the input as read of a place in the repaired bytes.
  Position original(Position repaired) const;

  // Hands the insertions' findings, in order, to `sink` once: those up to the repaired byte
  // `offset`, or those placed at or before `at`.
  void releaseUpTo(unsigned long long offset, const FindingSink &sink);
  void releaseUpTo(Position at, const FindingSink &sink);
  void releaseAll(const FindingSink &sink);

  struct Insertion {
    unsigned long long offset;  // in the repaired bytes
    Position at;                // in the input
    std::size_t length;
  };
  const std::vector<Insertion> &insertions() const { return insertions_; }

private:
  struct Frame {
    char name[kNameLimit];
    unsigned char length;
    Element element;
    bool tainted;  // holds an element it may not
    unsigned long line;
  };
  enum class Mode : unsigned char {
    text,
    afterLt,
    startName,
    endName,
    startTag,
    quoted,
    endTag,
    bang,
    comment,
    cdata,
    pi,
    through
  };

  bool fill();
  void scan();
  void step(char c);
  void stepName(char c);
  void stepTag(char c);
  void stepBang(char c);
  void stepSkipped(char c);
  void track(char c);
  void put(char c) { out_[outUsed_++] = c; }
  void flushHold();
  void startNamed();
  void endNamed();
  bool insertClosings(std::size_t keep);
  static bool closable(const Frame &frame);
  void giveUp() { mode_ = Mode::through; }

  int fd_;
  std::unique_ptr<char[]> in_;
  std::size_t inUsed_ = 0;
  std::size_t inNext_ = 0;
  std::unique_ptr<char[]> out_;
  std::size_t outUsed_ = 0;
  std::size_t outTaken_ = 0;
  unsigned long long outTotal_ = 0;  // repaired bytes before out_
  bool ended_ = false;

  Mode mode_ = Mode::text;
  char quote_ = 0;
  bool slash_ = false;    // the byte before is '/', in a start tag
  unsigned matched_ = 0;  // of the ends "-->", "]]>", "?>", or of the starts after "<!"
  bool bangCdata_ = false;
  char hold_[kNameLimit + 3];  // "<" or "</" and the name so far
  std::size_t holdLength_ = 0;
  Position tagAt_;  // of the '<' held

  unsigned long line_ = 1;
  unsigned long column_ = 1;
  bool afterCr_ = false;

  Frame frames_[kDepthLimit];
  std::size_t depth_ = 0;

  std::vector<Insertion> insertions_;
  struct Pending {
    unsigned long long offset;  // in the repaired bytes
    Finding finding;
  };
  std::vector<Pending> findings_;  // in order, the first released_ handed over already
  std::size_t released_ = 0;
};
