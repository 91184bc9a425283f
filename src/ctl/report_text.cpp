// The text format: a table for a terminal, its columns as wide as their widest cell (counted in
// characters, not bytes), "-" in an empty cell, control characters shown as \xNN.
#include <array>
#include <vector>

#include "ctl/report_lines.h"

namespace {

constexpr std::size_t kColumns = 6;
using Cells = std::array<std::string, kColumns>;

std::string cellText(std::string_view text) {
  if (text.empty()) return "-";
  std::string cell;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      cell += c;
      continue;
    }
    static constexpr char kHex[] = "0123456789abcdef";
    cell += "\\x";
    cell += kHex[byte >> 4];
    cell += kHex[byte & 15];
  }
  return cell;
}

std::size_t characters(const std::string &text) {
  std::size_t count = 0;
  for (const char c : text)
    count += (static_cast<unsigned char>(c) & 0xc0) != 0x80;
  return count;
}

class TextWriter : public LineWriter {
public:
  TextWriter(const ReportVolume &volume, ReportView view, std::FILE *stream)
      : volume_(volume), view_(view), stream_(stream) {
    if (view == ReportView::byPath)
      rows_.push_back({"PATH", "ENTRY", "USER", "KIND", "RIGHTS", "QUOTA"});
    if (view == ReportView::byUser)
      rows_.push_back({"USER", "KIND", "ENTRY", "PATH", "RIGHTS", "QUOTA"});
    if (view == ReportView::effective || view == ReportView::effectiveAll)
      rows_.push_back({"PATH", "USER", "KIND", "RIGHTS", "FROM", ""});
  }

  void line(const ReportLine &line) override {
    const ReportUser *user = line.user == kNone ? nullptr : &volume_.users[line.user];
    const std::string path = cellText(line.path == nullptr ? "" : *line.path);
    const std::string label = cellText(user == nullptr ? "" : userLabelOf(*user));
    const std::string kind = user == nullptr ? "-" : user->ad ? "ad" : "arbor";
    const bool hasRights = line.kind != LineKind::userQuota && line.kind != LineKind::dirQuota;
    const std::string rights = hasRights ? cellText(rightsLetters(line.rights)) : "-";
    const std::string amount = cellText(line.amount == nullptr ? "" : *line.amount);
    const std::string entry(lineKindName(line.kind));
    if (view_ == ReportView::byPath) rows_.push_back({path, entry, label, kind, rights, amount});
    if (view_ == ReportView::byUser) rows_.push_back({label, kind, entry, path, rights, amount});
    if (line.kind == LineKind::effective)
      rows_.push_back({path, label, kind, rights, cellText(*line.from), ""});
  }

  void finish() override {
    if (view_ == ReportView::effective || view_ == ReportView::effectiveAll)
      std::fprintf(stream_, "%s\n", kEffectiveNote);
    std::array<std::size_t, kColumns> widths{};
    for (const Cells &row : rows_)
      for (std::size_t at = 0; at < kColumns; ++at)
        widths[at] = std::max(widths[at], characters(row[at]));
    std::string text;
    for (const Cells &row : rows_) {
      text.clear();
      for (std::size_t at = 0; at < kColumns && !row[at].empty(); ++at) {
        if (at > 0) text.append(widths[at - 1] - characters(row[at - 1]) + 2, ' ');
        text += row[at];
      }
      text += '\n';
      std::fwrite(text.data(), 1, text.size(), stream_);
    }
  }

private:
  const ReportVolume &volume_;
  ReportView view_;
  std::FILE *stream_;
  std::vector<Cells> rows_;
};

}  // namespace

std::unique_ptr<LineWriter> makeTextWriter(const ReportVolume &volume, ReportView view,
                                           std::FILE *stream) {
  return std::make_unique<TextWriter>(volume, view, stream);
}
