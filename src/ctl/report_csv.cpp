// The CSV format (RFC 4180): a header row, then one record a line, lines ended by CRLF, a field
// quoted when it holds a comma, a quote, CR or LF, and its quotes doubled.
#include <array>

#include "ctl/report_lines.h"

namespace {

constexpr std::size_t kFlushSize = 1 << 20;

// Whether a field must be quoted: it holds a comma, a quote, CR or LF.
bool needsQuotes(std::string_view field) {
  static constexpr auto kSpecial = [] {
    std::array<bool, 256> special{};
    special[','] = special['"'] = special['\r'] = special['\n'] = true;
    return special;
  }();
  for (const char c : field)
    if (kSpecial[static_cast<unsigned char>(c)]) return true;
  return false;
}

void appendField(std::string &out, std::string_view field) {
  if (!needsQuotes(field)) {
    out += field;
    return;
  }
  out += '"';
  for (const char c : field) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

class CsvWriter : public LineWriter {
public:
  CsvWriter(const ReportVolume &volume, std::FILE *stream) : volume_(volume), stream_(stream) {
    buffer_.reserve(kFlushSize + (1 << 16));
    buffer_ = "path,entry,user,id,kind,rights,quota,from\r\n";
  }
  ~CsvWriter() override { flush(); }

  void line(const ReportLine &line) override {
    const ReportUser *user = line.user == kNone ? nullptr : &volume_.users[line.user];
    appendField(buffer_, line.path == nullptr ? "" : *line.path);
    buffer_ += ',';
    buffer_ += lineKindName(line.kind);
    buffer_ += ',';
    if (user != nullptr) {
      appendField(buffer_, user->name);
      buffer_ += ',';
      appendField(buffer_, user->id);
      buffer_ += user->ad ? ",ad," : ",arbor,";
    } else {
      buffer_ += ",,,";
    }
    if (line.kind != LineKind::userQuota && line.kind != LineKind::dirQuota)
      buffer_ += lettersOf(line.rights);
    buffer_ += ',';
    if (line.amount != nullptr) buffer_ += *line.amount;
    buffer_ += ',';
    if (line.from != nullptr) appendField(buffer_, *line.from);
    buffer_ += "\r\n";
    if (buffer_.size() >= kFlushSize) flush();
  }

  void finish() override { flush(); }

private:
  void flush() {
    std::fwrite(buffer_.data(), 1, buffer_.size(), stream_);
    buffer_.clear();
  }

  const ReportVolume &volume_;
  std::FILE *stream_;
  std::string buffer_;
};

}  // namespace

std::unique_ptr<LineWriter> makeCsvWriter(const ReportVolume &volume, std::FILE *stream) {
  return std::make_unique<CsvWriter>(volume, stream);
}
