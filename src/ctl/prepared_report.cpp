#include "ctl/prepared_report.h"

#include "ctl/scratch_file.h"
#include "model/utf8.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t kChunk = 65536;

enum class Encoding { bytes, utf16le, utf16be };

bool writeAll(int fd, const char *data, std::size_t size) {
  while (size > 0) {
    const ssize_t count = write(fd, data, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    data += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

// Turns UTF-16 into UTF-8, keeping what is left of a unit or a pair for the next chunk.
class Utf16Decoder {
public:
  explicit Utf16Decoder(bool bigEndian) : bigEndian_(bigEndian) {}

  // False for a lone surrogate; `problem` then says where.
  bool decode(const unsigned char *data, std::size_t size, std::string &out, std::string &problem) {
    for (std::size_t at = 0; at < size; ++at) {
      held_[heldCount_++] = data[at];
      if (heldCount_ < 2) continue;
      heldCount_ = 0;
      const char16_t unit =
          bigEndian_ ? char16_t(held_[0] << 8 | held_[1]) : char16_t(held_[1] << 8 | held_[0]);
      if (unit == u'\n') ++line_;
      if (high_ != 0) {
        if (unit < 0xdc00 || unit > 0xdfff) return lone(problem);
        appendUtf8(out, 0x10000 + ((char32_t(high_) - 0xd800) << 10) + (unit - 0xdc00));
        high_ = 0;
      } else if (unit >= 0xd800 && unit <= 0xdbff) {
        high_ = unit;
      } else if (unit >= 0xdc00 && unit <= 0xdfff) {
        return lone(problem);
      } else {
        appendUtf8(out, unit);
      }
    }
    return true;
  }

  bool finish(std::string &problem) {
    if (heldCount_ == 0 && high_ == 0) return true;
    problem = "UTF-16 text ends inside a character (line " + std::to_string(line_) + ")";
    return false;
  }

private:
  bool lone(std::string &problem) {
    problem = "UTF-16 text with a lone surrogate on line " + std::to_string(line_);
    return false;
  }

  bool bigEndian_;
  unsigned char held_[2] = {};
  int heldCount_ = 0;
  char16_t high_ = 0;
  unsigned long line_ = 1;
};

}  // namespace

int prepareReport(int fd, std::string &problem) {
  const int out = scratchFile();
  if (out < 0) {
    problem = std::string("cannot make a temporary file: ") + std::strerror(errno);
    return -1;
  }
  std::vector<unsigned char> chunk(kChunk);
  std::string converted;
  bool first = true;
  Encoding encoding = Encoding::bytes;
  Utf16Decoder little(false);
  Utf16Decoder big(true);
  for (;;) {
    ssize_t count = read(fd, chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      problem = std::strerror(errno);
      close(out);
      return -1;
    }
    if (count == 0) break;
    const unsigned char *data = chunk.data();
    std::size_t size = static_cast<std::size_t>(count);
    if (first) {
      first = false;
      if (size >= 3 && std::memcmp(data, "\xef\xbb\xbf", 3) == 0) {
        data += 3, size -= 3;
      } else if (size >= 2 && data[0] == 0xff && data[1] == 0xfe) {
        encoding = Encoding::utf16le, data += 2, size -= 2;
      } else if (size >= 2 && data[0] == 0xfe && data[1] == 0xff) {
        encoding = Encoding::utf16be, data += 2, size -= 2;
      }
    }
    converted.clear();
    bool good = true;
    if (encoding == Encoding::bytes)
      converted.assign(reinterpret_cast<const char *>(data), size);
    else
      good = (encoding == Encoding::utf16le ? little : big).decode(data, size, converted, problem);
    if (!good) {
      close(out);
      return -1;
    }
    if (!writeAll(out, converted.data(), converted.size())) {
      problem = std::string("temporary file: ") + std::strerror(errno);
      close(out);
      return -1;
    }
  }
  if ((encoding == Encoding::utf16le && !little.finish(problem)) ||
      (encoding == Encoding::utf16be && !big.finish(problem))) {
    close(out);
    return -1;
  }
  lseek(out, 0, SEEK_SET);
  return out;
}
