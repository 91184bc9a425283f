#include "model/repaired_reader.h"

RepairedReader::RepairedReader(int fd, bool repair, FindingSink findings)
    : findings_(std::move(findings)) {
  FindingSink sink = [this](Finding finding) { forward(std::move(finding)); };
  if (!repair) {
    reader_ = std::make_unique<DocumentReader>(fd, std::move(sink));
    return;
  }
  repair_ = std::make_unique<EndTagRepair>(fd);
  EndTagRepair &step = *repair_;
  reader_ = std::make_unique<DocumentReader>(
      [&step](char *buffer, std::size_t size) { return step.read(buffer, size); }, std::move(sink));
}

void RepairedReader::forward(Finding finding) {
  if (repair_) {
    finding.at = repair_->original(finding.at);
    repair_->releaseUpTo(finding.at, findings_);
  }
  findings_(std::move(finding));
}

bool RepairedReader::next(Entry &entry) {
  const bool more = reader_->next(entry);
  if (!repair_) return more;
  if (!more) {
    repair_->releaseAll(findings_);
    return false;
  }
  repair_->releaseUpTo(reader_->offset(), findings_);
  entry.at = repair_->original(entry.at);
  entry.pathAt = repair_->original(entry.pathAt);
  return true;
}
