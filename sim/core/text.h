// Small text helpers shared by the simulator: XML entities, state-file fields, hashing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qs {

/// Decodes the XML character references &amp; &lt; &gt; &quot; &apos; &#N; &#xN;.
/// An '&' that does not start a known reference is kept as it stands.
std::string xmlDecode(std::string_view text);

/// Encodes '&', '<' and '>' as the file system writes them in element texts.
std::string xmlEncode(std::string_view text);

/// Escapes a state-file field: backslash, tab and line feed become \\, \t and \n.
std::string fieldEscape(std::string_view text);
std::string fieldUnescape(std::string_view text);

/// Splits one state-file line at tabs (fields still escaped).
std::vector<std::string_view> splitTabs(std::string_view line);

/// The file number the volume reports for a path: stable, so twin volumes agree.
uint32_t zidOf(std::string_view path);

/// True when text is a non-empty run of decimal digits.
bool isDigits(std::string_view text);

/// Calls fn(line) for each line of a state file's text, passing over empty lines and # comments.
template <class Fn> void forEachStateLine(std::string_view text, Fn fn) {
  while (!text.empty()) {
    const size_t nl = text.find('\n');
    const std::string_view line = text.substr(0, nl);
    text = nl == std::string_view::npos ? std::string_view() : text.substr(nl + 1);
    if (!line.empty() && line[0] != '#') fn(line);
  }
}

/// Reads a whole file; false when it cannot be opened.
bool readFile(const std::string &path, std::string &out);

/// Writes all of data to a descriptor (again after a short write); false on failure.
bool writeAll(int fd, std::string_view data);

/// Writes a whole file through a temporary name and rename; false on failure.
bool writeFileAtomic(const std::string &path, std::string_view data);

/// Appends data with one write call (O_APPEND); errors are ignored.
void appendFile(const std::string &path, std::string_view data);

/// Creates a directory and its parents (like mkdir -p); false on failure.
bool makeDirs(const std::string &path);

}  // namespace qs
