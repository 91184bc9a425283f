// Benchmarks of the simulator (not part of the test suite):
//   sim_bench loop N          request loop on files.cmd (run under the simulator in fast mode)
//                             against the same loop on a plain file in /dev/shm
//   sim_bench load SMALL BIG  state loading of two volume state files, best of three each
//   sim_bench close N MOUNT   N requests in normal mode on a generated volume mounted at MOUNT,
//                             each on a command file opened and closed for it (as a -w restore
//                             does): processor time per request (run under the simulator)
#include "../core/state.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

const char kRequest[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest><trustees><addTrustee>"
    "<name>admin.corp.TREE.</name><rights><read/><write/><fileScan/></rights><fileName>/mnt/VOL1/"
    "d0001/f0001234</fileName><gemelPath/><symLink/></addTrustee></trustees></fileRequest>";

// The protocol's system calls and nothing else: lseek, write, lseek, read until 0.
double loop(int fd, long n) {
  char buf[65536];
  double t0 = now();
  for (long i = 0; i < n; ++i) {
    if (lseek(fd, 0, SEEK_SET) != 0 || write(fd, kRequest, sizeof kRequest - 1) < 0 ||
        lseek(fd, 0, SEEK_SET) != 0) {
      std::perror("loop");
      std::exit(1);
    }
    while (read(fd, buf, sizeof buf) > 0) {
    }
  }
  return now() - t0;
}

int benchLoop(long n) {
  char plainName[] = "/dev/shm/sim_bench.XXXXXX";
  int plain = mkstemp(plainName);
  int sim = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
  if (plain < 0 || sim < 0) {
    std::perror("open");
    return 1;
  }
  unlink(plainName);
  loop(plain, n / 10);  // warm up both
  loop(sim, n / 10);
  double tp = loop(plain, n), ts = loop(sim, n);
  std::printf("request loop, %ld records\n", n);
  std::printf("  plain file on tmpfs : %8.0f records/s\n", n / tp);
  std::printf("  simulator, fast mode: %8.0f records/s\n", n / ts);
  std::printf("  ratio (simulator/plain): %.2f  (must be >= 1)\n", tp / ts);
  close(plain);
  close(sim);
  return tp / ts >= 1 ? 0 : 3;
}

double cpuNow() {
  struct timespec ts;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

// Loads the file in a fresh child process, as a program under the simulator does, and returns
// the processor time the load took there.
double loadOnce(const char *file, size_t &files) {
  int fds[2];
  if (pipe(fds) != 0) return 1e9;
  pid_t pid = fork();
  if (pid == 0) {
    qs::Volume v;
    double t0 = cpuNow();
    v.load(file);
    double result[2] = {cpuNow() - t0, static_cast<double>(v.files.size())};
    ssize_t n = write(fds[1], result, sizeof result);
    _exit(n == sizeof result ? 0 : 1);
  }
  close(fds[1]);
  double result[2] = {1e9, 0};
  if (read(fds[0], result, sizeof result) != sizeof result) result[0] = 1e9;
  close(fds[0]);
  waitpid(pid, nullptr, 0);
  files = static_cast<size_t>(result[1]);
  return result[0];
}

// Both sizes are loaded in turn, five times, so that both see the same machine; the best
// processor time of each counts.
int benchLoad(const char *small, const char *big) {
  size_t ns = 0, nb = 0;
  double ts = 1e9, tb = 1e9;
  for (int i = 0; i < 5; ++i) {
    ts = std::min(ts, loadOnce(small, ns));
    tb = std::min(tb, loadOnce(big, nb));
  }
  std::printf("state loading (best processor time of 5)\n");
  std::printf("  %8zu files: %.3f s\n", ns, ts);
  std::printf("  %8zu files: %.3f s\n", nb, tb);
  std::printf("  ratio: %.2f for %.0fx the files  (must be <= 12)\n", tb / ts,
              static_cast<double>(nb) / static_cast<double>(ns));
  return tb / ts <= 12 ? 0 : 3;
}

// One request per opening of files.cmd, each a trustee on a file of a generated volume; the
// first opening (which reads the volume's state) is not counted.
int benchClose(long n, const char *mount) {
  char request[1024], reply[4096];
  double t0 = 0;
  for (long i = 0; i <= n; ++i) {
    if (i == 1) t0 = cpuNow();
    int len = std::snprintf(request, sizeof request,
                            "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                            "<trustees><addTrustee><name>admin.corp.TREE.</name><rights><read/>"
                            "</rights><fileName>%s/d%04ld/f%07ld</fileName><symLink/></addTrustee>"
                            "</trustees></fileRequest>",
                            mount, i / 1000, i);
    int fd = open("/_admin/Manage_QUILL/files.cmd", O_RDWR);
    ssize_t got = 0, r;
    if (fd < 0 || write(fd, request, static_cast<size_t>(len)) != len ||
        lseek(fd, 0, SEEK_SET) != 0) {
      std::perror("close bench");
      return 1;
    }
    while ((r = read(fd, reply + got, sizeof reply - 1 - static_cast<size_t>(got))) > 0)
      got += r;
    close(fd);
    reply[got] = '\0';
    if (!std::strstr(reply, "value=\"0\"")) {
      std::fprintf(stderr, "close bench: request refused: %s\n", reply);
      return 1;
    }
  }
  double t = cpuNow() - t0;
  std::printf("  %s: %ld requests, %.1f us of processor time each\n", mount, n, t / n * 1e6);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc == 4 && std::strcmp(argv[1], "close") == 0)
    return benchClose(std::atol(argv[2]), argv[3]);
  if (argc == 3 && std::strcmp(argv[1], "loop") == 0) return benchLoop(std::atol(argv[2]));
  if (argc == 4 && std::strcmp(argv[1], "load") == 0) return benchLoad(argv[2], argv[3]);
  std::fprintf(stderr, "usage: sim_bench loop N | sim_bench load SMALL.state BIG.state | "
                       "sim_bench close N MOUNT\n");
  return 2;
}
