#include "ctl/scratch_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <vector>

int namedScratchFile(std::string &name) {
  const char *folder = std::getenv("TMPDIR");
  const std::string pattern =
      std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/trovanctl.XXXXXX";
  std::vector<char> text(pattern.begin(), pattern.end());
  text.push_back('\0');
  const int fd = mkostemp(text.data(), O_CLOEXEC);
  if (fd >= 0) name.assign(text.data());
  return fd;
}

int scratchFile() {
  std::string name;
  const int fd = namedScratchFile(name);
  if (fd >= 0) unlink(name.c_str());
  return fd;
}
