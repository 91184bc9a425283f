// Runs the file-sharing server's console command in a child process and hands back its status.
#include "channel/console_runner.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "document/completion_codes.h"

namespace {

// Points descriptor 2 of the child at the caller's temporary file, created or truncated. The
// name is opened without following a link, so a link planted under it makes this fail.
bool catchErrorStream(const char *tempName) {
  const int fd = open(tempName, O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW, 0666);
  if (fd < 0) return false;
  if (fd != STDERR_FILENO) {
    dup2(fd, STDERR_FILENO);
    close(fd);
  }
  return true;
}

// Sends one of the child's standard streams to /dev/null. A failure leaves nobody to tell.
void discardStream(FILE *stream) {
  FILE *reopened = std::freopen("/dev/null", "w+", stream);
  static_cast<void>(reopened);
}

}  // namespace

int runCommand(const char *file, char *const argv[], char *tempName) {
  if (tempName != nullptr)
    std::snprintf(tempName, kConsoleTempNameSize, "/tmp/trovan%d", static_cast<int>(getpid()));

  // A line still buffered here would otherwise be written by the child as well.
  std::fflush(stdout);
  std::fflush(stderr);
  const pid_t child = fork();
  if (child < 0) return kOwnFailure;

  if (child == 0) {
    if (tempName != nullptr) {
      if (!catchErrorStream(tempName)) {
        // The child does not end here: it goes back to its caller as if the command had failed,
        // and the parent's wait collects it whenever it ends.
        std::fprintf(stderr, "Error %d(%m)opening temp file", errno);
        return kConsoleFailure;
      }
    } else {
      discardStream(stderr);
    }
    discardStream(stdout);
    execvp(file, argv);
    _exit(kOwnFailure);
  }

  int status = 0;
  const pid_t ended = wait(&status);
  if (ended < 0) return ended;
  if ((status & 0x7f) != 0) return kOwnFailure;
  return (status >> 8) & 0xff;
}

int checkRxlVolume(const char *volume) {
  errno = 0;
  char *const argv[] = {const_cast<char *>("rxlcon"), const_cast<char *>("volume"),
                        const_cast<char *>(volume), nullptr};
  return runCommand("rxlcon", argv, nullptr);
}
