#include "ctl/document_output.h"

#include <cstring>

#include "ctl/output.h"

bool DocumentOutput::open(const std::string &name) {
  name_ = name;
  if (name.empty()) return true;
  file_ = std::make_unique<OutputFile>(name);
  if (file_->ok()) return true;
  reportError(file_->error());
  return false;
}

bool DocumentOutput::finish(int error) {
  if (error != 0) {
    reportError((name_.empty() ? "standard output" : name_) + ": " + std::strerror(error));
    return false;
  }
  if (file_ && file_->commit() != 0) {
    reportError(file_->error());
    return false;
  }
  return true;
}
