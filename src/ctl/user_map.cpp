#include "ctl/user_map.h"

#include <vector>

namespace {

// Reads one CSV field at `at` (left after it). Returns "" or what is wrong.
std::string readField(std::string_view line, std::size_t &at, std::string &field) {
  field.clear();
  if (at < line.size() && line[at] == '"') {
    for (++at;; ++at) {
      if (at >= line.size()) return "a quoted field without its closing '\"'";
      if (line[at] != '"') {
        field += line[at];
      } else if (at + 1 < line.size() && line[at + 1] == '"') {
        field += '"';
        ++at;
      } else {
        ++at;
        break;
      }
    }
    if (at < line.size() && line[at] != ',') return "text after a quoted field";
    return "";
  }
  while (at < line.size() && line[at] != ',') {
    if (line[at] == '"') return "a '\"' inside an unquoted field";
    field += line[at++];
  }
  return "";
}

std::string where(unsigned long line, std::size_t column) {
  return std::to_string(line) + ":" + std::to_string(column + 1) + ": ";
}

}  // namespace

bool isSid(std::string_view user) { return user.starts_with("S-1-"); }

std::string parseUserMap(std::string_view text, UserMap &map) {
  unsigned long lineNumber = 0;
  while (!text.empty()) {
    ++lineNumber;
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;
    std::string fields[2];
    std::size_t at = 0;
    for (int index = 0; index < 2; ++index) {
      const std::size_t start = at;
      if (std::string problem = readField(line, at, fields[index]); !problem.empty())
        return where(lineNumber, at) + problem;
      if (fields[index].empty())
        return where(lineNumber, start) + (index == 0 ? "an empty old name" : "an empty new name");
      if (index == 0) {
        if (at >= line.size()) return where(lineNumber, at) + "a rule needs two fields: old,new";
        ++at;  // the comma
      }
    }
    if (at < line.size()) return where(lineNumber, at) + "more than two fields: old,new";
    if (!map.names.emplace(fields[0], fields[1]).second)
      return where(lineNumber, 0) + "a second rule for " + fields[0];
  }
  return "";
}
