#include "cli/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "channel/temp_files.h"

bool ensureStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) >= 0 || errno != EBADF) continue;
    // The lowest free number is taken: the one just found closed.
    const int opened = open("/dev/null", O_RDWR);
    if (opened == fd) continue;
    if (opened >= 0) close(opened);
    return false;
  }
  return true;
}

void prepareProcess() {
  ensureStandardDescriptors();
  removeTempFilesOnSignal();
}
