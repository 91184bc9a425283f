#include "ctl/convert_pass.h"

#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "ctl/output.h"
#include "document/rights.h"
#include "legacy/quoted_fields.h"
#include "legacy/report_line.h"
#include "legacy/report_record.h"
#include "model/canonical_writer.h"

namespace {

struct LineFree {
  void operator()(char *line) const { std::free(line); }
};
using Line = std::unique_ptr<char, LineFree>;

// The text trovan's record writer makes of a value (the path, with its prefix and slashes).
std::string rendered(const RecordValue &value) {
  char *text = nullptr;
  std::size_t size = 0;
  std::FILE *stream = open_memstream(&text, &size);
  if (stream == nullptr) return "";
  value.writeTo(stream);
  std::fclose(stream);
  std::string result(text, size);
  std::free(text);
  return result;
}

bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0x80         ? 1
                               : (lead >> 5) == 6  ? 2
                               : (lead >> 4) == 14 ? 3
                               : (lead >> 3) == 30 ? 4
                                                   : 0;
    if (length == 0 || at + length > text.size()) return false;
    for (std::size_t next = 1; next < length; ++next)
      if ((static_cast<unsigned char>(text[at + next]) & 0xc0) != 0x80) return false;
    at += length;
  }
  return true;
}

class Pass {
public:
  Pass(const ConvertSettings &settings, CanonicalWriter *writer)
      : settings_(settings), writer_(writer) {}

  void line(char *text, unsigned long lineNumber);
  ConvertResult result;

private:
  void list(unsigned long line, const std::string &message) {
    reportError(settings_.label, line, 1, message);
    ++result.listed;
  }
  RightsSet rightsOf(const char *letters, unsigned long line);
  bool takeText(std::string &into, const char *value, unsigned long line);

  const ConvertSettings &settings_;
  CanonicalWriter *writer_;
};

RightsSet Pass::rightsOf(const char *letters, unsigned long line) {
  RightsSet rights = 0;
  for (const char *letter = letters; *letter != '\0'; ++letter) {
    const int upper = std::toupper(static_cast<unsigned char>(*letter));
    RightsSet bit = 0;
    for (std::size_t at = 0; at < sizeof kRights / sizeof kRights[0]; ++at)
      if (kRights[at].element != nullptr && std::toupper(kRights[at].letter) == upper)
        bit = static_cast<RightsSet>(1u << at);
    if (bit == 0)
      list(line, std::string("'") + static_cast<char>(upper) +
                     "' is not a right letter; trovan restore -w leaves it out");
    rights |= bit;
  }
  return rights;
}

bool Pass::takeText(std::string &into, const char *value, unsigned long line) {
  into = value;
  if (isUtf8(into)) return true;
  reportError(settings_.label, line, 1,
              "text that is not UTF-8; convert the report to UTF-8 (or UTF-16) first");
  result.trouble = true;
  return false;
}

void Pass::line(char *text, unsigned long lineNumber) {
  char *cursor = nullptr;
  const char *keyword = nextQuotedField(text, ',', &cursor);
  if (keyword == nullptr) return;
  const ReportKind kind = reportKindOf(keyword);
  if (kind == ReportKind::other) return;
  const char *field[5] = {keyword};
  for (int at = 1; at <= 4; ++at) {
    if ((field[at] = nextQuotedField(nullptr, ',', &cursor)) == nullptr) {
      list(lineNumber, "fewer than four value fields; trovan restore -w passes the line over");
      return;
    }
  }
  Entry entry;
  entry.at = {lineNumber, 1};
  const bool named = kind == ReportKind::trustee || kind == ReportKind::userQuota;
  std::string name = field[3];
  if (named && takesTreeName(field[3])) name += "." + settings_.tree;
  if (kind != ReportKind::userQuota &&
      !takeText(entry.path, rendered(RecordValue::path(settings_.prefix, field[1])).c_str(),
                lineNumber))
    return;
  if (kind != ReportKind::userQuota && !entry.path.starts_with('/'))
    list(lineNumber, "path \"" + entry.path + "\" without a leading '/': give -r PREFIX");
  switch (kind) {
  case ReportKind::trustee:
    entry.kind = EntryKind::trustee;
    if (!takeText(entry.name, name.c_str(), lineNumber)) return;
    entry.rights = rightsOf(field[4], lineNumber);
    break;
  case ReportKind::filter:
    entry.kind = EntryKind::filter;
    entry.rights = rightsOf(field[3], lineNumber);
    break;
  case ReportKind::dirQuota:
    entry.kind = EntryKind::dirQuota;
    for (char &c : entry.path)
      if (c == '/') c = '\\';  // directory quotas are written with '\', as the file system does
    if (!takeText(entry.amount, field[3], lineNumber) ||
        !takeText(entry.spaceUsed, field[4], lineNumber))
      return;
    break;
  case ReportKind::userQuota:
    entry.kind = EntryKind::userQuota;
    if (!takeText(entry.name, name.c_str(), lineNumber) ||
        !takeText(entry.amount, field[4], lineNumber))
      return;
    break;
  case ReportKind::other: return;
  }
  if (writer_ != nullptr && !result.trouble) writer_->write(entry);
}

}  // namespace

ConvertResult convertReport(const ConvertSettings &settings, CanonicalWriter *writer) {
  lseek(0, 0, SEEK_SET);
  resetReportInput();
  Pass pass(settings, writer);
  const Line header(readReportLine());
  if (!isReportHeader(header.get())) {
    reportError(settings.label + ": not a TRUSTEE.KXM report (its first line must begin with "
                                 "TRUSTEE.KXM)");
    pass.result.trouble = true;
    return pass.result;
  }
  if (writer != nullptr) writer->begin();
  while (Line line{readReportLine()}) {
    pass.line(line.get(), reportLineStart());
    if (pass.result.trouble) break;
  }
  return pass.result;
}
