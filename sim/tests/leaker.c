/* Opens simulated files the ways a client does and ends, closing them or not, so that the
   simulator's record of what programs leave behind can be checked.
   leaker leave|tidy|stdin|heap: prints its process id, the temporary file it made and the
   descriptors it opened, in the order opened. */
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <mntent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: leaker leave|tidy|stdin|heap\n");
    return 2;
  }
  if (strcmp(argv[1], "heap") == 0) {
    /* An allocation lost before the end, for the leak sanitizer to find. */
    char *volatile lost = malloc(64);
    if (lost) lost[0] = 1;
    lost = NULL;
    return 0;
  }
  const int tidy = strcmp(argv[1], "tidy") == 0;
  if (strcmp(argv[1], "stdin") == 0) {
    /* An info file read through standard input and left there, the original descriptor closed. */
    int fd = open("/_admin/Manage_QUILL/Volume/VOL1/TrusteeInfo.xml", O_RDONLY);
    if (fd < 0 || dup2(fd, 0) < 0) return 1;
    close(fd);
    printf("%d\n", (int)getpid());
    return 0;
  }
  int command = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
  FILE *info = fopen("/_admin/Manage_QUILL/Volume/VOL1/UserInfo.xml", "r");
  FILE *table = setmntent("/etc/mtab", "r");
  DIR *dir = opendir("/_admin/Manage_QUILL");
  int copy = dup(command);
  char name[] = "/tmp/quillsim-leaker.XXXXXX";
  int temporary = mkstemp(name);
  if (command < 0 || !info || !table || !dir || copy < 0 || temporary < 0) return 1;
  close(temporary);
  printf("%d %s %d %d %d %d %d\n", (int)getpid(), name, command, fileno(info), fileno(table),
         dirfd(dir), copy);
  fflush(stdout);
  if (tidy) {
    close(command);
    close(copy);
    fclose(info);
    endmntent(table);
    closedir(dir);
    unlink(name);
  }
  return 0;
}
