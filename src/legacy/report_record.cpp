#include "legacy/report_record.h"

#include <cstring>

#include "document/rights.h"

RecordValue RecordValue::text(const char *value) {
  RecordValue result;
  result.pieces_[0] = value;
  result.pieceCount_ = 1;
  return result;
}

RecordValue RecordValue::elementsOf(const char *letters) {
  RecordValue result = text(letters);
  result.kind_ = Kind::kElements;
  return result;
}

RecordValue RecordValue::path(const char *prefix, const char *field) {
  RecordValue result;
  result.kind_ = Kind::kPath;
  const std::string_view fieldText(field);
  if (prefix == nullptr) {
    const std::size_t colon = fieldText.find(':');
    result.pieces_[0] = colon == std::string_view::npos ? fieldText : fieldText.substr(colon + 1);
    result.pieceCount_ = 1;
    return result;
  }
  // The cut is taken over the whole combined text: a colon in the prefix keeps what follows it
  // there, and a field that names its volume drops the prefix together with the volume.
  const std::string_view prefixText(prefix);
  const std::size_t prefixColon = prefixText.find(':');
  if (prefixColon != std::string_view::npos) {
    result.pieces_[0] = prefixText.substr(prefixColon + 1);
    result.pieces_[1] = "/";
    result.pieces_[2] = fieldText;
    result.pieceCount_ = 3;
    return result;
  }
  const std::size_t fieldColon = fieldText.find(':');
  if (fieldColon != std::string_view::npos) {
    result.pieces_[0] = fieldText.substr(fieldColon + 1);
    result.pieceCount_ = 1;
    return result;
  }
  result.pieces_[0] = prefixText.starts_with('/') ? "" : "/";
  result.pieces_[1] = prefixText;
  result.pieces_[2] = "/";
  result.pieces_[3] = fieldText;
  result.pieceCount_ = 4;
  return result;
}

namespace {

void writeWithSlashes(std::FILE *out, std::string_view piece) {
  for (;;) {
    const std::size_t backslash = piece.find('\\');
    if (backslash == std::string_view::npos) {
      fwrite_unlocked(piece.data(), 1, piece.size(), out);
      return;
    }
    fwrite_unlocked(piece.data(), 1, backslash, out);
    fputc_unlocked('/', out);
    piece.remove_prefix(backslash + 1);
  }
}

bool startsWith(const char *text, const char *keyword) {
  return std::strncmp(text, keyword, std::strlen(keyword)) == 0;
}

}  // namespace

void RecordValue::writeTo(std::FILE *out) const {
  switch (kind_) {
  case Kind::kText: fwrite_unlocked(pieces_[0].data(), 1, pieces_[0].size(), out); return;
  case Kind::kPath:
    for (std::size_t i = 0; i < pieceCount_; ++i)
      writeWithSlashes(out, pieces_[i]);
    return;
  case Kind::kElements:
    for (const char letter : pieces_[0]) {
      const char *element = rightLetterToElement(letter);
      if (element != nullptr) fputs_unlocked(element, out);
    }
    return;
  }
}

void writeRecord(std::FILE *out, const char *form, std::initializer_list<RecordValue> values) {
  std::string_view rest(form);
  for (const RecordValue &value : values) {
    const std::size_t slot = rest.find("%s");
    if (slot == std::string_view::npos) break;
    fwrite_unlocked(rest.data(), 1, slot, out);
    value.writeTo(out);
    rest.remove_prefix(slot + 2);
  }
  fwrite_unlocked(rest.data(), 1, rest.size(), out);
}

ReportKind reportKindOf(const char *keyword) {
  if (startsWith(keyword, "TRUSTEE")) return ReportKind::trustee;
  if (startsWith(keyword, "DIRQUOTA")) return ReportKind::dirQuota;
  if (startsWith(keyword, "USERQUOTA")) return ReportKind::userQuota;
  if (startsWith(keyword, "IRM")) return ReportKind::filter;
  return ReportKind::other;
}

bool isReportHeader(const char *line) { return line != nullptr && startsWith(line, "TRUSTEE.KXM"); }

bool takesTreeName(const char *name) { return !startsWith(name, "[Public]"); }
