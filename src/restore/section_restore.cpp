#include "restore/section_restore.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "channel/admin_channel.h"

int openSectionFile(const char *commandFile, const char *purpose) {
  adminFd = 0;
  if (requestStandInSet()) return 0;
  adminFd = open(commandFile, O_RDWR);
  if (adminFd >= 0) return 0;
  const int error = errno;
  std::fprintf(stderr, "Unable to open the admin file for administration of %s.  err=%m\n",
               purpose);
  adminFd = 0;
  return error;
}

void closeSectionFile() {
  if (adminFd > 0) close(adminFd);
  adminFd = 0;
}
