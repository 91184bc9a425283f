// The protocol's own cost: sends precomputed requests (one a line in the file given) through
// /_admin/Manage_QUILL/files.cmd and reads each reply, doing nothing else. Run it under the
// simulator, next to a restore of the document those requests come from.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s REQUESTS\n", argv[0]);
    return 2;
  }
  FILE *requests = std::fopen(argv[1], "r");
  const int fd = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
  if (requests == nullptr || fd < 0) {
    std::perror("open");
    return 1;
  }
  static char reply[65536];
  char *line = nullptr;
  std::size_t capacity = 0;
  long sent = 0;
  for (ssize_t length; (length = getline(&line, &capacity, requests)) > 0;) {
    if (line[length - 1] == '\n') --length;
    lseek(fd, 0, SEEK_SET);
    if (write(fd, line, static_cast<std::size_t>(length)) != length) return 1;
    lseek(fd, 0, SEEK_SET);
    while (read(fd, reply, sizeof reply - 1) > 0) {
    }
    ++sent;
  }
  std::free(line);
  close(fd);
  std::fclose(requests);
  std::printf("%ld requests\n", sent);
  return 0;
}
