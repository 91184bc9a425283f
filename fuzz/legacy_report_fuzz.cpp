// Arbitrary report bytes on standard input through the legacy report conversion. The first byte
// picks whether a tree and a prefix (with or without a leading '/' or a ':') are given.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "legacy/report_line.h"
#include "legacy/trustee_report.h"

namespace {

// The report and the document live in one private directory, removed when the fuzzer exits.
struct Paths {
  std::string directory;
  std::string input;
  std::string output;
  Paths() {
    char pattern[] = "/tmp/legacy-report-fuzz-XXXXXX";
    if (mkdtemp(pattern) == nullptr) std::abort();
    directory = pattern;
    input = directory + "/report";
    output = directory + "/document.xml";
  }
  ~Paths() {
    unlink(input.c_str());
    unlink(output.c_str());
    rmdir(directory.c_str());
  }
};

const Paths &paths() {
  static const Paths instance;
  return instance;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const unsigned choice = size > 0 ? data[0] : 0;
  if (size > 0) {
    ++data;
    --size;
  }
  const char *tree = (choice & 1) != 0 ? "CORP" : nullptr;
  static const char *const kPrefixes[] = {nullptr, "data", "/data\\sub", "X:pre"};
  const char *prefix = kPrefixes[(choice >> 1) & 3];

  FILE *file = std::fopen(paths().input.c_str(), "wb");
  if (file == nullptr) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  const int fd = open(paths().input.c_str(), O_RDONLY);
  if (fd < 0) return 0;
  const int savedStdin = dup(0);
  const int savedStderr = dup(2);
  dup2(fd, 0);
  close(fd);
  // The conversion's messages are not what is judged here.
  const int devNull = open("/dev/null", O_WRONLY);
  dup2(devNull, 2);
  close(devNull);

  resetReportInput();
  convertTrusteeReport(tree, paths().output.c_str(), prefix);

  dup2(savedStdin, 0);
  close(savedStdin);
  dup2(savedStderr, 2);
  close(savedStderr);
  return 0;
}
