#include "ctl/document_output.h"

#include <cstring>

#include "ctl/output.h"

bool DocumentOutput::open(const std::string &name) {
  if (name.empty()) return true;
  name_ = name;
  file_.emplace(name);
  if (!file_->ok()) {
    reportError(file_->error());
    return false;
  }
  writer_.emplace(file_->fd());
  writer_->begin();
  return true;
}

bool DocumentOutput::commit() {
  if (!writer_) return true;
  if (const int error = writer_->finish(); error != 0) {
    reportError(name_ + ": " + std::strerror(error));
    return false;
  }
  if (file_->commit() != 0) {
    reportError(file_->error());
    return false;
  }
  return true;
}
