#include "save/idle_processor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

// The system's count of threads running or ready to run, this one among them, is below the
// number of processors. The count is the fourth field of /proc/loadavg ("running/total"); when it
// cannot be read, a processor is taken to be idle.
bool processorIdle() {
  const long processors = sysconf(_SC_NPROCESSORS_ONLN);
  if (processors < 2) return false;
  const int fd = open("/proc/loadavg", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return true;
  char line[128];
  const ssize_t count = read(fd, line, sizeof line - 1);
  close(fd);
  if (count <= 0) return true;
  line[count] = '\0';
  const char *field = line;
  for (int skip = 0; skip < 3 && field != nullptr; ++skip) {
    field = std::strchr(field, ' ');
    if (field != nullptr) ++field;
  }
  if (field == nullptr) return true;
  char *after = nullptr;
  const long running = std::strtol(field, &after, 10);
  if (after == field || *after != '/') return true;
  return running < processors;
}
