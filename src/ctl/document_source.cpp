#include "ctl/document_source.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// Copies standard input into an unnamed temporary file; returns it at offset 0, or -1.
int spoolStandardInput() {
  const char *folder = std::getenv("TMPDIR");
  int fd = open(folder != nullptr && *folder != '\0' ? folder : "/tmp",
                O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (fd < 0) return -1;
  char buffer[65536];
  for (;;) {
    const ssize_t count = read(0, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      if (count == 0 && lseek(fd, 0, SEEK_SET) == 0) return fd;
      break;
    }
    for (ssize_t done = 0; done < count;) {
      const ssize_t written = write(fd, buffer + done, static_cast<std::size_t>(count - done));
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) {
        const int error = errno;
        close(fd);
        errno = error;
        return -1;
      }
      done += written;
    }
  }
  const int error = errno;
  close(fd);
  errno = error;
  return -1;
}

}  // namespace

DocumentSource::DocumentSource(const std::string &name, Reading reading)
    : label_(name == "-" ? "(standard input)" : name) {
  if (name != "-")
    first_ = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  else
    first_ = reading == once ? fcntl(0, F_DUPFD_CLOEXEC, 0) : spoolStandardInput();
  if (first_ < 0) error_ = label_ + ": " + std::strerror(errno);
}

DocumentSource::~DocumentSource() {
  if (first_ >= 0) close(first_);
  if (second_ >= 0) close(second_);
}

int DocumentSource::second() {
  if (second_ < 0 && first_ >= 0) {
    // A fresh open of the same file: an offset of its own.
    const std::string path = "/proc/self/fd/" + std::to_string(first_);
    second_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  }
  return second_;
}
