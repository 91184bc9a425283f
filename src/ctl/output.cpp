#include "ctl/output.h"

#include "ctl/account_rows.h"

namespace {

// "trovanctl: FILE:LINE:COLUMN: message"
std::string findingText(const Row &row) {
  return "trovanctl: " + row.value("file", std::string()) + ":" +
         std::to_string(row.value("line", 0UL)) + ":" + std::to_string(row.value("column", 0UL)) +
         ": " + row.value("message", std::string());
}

// "N things", with the singular for one.
std::string counted(const Row &object, const char *member, const char *one, const char *many) {
  const unsigned long count = object.value(member, 0UL);
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// "FILE: N entries (...); trovan restore would send M requests (...); K findings"
std::string summaryText(const Row &row) {
  std::string text = row.value("file", std::string()) + ": ";
  const Row &entries = row["entries"];
  text += counted(entries, "total", "entry", "entries") + " (" +
          counted(entries, "trustee", "trustee", "trustees") + ", " +
          counted(entries, "filter", "filter", "filters") + ", " +
          counted(entries, "userQuota", "user quota", "user quotas") + ", " +
          counted(entries, "dirQuota", "directory quota", "directory quotas") + "); ";
  const Row &requests = row["requests"];
  text += "trovan restore would send " + counted(requests, "total", "request", "requests") + " (" +
          std::to_string(requests.value("addTrustee", 0UL)) + " addTrustee, " +
          std::to_string(requests.value("modifyInheritedRightsFilter", 0UL)) +
          " modifyInheritedRightsFilter, " +
          std::to_string(requests.value("userSpaceRestrictions", 0UL)) +
          " userSpaceRestrictions, " + std::to_string(requests.value("addQuota", 0UL)) +
          " addQuota)";
  if (row.contains("restoreEnd")) text += " " + row["restoreEnd"].get<std::string>();
  text += "; " + counted(row, "findings", "finding", "findings");
  return text;
}

std::string genericText(const Row &row) {
  std::string text;
  for (const auto &[name, value] : row.items()) {
    if (name == "type") continue;
    if (!text.empty()) text += ' ';
    text += name + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return text;
}

}  // namespace

Output::Output(Format format, std::FILE *stream) : format_(format), stream_(stream) {}

void Output::emit(const Row &row) { emit(row, renderText); }

void Output::emit(const Row &row, std::string (*render)(const Row &)) {
  const std::string line =
      format_ == Format::json
          ? row.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
          : render(row);
  std::fwrite(line.data(), 1, line.size(), stream_);
  std::fputc('\n', stream_);
}

void Output::line(const std::string &text) {
  std::fwrite(text.data(), 1, text.size(), stream_);
  std::fputc('\n', stream_);
}

std::string renderText(const Row &row) {
  const std::string type = row.value("type", std::string());
  if (type == "finding") return findingText(row);
  if (type == "summary") return summaryText(row);
  if (std::string text = renderAccountText(row); !text.empty()) return text;
  return genericText(row);
}

void reportError(const std::string &text) {
  std::fflush(stdout);
  std::fprintf(stderr, "trovanctl: %s\n", text.c_str());
}

void reportError(const std::string &file, unsigned long line, unsigned long column,
                 const std::string &text) {
  reportError(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + text);
}
