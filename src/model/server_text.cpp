#include "model/server_text.h"

#include "model/utf8.h"

#include <cstdlib>

namespace {

// Decodes the reference at text[0] == '&' into out; returns its length, or 0 for none.
std::size_t decodeReference(std::string_view text, std::string &out) {
  const std::size_t semicolon = text.find(';');
  if (semicolon > 12) return 0;  // npos too: no semicolon
  const std::string_view reference = text.substr(1, semicolon - 1);
  static constexpr struct {
    std::string_view name;
    char character;
  } kNamed[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto &named : kNamed) {
    if (reference != named.name) continue;
    out += named.character;
    return semicolon + 1;
  }
  if (reference.size() < 2 || reference[0] != '#') return 0;
  const bool hex = reference[1] == 'x' || reference[1] == 'X';
  const std::string digits(reference.substr(hex ? 2 : 1));
  if (digits.empty()) return 0;
  char *end = nullptr;
  const unsigned long code = std::strtoul(digits.c_str(), &end, hex ? 16 : 10);
  if (*end != '\0' || code == 0 || code > 0x10FFFF) return 0;
  appendUtf8(out, static_cast<char32_t>(code));
  return semicolon + 1;
}

bool opensMarkup(char c) {
  return c == '/' || c == '!' || c == '?' || c == '_' || c == ':' || (c >= 'A' && c <= 'Z') ||
         (c >= 'a' && c <= 'z');
}

}  // namespace

void decodeAsServer(std::string_view text, std::string &out) {
  out.clear();
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    // The run up to the next '&' goes as it stands, in one piece.
    std::size_t amp = text.find('&', at);
    if (amp == std::string_view::npos) amp = text.size();
    out.append(text.data() + at, amp - at);
    at = amp;
    if (at == text.size()) break;
    if (const std::size_t used = decodeReference(text.substr(at), out); used != 0) {
      at += used;
      continue;
    }
    out += text[at++];
  }
}

std::string decodeAsServer(std::string_view text) {
  std::string out;
  decodeAsServer(text, out);
  return out;
}

bool formsMarkup(std::string_view text) {
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    if (at + 1 < text.size() && opensMarkup(text[at + 1]) &&
        text.find('>', at + 1) != std::string_view::npos)
      return true;
  }
  return false;
}

bool hasUndecodableAmpersand(std::string_view text) {
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (!rest.starts_with("&lt;") && !rest.starts_with("&gt;") && !rest.starts_with("&amp;") &&
        !rest.starts_with("&apos;") && !rest.starts_with("&quot;"))
      return true;
  }
  return false;
}
