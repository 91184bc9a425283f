// The protocol's own cost: sends precomputed requests (one a line in the file given, the bytes a
// restore sends) through /_admin/Manage_QUILL/files.cmd and reads each reply, doing nothing else:
// lseek to 0, write the request, lseek to 0, read until a read returns 0, as the restore does.
// The requests are loaded into memory first; only the loop is timed. Prints the loop's wall time
// and processor time (user + system), in seconds, on standard output, and the request count on
// standard error. Run it under the simulator, next
// to a restore of the document those requests come from.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// The process's processor time so far (user + system), in seconds.
double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s REQUESTS\n", argv[0]);
    return 2;
  }
  // Load the whole file, then cut it into lines.
  const int input = open(argv[1], O_RDONLY);
  if (input < 0) {
    std::perror("open");
    return 1;
  }
  std::vector<char> text;
  for (;;) {
    const std::size_t at = text.size();
    text.resize(at + (1 << 20));
    const ssize_t count = read(input, text.data() + at, 1 << 20);
    if (count < 0) {
      std::perror("read");
      return 1;
    }
    text.resize(at + static_cast<std::size_t>(count));
    if (count == 0) break;
  }
  close(input);
  struct Request {
    std::size_t offset;
    std::size_t length;
  };
  std::vector<Request> requests;
  for (std::size_t at = 0; at < text.size();) {
    const void *newline = std::memchr(text.data() + at, '\n', text.size() - at);
    const std::size_t end =
        newline != nullptr
            ? static_cast<std::size_t>(static_cast<const char *>(newline) - text.data())
            : text.size();
    if (end > at) requests.push_back({at, end - at});
    at = end + 1;
  }

  static char reply[65536];
  const auto start = std::chrono::steady_clock::now();
  const double processorStart = processorSeconds();
  const int fd = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
  if (fd < 0) {
    std::perror("open");
    return 1;
  }
  for (const Request &request : requests) {
    lseek(fd, 0, SEEK_SET);
    const ssize_t length = static_cast<ssize_t>(request.length);
    if (write(fd, text.data() + request.offset, request.length) != length) return 1;
    lseek(fd, 0, SEEK_SET);
    while (read(fd, reply, sizeof reply - 1) > 0) {
    }
  }
  close(fd);
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%.6f %.6f\n", seconds, processorSeconds() - processorStart);
  std::fprintf(stderr, "%zu requests\n", requests.size());
  return 0;
}
