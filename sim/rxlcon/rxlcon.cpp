// rxlcon: the RXL server's console command, as far as volume checks and trustee edits go.
// It reports on its error stream, as the real console does.
#include "../core/faults.h"
#include "../core/rights.h"
#include "../core/rxl_db.h"
#include "../core/state.h"
#include "../core/text.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

const qs::VolumeInfo *findVolume(const std::vector<qs::VolumeInfo> &vols, std::string_view n) {
  for (const auto &v : vols)
    if (v.name == n) return &v;
  return nullptr;
}

// "rwf" -> "RWF"; "none" -> ""; false for letters the RXL server has no right for.
bool rxlRights(const std::string &text, std::string &out) {
  out.clear();
  if (text == "none") return true;
  for (char c : text) {
    char u = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    if (std::string_view("ACEFMRSW").find(u) == std::string_view::npos) return false;
    out += u;
  }
  return true;
}

int edit(const std::string &root, const std::vector<std::string> &a) {
  bool irm = a[0] == "irm";
  const std::string &target = a[2];
  size_t colon = target.find(':');
  if (colon == std::string::npos) {
    std::fprintf(stderr, "rxlcon: bad path %s\n", target.c_str());
    return 1;
  }
  auto vols = qs::loadVolumes(root);
  const qs::VolumeInfo *v = findVolume(vols, std::string_view(target).substr(0, colon));
  if (!v) {
    std::fprintf(stderr, "rxlcon: volume %s not found\n", target.substr(0, colon).c_str());
    return 1;
  }
  qs::RxlEntry e;
  e.filter = irm;
  e.path = target.substr(colon + 1);
  if (!irm) {
    e.name = a[3];
    e.guid = qs::guidOf(e.name);
  }
  const std::string &rights = irm ? a[3] : a[4];
  if (!rxlRights(rights, e.rights)) {
    std::fprintf(stderr, "rxlcon: invalid rights %s\n", rights.c_str());
    return 1;
  }
  std::string db = qs::rxlDbPath(v->mount);
  auto entries = qs::loadRxlDb(db);
  qs::setRxlEntry(entries, e);
  if (!qs::saveRxlDb(db, entries)) {
    std::fprintf(stderr, "rxlcon: cannot write %s\n", db.c_str());
    return 1;
  }
  std::fprintf(stderr, "%s %s: completed OK\n", irm ? "irm set" : "rights add", target.c_str());
  return 0;
}

// With QUILLSIM_RXLCON_FDS=FILE, appends to FILE one line naming the descriptors this command
// found open as it started (those its parent let it inherit), for tests of descriptor hygiene.
void reportInheritedDescriptors() {
  const char *file = std::getenv("QUILLSIM_RXLCON_FDS");
  if (!file || !*file) return;
  std::vector<int> open;
  if (DIR *dir = opendir("/proc/self/fd")) {
    while (const dirent *entry = readdir(dir)) {
      char *end = nullptr;
      const long fd = std::strtol(entry->d_name, &end, 10);
      if (end != entry->d_name && !*end && fd != dirfd(dir)) open.push_back(static_cast<int>(fd));
    }
    closedir(dir);
  }
  std::sort(open.begin(), open.end());
  std::string line = "descriptors:";
  for (int fd : open)
    line += ' ' + std::to_string(fd);
  qs::appendFile(file, line + '\n');
}

}  // namespace

int main(int argc, char **argv) {
  reportInheritedDescriptors();
  std::vector<std::string> a(argv + 1, argv + argc);
  std::string root = qs::envRoot();
  if (root.empty()) {
    std::fprintf(stderr, "rxlcon: the RXL server is not running\n");
    return 1;
  }
  std::string line = "rxlcon";
  for (const auto &s : a)
    line += ' ' + s;
  qs::appendFile(root + "/sim/rxlcon.log", line + '\n');

  for (const qs::Fault &f : qs::loadFaults(root)) {
    if (f.kind != "rxlcon") continue;
    if (f.value == "silent") return 0;
    if (f.value == "exit") return std::atoi(f.description.c_str());
    if (f.value == "signal") {
      int sig = std::atoi(f.description.c_str());
      std::signal(sig, SIG_DFL);
      ::raise(sig);
      return 128 + sig;
    }
  }

  if (a.size() == 2 && a[0] == "volume") {
    if (findVolume(qs::loadVolumes(root), a[1])) return 0;
    std::fprintf(stderr, "rxlcon: volume %s not found\n", a[1].c_str());
    return 2;
  }
  if ((a.size() == 4 && a[0] == "irm" && a[1] == "set") ||
      (a.size() == 5 && a[0] == "rights" && a[1] == "add"))
    return edit(root, a);
  std::fprintf(stderr, "usage: rxlcon volume NAME | irm set VOL:PATH RIGHTS | "
                       "rights add VOL:PATH NAME RIGHTS\n");
  return 1;
}
