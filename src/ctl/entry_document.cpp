#include "ctl/entry_document.h"

bool EntryDocument::open(const std::string &name) {
  if (name.empty()) return true;
  if (!output_.open(name)) return false;
  writer_.emplace(output_.fd());
  writer_->begin();
  return true;
}

bool EntryDocument::commit() {
  if (!writer_) return true;
  return output_.finish(writer_->finish());
}
