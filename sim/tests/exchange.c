/* Sends the request read from standard input to a command file and prints the reply, the way a
   client of the file system does: lseek 0, write, lseek 0, read until 0.
   exchange FILE [--pread] [--chunk N] [--repeat N]
   With --repeat the request is sent N times on one descriptor and only the last reply is printed.
 */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int main(int argc, char **argv) {
  if (argc < 2) {
    fprintf(stderr, "usage: exchange files.cmd|manage.cmd [--pread] [--chunk N]\n");
    return 2;
  }
  int usePread = 0;
  size_t chunk = 65536;
  long repeat = 1;
  for (int i = 2; i < argc; ++i) {
    if (strcmp(argv[i], "--pread") == 0)
      usePread = 1;
    else if (strcmp(argv[i], "--repeat") == 0 && i + 1 < argc)
      repeat = atol(argv[++i]);
    else if (strcmp(argv[i], "--chunk") == 0 && i + 1 < argc)
      chunk = (size_t)atol(argv[++i]);
  }
  static char request[1 << 20];
  size_t len = fread(request, 1, sizeof request, stdin);
  char path[256];
  snprintf(path, sizeof path, "/_admin/Manage_QUILL/%s", argv[1]);
  int fd = open(path, O_RDWR);
  if (fd < 0) {
    printf("open failed: %s\n", strerror(errno));
    return 1;
  }
  char drain[4096];
  for (long r = 1; r < repeat; ++r) {
    if (pwrite(fd, request, len, 0) < 0 || pread(fd, drain, sizeof drain, 0) < 0) {
      printf("repeat failed: %s\n", strerror(errno));
      close(fd);
      return 1;
    }
  }
  ssize_t n =
      usePread ? pwrite(fd, request, len, 0) : (lseek(fd, 0, SEEK_SET), write(fd, request, len));
  if (n < 0) {
    printf("write failed: %s\n", strerror(errno));
    close(fd);
    return 1;
  }
  if (!usePread && lseek(fd, 0, SEEK_SET) != 0) {
    printf("lseek failed: %s\n", strerror(errno));
    return 1;
  }
  char *buf = malloc(chunk);
  off_t at = 0;
  for (;;) {
    n = usePread ? pread(fd, buf, chunk, at) : read(fd, buf, chunk);
    if (n < 0) {
      printf("read failed: %s\n", strerror(errno));
      free(buf);
      close(fd);
      return 1;
    }
    if (n == 0) break;
    fwrite(buf, 1, (size_t)n, stdout);
    at += n;
  }
  free(buf);
  close(fd);
  return 0;
}
