// trovanctl map's user mapping file: any bytes are parsed without a crash, and a file that
// parses gives rules with two non-empty fields that, written back quoted, parse to the same map.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "ctl/user_map.h"

namespace {

std::string quoted(const std::string &field) {
  std::string text = "\"";
  for (const char c : field)
    text += c == '"' ? std::string("\"\"") : std::string(1, c);
  return text + "\"";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char *>(data), size);
  UserMap map;
  if (!parseUserMap(text, map).empty()) return 0;
  std::string written;
  for (const auto &[from, to] : map.names) {
    if (from.empty() || to.empty()) std::abort();
    // A field holding a line end cannot be written back on one line.
    if (from.find_first_of("\r\n") != std::string::npos ||
        to.find_first_of("\r\n") != std::string::npos)
      return 0;
    written += quoted(from) + "," + quoted(to) + "\n";
  }
  UserMap again;
  if (!parseUserMap(written, again).empty() || again.names != map.names) std::abort();
  return 0;
}
