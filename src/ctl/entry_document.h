// An optional named document of entries (plan --out, verify --remaining, apply --rejects): a
// canonical Metadata document written through DocumentOutput, so that it appears under its name
// only when the run completes it.
#pragma once
#include <optional>
#include <string>

#include "ctl/document_output.h"
#include "model/canonical_writer.h"

class EntryDocument {
public:
  // Opens `name`; an empty name means no document (every call then does nothing). False after a
  // message.
  bool open(const std::string &name);
  void write(const Entry &entry) {
    if (writer_) writer_->write(entry);
  }
  // Ends the document and renames it to its name. False after a message.
  bool commit();

private:
  DocumentOutput output_;
  std::optional<CanonicalWriter> writer_;
};
