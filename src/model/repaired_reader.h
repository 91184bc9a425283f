// The strict reader, optionally behind the end-tag repair: the repair's findings come in order
// among the reader's, and every place (of a finding or an entry) is one of the input as read.
#pragma once
#include <memory>

#include "model/document_reader.h"
#include "model/repair_end_tags.h"

class RepairedReader {
public:
  // Reads from `fd` (left open); with `repair`, through the end-tag repair.
  RepairedReader(int fd, bool repair, FindingSink findings);
  RepairedReader(const RepairedReader &) = delete;
  RepairedReader &operator=(const RepairedReader &) = delete;

  // As DocumentReader::next(); the repair's findings still held are handed over at the end.
  bool next(Entry &entry);
  // For failed(), readError() and onSection(); its position() and offset() are places in the
  // repaired bytes.
  DocumentReader &reader() { return *reader_; }

private:
  void forward(Finding finding);

  FindingSink findings_;
  std::unique_ptr<EndTagRepair> repair_;
  std::unique_ptr<DocumentReader> reader_;
};
