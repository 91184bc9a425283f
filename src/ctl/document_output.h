// An optional named output of entries as a canonical Metadata document (plan --out, verify
// --remaining, apply --rejects): written to a temporary file beside the name and renamed over it
// only by commit(), so that a failed run leaves no half document.
#pragma once
#include <optional>
#include <string>

#include "ctl/output_file.h"
#include "model/canonical_writer.h"

class DocumentOutput {
public:
  // Opens `name`; an empty name means no output (every call then does nothing). False after a
  // message.
  bool open(const std::string &name);
  void write(const Entry &entry) {
    if (writer_) writer_->write(entry);
  }
  // Ends the document and renames it to its name. False after a message.
  bool commit();

private:
  std::string name_;
  std::optional<OutputFile> file_;
  std::optional<CanonicalWriter> writer_;
};
