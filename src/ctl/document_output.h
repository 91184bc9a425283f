// Where convert and map write their document: standard output, or a named file written safely
// (a temporary file beside it, renamed only on success).
#pragma once
#include <memory>
#include <string>

#include "ctl/output_file.h"

class DocumentOutput {
public:
  // `name` empty is standard output. False after a message when the file cannot be made.
  bool open(const std::string &name);
  int fd() const { return file_ ? file_->fd() : 1; }
  // Ends the document written with `error` (0, or the errno of a failed write): reports the
  // failure, or renames the named file into place. False after a message.
  bool finish(int error);

private:
  std::string name_;
  std::unique_ptr<OutputFile> file_;
};
