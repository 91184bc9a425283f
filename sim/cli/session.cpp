// quillsim commands for working inside a sandbox: its environment, running a command in it, and
// the logs of what its programs did.
#include "cli.h"

#include "../core/text.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace qscli {

namespace {

std::string exeDir() {
  char buf[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
  if (n <= 0) return ".";
  buf[n] = '\0';
  std::string s(buf);
  return s.substr(0, s.rfind('/'));
}

// Replaces every occurrence of the sandbox path, so that logs read the same in every sandbox.
std::string replaceRoot(std::string text, const std::string &with) {
  for (size_t p = 0; (p = text.find(gRoot, p)) != std::string::npos; p += with.size())
    text.replace(p, gRoot.size(), with);
  return text;
}

// What programs of the sandbox left behind: the descriptors they held on simulated files when
// they ended (sim/leaks.log), then each file they made in /tmp that still exists, once.
std::string leftovers() {
  std::string text, made;
  qs::readFile(gRoot + "/sim/leaks.log", text);
  qs::readFile(gRoot + "/sim/tmpfiles.log", made);
  std::vector<std::string> seen;
  size_t pos = 0;
  while (pos < made.size()) {
    size_t nl = made.find('\n', pos);
    std::string line = made.substr(pos, nl - pos);
    pos = nl == std::string::npos ? made.size() : nl + 1;
    size_t space = line.find(' ');
    if (space == std::string::npos) continue;
    std::string file = line.substr(space + 1);
    struct stat st;
    if (std::find(seen.begin(), seen.end(), file) != seen.end() || ::lstat(file.c_str(), &st) != 0)
      continue;
    seen.push_back(file);
    text += line.substr(0, space) + ": temporary file " + file + " left behind\n";
  }
  return text;
}

}  // namespace

int cmdLog(Args &a) {
  const char *usageText = "log [--rxl|--replies|--leaks] [--root-as TEXT] [--clear]";
  std::string rootAs;
  bool replace = takeOption(a, "--root-as", rootAs);
  bool clear = takeFlag(a, "--clear");
  std::vector<std::string> files = {"requests.log"};
  bool leaks = false;
  if (takeFlag(a, "--rxl"))
    files = {"rxlcon.log"};
  else if (takeFlag(a, "--replies"))
    files = {"replies.log"};
  else if (takeFlag(a, "--leaks")) {
    files = {"leaks.log", "tmpfiles.log"};
    leaks = true;
  }
  if (!a.empty()) return usage(usageText);
  if (clear) {
    for (const std::string &file : files)
      ::unlink((gRoot + "/sim/" + file).c_str());
    return 0;
  }
  std::string text;
  if (leaks)
    text = leftovers();
  else
    qs::readFile(gRoot + "/sim/" + files[0], text);
  if (replace) text = replaceRoot(std::move(text), rootAs);
  std::fwrite(text.data(), 1, text.size(), stdout);
  return 0;
}

namespace {

std::string shellQuote(const std::string &s) {
  std::string out = "'";
  for (char c : s)
    out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

// Prepends item to a colon-separated list unless it is already there.
std::string prepend(const std::string &item, const char *list) {
  std::string l = list ? list : "";
  if ((":" + l + ":").find(":" + item + ":") != std::string::npos) return l;
  return l.empty() ? item : item + ":" + l;
}

struct SimEnv {
  std::string preload, path, libs, asan;
};

SimEnv simEnv() {
  std::string dir = exeDir();
  SimEnv e;
  std::string lib = dir + "/libquillsim.so";
  e.preload = prepend(lib, std::getenv("LD_PRELOAD"));
#ifdef QUILLSIM_ASAN_RUNTIME
  e.preload = prepend(QUILLSIM_ASAN_RUNTIME, e.preload.c_str());
#endif
  // Run from a build tree (quillsim in <tree>/sim), the tree's own trovan and trovanctl come
  // first too, so that the commands of a sandbox are the ones just built.
  std::string path = std::getenv("PATH") ? std::getenv("PATH") : "";
  std::string tree = dir.substr(0, dir.rfind('/'));
  if (dir.ends_with("/sim") && (::access((tree + "/trovan").c_str(), X_OK) == 0 ||
                                ::access((tree + "/trovanctl").c_str(), X_OK) == 0))
    path = prepend(tree, path.c_str());
  e.path = prepend(dir + "/bin", path.c_str());
  e.libs = prepend(dir + "/lumo", std::getenv("LD_LIBRARY_PATH"));
  const char *asan = std::getenv("ASAN_OPTIONS");
  std::string opts = asan ? asan : "";
  if (opts.find("verify_asan_link_order") == std::string::npos)
    opts = opts.empty() ? "verify_asan_link_order=0" : "verify_asan_link_order=0:" + opts;
  e.asan = opts;
  return e;
}

}  // namespace

int cmdEnv(Args &a) {
  if (!a.empty()) return usage("env");
  SimEnv e = simEnv();
  std::printf("export QUILLSIM_ROOT=%s\n", shellQuote(gRoot).c_str());
  std::printf("export LD_PRELOAD=%s\n", shellQuote(e.preload).c_str());
  std::printf("export LD_LIBRARY_PATH=%s\n", shellQuote(e.libs).c_str());
  std::printf("export PATH=%s\n", shellQuote(e.path).c_str());
  std::printf("export ASAN_OPTIONS=%s\n", shellQuote(e.asan).c_str());
  return 0;
}

int cmdExec(Args &a) {
  if (!a.empty() && a[0] == "--") a.erase(a.begin());
  if (a.empty()) return usage("exec -- CMD [ARGS...]");
  SimEnv e = simEnv();
  setenv("QUILLSIM_ROOT", gRoot.c_str(), 1);
  setenv("LD_PRELOAD", e.preload.c_str(), 1);
  setenv("LD_LIBRARY_PATH", e.libs.c_str(), 1);
  setenv("PATH", e.path.c_str(), 1);
  setenv("ASAN_OPTIONS", e.asan.c_str(), 1);
  std::vector<char *> argv;
  for (auto &s : a)
    argv.push_back(s.data());
  argv.push_back(nullptr);
  std::fflush(nullptr);
  execvp(argv[0], argv.data());
  std::fprintf(stderr, "quillsim: cannot run %s: %s\n", argv[0], std::strerror(errno));
  return 127;
}

}  // namespace qscli
