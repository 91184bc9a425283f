#include "text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qs {

namespace {

void appendUtf8(std::string &out, unsigned long code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// Decodes the reference starting at text[0] == '&'; returns its length or 0.
size_t decodeOne(std::string_view text, std::string &out) {
  size_t semi = text.find(';');
  if (semi > 12) return 0;  // npos (no ';') too
  std::string_view ref = text.substr(1, semi - 1);
  static constexpr struct {
    std::string_view name;
    char ch;
  } named[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto &n : named) {
    if (ref == n.name) {
      out += n.ch;
      return semi + 1;
    }
  }
  if (ref.size() >= 2 && ref[0] == '#') {
    bool hex = ref[1] == 'x' || ref[1] == 'X';
    std::string digits(ref.substr(hex ? 2 : 1));
    if (digits.empty()) return 0;
    char *end = nullptr;
    unsigned long code = std::strtoul(digits.c_str(), &end, hex ? 16 : 10);
    if (*end != '\0' || code == 0 || code > 0x10FFFF) return 0;
    appendUtf8(out, code);
    return semi + 1;
  }
  return 0;
}

}  // namespace

std::string xmlDecode(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    if (text[i] == '&') {
      size_t used = decodeOne(text.substr(i), out);
      if (used) {
        i += used;
        continue;
      }
    }
    out += text[i++];
  }
  return out;
}

std::string xmlEncode(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
    case '&': out += "&amp;"; break;
    case '<': out += "&lt;"; break;
    case '>': out += "&gt;"; break;
    default: out += c;
    }
  }
  return out;
}

std::string fieldEscape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
    case '\\': out += "\\\\"; break;
    case '\t': out += "\\t"; break;
    case '\n': out += "\\n"; break;
    default: out += c;
    }
  }
  return out;
}

std::string fieldUnescape(std::string_view text) {
  if (text.find('\\') == std::string_view::npos) return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      char n = text[++i];
      out += n == 't' ? '\t' : n == 'n' ? '\n' : n;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::vector<std::string_view> splitTabs(std::string_view line) {
  std::vector<std::string_view> fields;
  size_t start = 0;
  for (;;) {
    size_t tab = line.find('\t', start);
    if (tab == std::string_view::npos) {
      fields.push_back(line.substr(start));
      return fields;
    }
    fields.push_back(line.substr(start, tab - start));
    start = tab + 1;
  }
}

uint32_t zidOf(std::string_view path) {
  uint32_t h = 2166136261u;
  for (unsigned char c : path)
    h = (h ^ c) * 16777619u;
  return h % 900000000u + 100000000u;
}

bool isDigits(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  return true;
}

bool readFile(const std::string &path, std::string &out) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  out.clear();
  struct stat st;
  if (::fstat(fd, &st) == 0 && st.st_size > 0) out.reserve(static_cast<size_t>(st.st_size) + 1);
  char buf[65536];
  for (;;) {
    ssize_t n = ::read(fd, buf, sizeof buf);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    out.append(buf, static_cast<size_t>(n));
  }
  ::close(fd);
  return true;
}

bool writeFileAtomic(const std::string &path, std::string_view data) {
  std::string tmp = path + ".tmp" + std::to_string(::getpid());
  int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  size_t done = 0;
  while (done < data.size()) {
    ssize_t n = ::write(fd, data.data() + done, data.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      ::close(fd);
      ::unlink(tmp.c_str());
      return false;
    }
    done += static_cast<size_t>(n);
  }
  ::close(fd);
  if (::rename(tmp.c_str(), path.c_str()) != 0) {
    ::unlink(tmp.c_str());
    return false;
  }
  return true;
}

void appendFile(const std::string &path, std::string_view data) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (fd < 0) return;
  ssize_t n = ::write(fd, data.data(), data.size());
  (void)n;
  ::close(fd);
}

bool makeDirs(const std::string &path) {
  if (path.empty()) return false;
  for (size_t i = 1; i <= path.size(); ++i) {
    if (i == path.size() || path[i] == '/') {
      std::string part = path.substr(0, i);
      if (::mkdir(part.c_str(), 0755) != 0 && errno != EEXIST) return false;
    }
  }
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

}  // namespace qs
