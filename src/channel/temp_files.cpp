#include "channel/temp_files.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

constexpr int kKinds = 2;
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// The names are written before they are marked in use, so the handler only ever sees a whole
// name. Only unlink() is called with them there: it is safe in a signal handler.
char names[kKinds][kTempFileNameSize];
volatile sig_atomic_t inUse[kKinds];

void removeAndEnd(int signalNumber) {
  removeRememberedTempFiles();
  // Ends the process by the same signal: the caller sees the status it would have seen.
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  sigemptyset(&standard.sa_mask);
  sigaction(signalNumber, &standard, nullptr);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signalNumber);
  sigprocmask(SIG_UNBLOCK, &only, nullptr);
  raise(signalNumber);
}

}  // namespace

void rememberTempFile(TempFile kind, const char *name) {
  const int slot = static_cast<int>(kind);
  inUse[slot] = 0;
  std::strncpy(names[slot], name, kTempFileNameSize - 1);
  names[slot][kTempFileNameSize - 1] = '\0';
  inUse[slot] = 1;
}

void forgetTempFile(TempFile kind) { inUse[static_cast<int>(kind)] = 0; }

void removeRememberedTempFiles() {
  const int savedErrno = errno;
  for (int slot = 0; slot < kKinds; ++slot)
    if (inUse[slot]) unlink(names[slot]);
  errno = savedErrno;
}

void removeTempFilesOnSignal() {
  for (const int signalNumber : kSignals) {
    struct sigaction previous {};
    // A signal the run was started with ignored (nohup) stays ignored.
    if (sigaction(signalNumber, nullptr, &previous) != 0 || previous.sa_handler == SIG_IGN)
      continue;
    struct sigaction handler {};
    handler.sa_handler = removeAndEnd;
    sigemptyset(&handler.sa_mask);
    for (const int other : kSignals)
      sigaddset(&handler.sa_mask, other);
    sigaction(signalNumber, &handler, nullptr);
  }
}
