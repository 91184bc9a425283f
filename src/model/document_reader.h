// The strict, streaming reader of Metadata documents: a real XML parser (libxml2) underneath, the
// entries handed out one at a time as each one ends (the document is never held whole), and
// every problem reported with its line and column.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>

#include "model/entry.h"
#include "model/finding.h"

class KeySet;

// Where the reader's bytes come from instead of a descriptor, with read(2)'s contract.
using ByteSource = std::function<long(char *buffer, std::size_t size)>;

class DocumentReader {
public:
  // Reads from `fd` (left open). Findings go to `findings` as they are made.
  DocumentReader(int fd, FindingSink findings);
  DocumentReader(ByteSource source, FindingSink findings);
  ~DocumentReader();
  DocumentReader(const DocumentReader &) = delete;
  DocumentReader &operator=(const DocumentReader &) = delete;

  // Called as a section element opens (opening true) and closes, in document order between
  // the entries: trovan save writes a section even when it holds nothing.
  void onSection(std::function<void(Section, bool opening)> observer);
  // Looks duplicates up in `keys`, emptied here, instead of a set of the reader's own: a caller
  // that reads documents one after another keeps one set's memory. Called before the first
  // next(); `keys` outlives the reading.
  void useKeys(KeySet &keys);

  // The next entry in document order. False at the end, or where the document cannot be read
  // on: not well-formed XML (a finding says so and failed() is true) or a read error
  // (readError() is its errno).
  bool next(Entry &entry);

  bool failed() const;
  int readError() const;
  // Where the parser stands: the place of the error after a failure, the end after the end.
  Position position() const;
  // Bytes of the document the parser has consumed up to the end of the last entry handed out.
  unsigned long long offset() const;
  // The key hash of the entry handed out last (keyHash() of its entryKey()), made once for the
  // reader's own duplicate check: an index of entries takes it rather than make it again.
  std::uint64_t entryHash() const;

  struct State;

private:
  std::unique_ptr<State> state_;
};
