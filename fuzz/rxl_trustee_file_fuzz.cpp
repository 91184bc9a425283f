// Arbitrary RXL trustee file bytes through the import (as a file on disk) and through the block
// scanner directly. The section goes to /dev/null; parse messages stay on standard error (run
// with -close_fd_mask=2 to keep them out of the fuzzer's log).
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "save/rxl_import.h"

namespace {

// A file for the import's input and descriptor 1 on /dev/null, both set up once per process.
struct Setup {
  std::string fileName;
  Setup() {
    char pattern[] = "/tmp/rxl_trustee_file_fuzz.XXXXXX";
    const int fd = mkstemp(pattern);
    if (fd < 0) std::abort();
    close(fd);
    fileName = pattern;
    const int devNull = open("/dev/null", O_WRONLY);
    if (devNull < 0 || dup2(devNull, STDOUT_FILENO) < 0) std::abort();
    close(devNull);
  }
  ~Setup() { unlink(fileName.c_str()); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static Setup setup;

  resetRxlImportScanner();
  const int fd = open(setup.fileName.c_str(), O_WRONLY | O_TRUNC);
  if (fd < 0) std::abort();
  for (std::size_t done = 0; done < size;) {
    const ssize_t wrote = write(fd, data + done, size - done);
    if (wrote <= 0) std::abort();
    done += static_cast<std::size_t>(wrote);
  }
  close(fd);
  const int result = importRxlTrusteeFile(setup.fileName.c_str(), size % 2 ? "/home" : nullptr);
  if (result != 0 && result != -2) std::abort();

  // The scanner alone, on a block exactly as long as the input plus its terminator.
  resetRxlImportScanner();
  std::vector<char> block(data, data + size);
  block.push_back('\0');
  parseRxlTrusteeBlock(block.data(), static_cast<int>(size), nullptr);
  return 0;
}
