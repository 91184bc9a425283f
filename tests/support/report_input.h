// Test support for the legacy report conversion: standard input fed from given bytes.
#pragma once
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <string_view>

namespace testing_support {

// Puts a file holding `bytes` on descriptor 0 for the guard's lifetime, then puts the old one back.
class StdinFromBytes {
public:
  StdinFromBytes(const std::string &directory, std::string_view bytes) {
    const std::string path = directory + "/stdin";
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const int fd = open(path.c_str(), O_RDONLY);
    savedStdin_ = dup(0);
    dup2(fd, 0);
    close(fd);
  }
  ~StdinFromBytes() {
    dup2(savedStdin_, 0);
    close(savedStdin_);
  }
  StdinFromBytes(const StdinFromBytes &) = delete;
  StdinFromBytes &operator=(const StdinFromBytes &) = delete;

private:
  int savedStdin_ = -1;
};

}  // namespace testing_support
