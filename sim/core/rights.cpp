#include "rights.h"

#include <cctype>

namespace qs {

namespace {

struct Right {
  std::string_view name;
  char letter;
};

constexpr Right kRights[] = {{"read", 'R'},   {"write", 'W'},         {"create", 'C'},
                             {"erase", 'E'},  {"accessControl", 'A'}, {"fileScan", 'F'},
                             {"modify", 'M'}, {"supervisor", 'S'},    {"salvage", 'V'},
                             {"secure", 'X'}};

}  // namespace

bool rightsFromElements(std::string_view elements, Rights &out, std::string &bad) {
  out = 0;
  size_t i = 0;
  while (i < elements.size()) {
    if (elements[i] != '<') {
      bad = std::string(elements.substr(i, 20));
      return false;
    }
    size_t close = elements.find("/>", i);
    if (close == std::string_view::npos) {
      bad = std::string(elements.substr(i, 20));
      return false;
    }
    std::string_view name = elements.substr(i + 1, close - i - 1);
    bool found = false;
    for (size_t k = 0; k < std::size(kRights); ++k) {
      if (kRights[k].name == name) {
        out |= static_cast<Rights>(1u << k);
        found = true;
      }
    }
    if (!found) {
      bad = std::string(elements.substr(i, close + 2 - i));
      return false;
    }
    i = close + 2;
  }
  return true;
}

bool rightsFromLetters(std::string_view letters, Rights &out) {
  out = 0;
  if (letters == "-" || letters == "none") return true;
  for (char c : letters) {
    char u = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    bool found = false;
    for (size_t k = 0; k < std::size(kRights); ++k) {
      if (kRights[k].letter == u) {
        out |= static_cast<Rights>(1u << k);
        found = true;
      }
    }
    if (!found) return false;
  }
  return true;
}

std::string rightsToElements(Rights r) {
  std::string out;
  for (size_t k = 0; k < std::size(kRights); ++k) {
    if (r & (1u << k)) {
      out += '<';
      out += kRights[k].name;
      out += "/>";
    }
  }
  return out;
}

std::string rightsToLetters(Rights r) {
  std::string out;
  for (size_t k = 0; k < std::size(kRights); ++k)
    if (r & (1u << k)) out += kRights[k].letter;
  return out;
}

}  // namespace qs
