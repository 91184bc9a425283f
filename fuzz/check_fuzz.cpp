// Metadata documents through the whole of `trovanctl check`, run as the program runs it: the
// strict reader and its findings, the server-safety rules, and trovan's own restore in a child
// process with its requests set against the document. Nothing may crash, hang or leak, whatever
// the input. The first input byte chooses the restore options; the rest is the document.
//
//   scripts/fuzz_smoke.sh, or scripts/fuzz_long.sh 300s check, or after a fuzz build:
//   build/fuzz/fuzz/check_fuzz -max_total_time=60 fuzz/corpus/check
//
// A sanitizer report inside the restore child (whose standard error is /dev/null) saves the
// input as a crash from the child while the check itself goes on; to read the report, rerun the
// input with UBSAN_OPTIONS=log_path=/tmp/ubsan and ASAN_OPTIONS=log_path=/tmp/asan.
#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "ctl/program.h"
#include "model_support.h"

namespace {

// In a restore child, the fuzzer's handlers of fatal signals would take trovan's own abort (a
// path too long for it) for a crash of the target and save the input: the child gets the
// system's handling back, as in trovanctl. And it outlives no fuzzer process: when a hang makes
// libFuzzer end its process, the child goes with it (and one left on its own ends in a minute).
void boundChild() {
  for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGALRM, SIGINT, SIGTERM})
    std::signal(signal, SIG_DFL);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  alarm(60);
}

// The command line the settings byte chooses.
std::vector<std::string> checkArguments(std::uint8_t settings, const std::string &document) {
  std::vector<std::string> arguments = {"trovanctl", "check"};
  if (settings & 1) arguments.push_back("-k");
  if (settings & 2) arguments.insert(arguments.end(), {"-t", "NEWTREE"});
  if ((settings >> 2 & 3) == 1) arguments.insert(arguments.end(), {"-u", "arbor"});
  // -n runs no restore (its console path is only read), so it is chosen less often; it has no
  // AD users (-u ad with -n is a usage error).
  const bool rxl = (settings >> 4 & 3) == 3;
  if ((settings >> 2 & 3) == 2 && !rxl) arguments.insert(arguments.end(), {"-u", "ad"});
  if (rxl) arguments.push_back("-n");
  if ((settings >> 4 & 3) == 1) arguments.insert(arguments.end(), {"-f", "^/mnt/VOLUME/a"});
  if ((settings >> 4 & 3) == 2) arguments.insert(arguments.end(), {"-m", "tu"});
  if (settings & 64) arguments.insert(arguments.end(), {"--volume", "VOL1"});
  if (settings & 128) arguments.push_back("--json");
  arguments.push_back(document);
  return arguments;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  pthread_atfork(nullptr, nullptr, boundChild);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const BytesFd document(std::string_view(reinterpret_cast<const char *>(data) + 1, size - 1));
  std::vector<std::string> arguments =
      checkArguments(data[0], "/proc/self/fd/" + std::to_string(document.fd()));
  std::vector<char *> argv;
  for (std::string &argument : arguments)
    argv.push_back(argument.data());
  argv.push_back(nullptr);
  const int status = runTrovanctl(static_cast<int>(arguments.size()), argv.data());
  // Findings or none; a check of a document is never a usage error or a fatal one.
  if (status != 0 && status != 1) std::abort();
  return 0;
}
