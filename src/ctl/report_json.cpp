// The JSON format: JSON Lines through the program's output layer, one object a line; an
// effective-rights report starts with a "note" object.
#include "ctl/output.h"
#include "ctl/report_lines.h"

namespace {

class JsonWriter : public LineWriter {
public:
  JsonWriter(const ReportVolume &volume, ReportView view, std::FILE *stream)
      : volume_(volume), output_(Format::json, stream) {
    if (view != ReportView::effective && view != ReportView::effectiveAll) return;
    Row note;
    note["type"] = "note";
    note["text"] = kEffectiveNote + std::string_view("note: ").size();
    output_.emit(note);
  }

  void line(const ReportLine &line) override {
    Row row;
    row["type"] = lineKindName(line.kind);
    if (line.path != nullptr) row["path"] = *line.path;
    if (line.user != kNone) {
      const ReportUser &user = volume_.users[line.user];
      row["user"] = user.name;
      if (user.ad) row["id"] = user.id;
      row["kind"] = user.ad ? "ad" : "arbor";
    }
    if (line.kind != LineKind::userQuota && line.kind != LineKind::dirQuota)
      row["rights"] = rightsLetters(line.rights);
    if (line.amount != nullptr) row["quota"] = *line.amount;
    if (line.from != nullptr) row["from"] = *line.from;
    output_.emit(row);
  }

  void finish() override {}

private:
  const ReportVolume &volume_;
  Output output_;
};

}  // namespace

std::unique_ptr<LineWriter> makeJsonWriter(const ReportVolume &volume, ReportView view,
                                           std::FILE *stream) {
  return std::make_unique<JsonWriter>(volume, view, stream);
}
