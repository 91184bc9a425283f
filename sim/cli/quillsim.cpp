// quillsim: creates and drives a sandbox of the simulated QUILL server.
#include "cli.h"

#include "../core/lock.h"
#include "../core/state.h"
#include "../core/text.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace qscli {

std::string gRoot;

int fail(const std::string &msg) {
  std::fprintf(stderr, "quillsim: %s\n", msg.c_str());
  return kFail;
}

int usage(const char *syntax) {
  std::fprintf(stderr, "usage: quillsim %s\n", syntax);
  return kUsage;
}

bool takeOption(Args &args, const std::string &opt, std::string &value) {
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == opt && i + 1 < args.size()) {
      value = args[i + 1];
      args.erase(args.begin() + static_cast<long>(i), args.begin() + static_cast<long>(i) + 2);
      return true;
    }
  }
  return false;
}

bool takeFlag(Args &args, const std::string &flag) {
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == flag) {
      args.erase(args.begin() + static_cast<long>(i));
      return true;
    }
  }
  return false;
}

const qs::VolumeInfo *findVolume(const std::vector<qs::VolumeInfo> &vols, const std::string &n) {
  for (const auto &v : vols)
    if (v.name == n) return &v;
  return nullptr;
}

}  // namespace qscli

namespace {

using namespace qscli;

std::string relPath(std::string p) {
  if (p.empty() || p[0] != '/') p.insert(0, "/");
  return p;
}

bool isDir(const std::string &p) {
  struct stat st;
  return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool initialised() { return isDir(gRoot + "/sim"); }

// A volume's whole state: its state file with its journal replayed. The caller holds the lock.
void loadCurrent(qs::Volume &v) {
  v.load(qs::stateFile(gRoot, v.name));
  std::string journal;
  if (qs::readFile(qs::journalFile(gRoot, v.name), journal)) v.replay(journal);
}

// Writes a volume's whole state and drops the journal it now holds. The caller holds the lock.
bool storeCurrent(const std::string &name, std::string_view text) {
  if (!qs::writeFileAtomic(qs::stateFile(gRoot, name), text)) return false;
  ::unlink(qs::journalFile(gRoot, name).c_str());
  qs::invalidateInfo(gRoot, name);
  return true;
}

// Loads, changes and saves one volume's state, under the sandbox's lock, so that a program
// changing the volume at the same time loses nothing and is not lost.
template <typename F> int withVolume(const std::string &name, F change) {
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *info = findVolume(vols, name);
  if (!info) return fail("no such volume: " + name);
  qs::StateLock lock(gRoot);
  qs::Locked held(lock);
  qs::Volume v;
  v.name = info->name;
  v.mount = info->mount;
  v.shadow = info->shadow;
  loadCurrent(v);
  if (int rc = change(v)) return rc;
  if (!storeCurrent(name, v.text())) return fail("cannot write the state of " + name);
  return 0;
}

bool existsOn(qs::Volume &v, const std::string &rel) {
  struct stat st;
  return ::lstat((v.mount + (rel == "/" ? "" : rel)).c_str(), &st) == 0 || v.find(rel);
}

int cmdInit(Args &) {
  for (const char *d : {"/sim", "/etc", "/mnt", "/_admin/Manage_QUILL/Volume"})
    if (!qs::makeDirs(gRoot + d))
      return fail("cannot create " + gRoot + d + ": " + std::strerror(errno));
  for (const char *f :
       {"/_admin/Manage_QUILL/files.cmd", "/_admin/Manage_QUILL/manage.cmd", "/_admin/.quillsim"}) {
    int fd = ::open((gRoot + f).c_str(), O_WRONLY | O_CREAT, 0644);
    if (fd < 0) return fail("cannot create " + gRoot + f + ": " + std::strerror(errno));
    ::close(fd);
  }
  auto vols = qs::loadVolumes(gRoot);
  qs::saveVolumes(gRoot, vols);
  if (::access((gRoot + "/sim/users").c_str(), F_OK) != 0) qs::Users{}.save(gRoot + "/sim/users");
  qs::writeFileAtomic(gRoot + "/etc/mtab", qs::mtabText(vols));
  return 0;
}

int addVolume(std::vector<qs::VolumeInfo> &vols, const std::string &name, std::string mount,
              const std::string &shadow) {
  if (name.empty() || name.find_first_of("/: \t\n") != std::string::npos)
    return fail("bad volume name: " + name);
  if (mount.empty())
    mount = gRoot + "/mnt/" + name;
  else if (mount[0] != '/')
    mount = gRoot + "/" + mount;
  while (mount.size() > 1 && mount.back() == '/')
    mount.pop_back();
  if (!mount.starts_with(gRoot + "/") || mount.find("/../") != std::string::npos)
    return fail("the mount point must lie inside the sandbox: " + mount);
  if (!qs::makeDirs(mount)) return fail("cannot create mount point " + mount);
  if (!qs::makeDirs(qs::infoDir(gRoot, name)))
    return fail("cannot create the info directory of " + name);
  qs::VolumeInfo *old = nullptr;
  for (auto &v : vols)
    if (v.name == name) old = &v;
  if (old) {
    old->mount = mount;
    if (!shadow.empty()) old->shadow = shadow;
  } else {
    vols.push_back({name, mount, shadow});
  }
  qs::invalidateInfo(gRoot, name);
  return 0;
}

int cmdVolume(Args &a) {
  if (a.size() == 1 && a[0] == "list") {
    for (const auto &v : qs::loadVolumes(gRoot))
      std::printf("%s %s%s%s\n", v.name.c_str(), v.mount.c_str(),
                  v.shadow.empty() ? "" : " shadow=", v.shadow.c_str());
    return 0;
  }
  std::string mount, shadow;
  takeOption(a, "--mount", mount);
  takeOption(a, "--shadow", shadow);
  if (a.size() != 2 || a[0] != "add")
    return usage("volume add NAME [--mount DIR] [--shadow NAME2] | volume list");
  auto vols = qs::loadVolumes(gRoot);
  if (int rc = addVolume(vols, a[1], mount, shadow)) return rc;
  if (!shadow.empty() && !findVolume(vols, shadow))
    if (int rc = addVolume(vols, shadow, "", "")) return rc;
  if (!qs::saveVolumes(gRoot, vols)) return fail("cannot write the volume list");
  qs::writeFileAtomic(gRoot + "/etc/mtab", qs::mtabText(vols));
  return 0;
}

// file add VOL PATH... creates files (and their parent directories) under the mount point;
// dir add VOL PATH... creates directories.
int cmdFile(Args &a, bool dirs) {
  if (a.size() < 3 || a[0] != "add")
    return usage(dirs ? "dir add VOL PATH..." : "file add VOL PATH...");
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *v = findVolume(vols, a[1]);
  if (!v) return fail("no such volume: " + a[1]);
  for (size_t i = 2; i < a.size(); ++i) {
    std::string full = v->mount + relPath(a[i]);
    while (full.size() > 1 && full.back() == '/')
      full.pop_back();
    bool dir = dirs || a[i].back() == '/';
    std::string parent = dir ? full : full.substr(0, full.rfind('/'));
    if (!qs::makeDirs(parent)) return fail("cannot create " + parent);
    if (!dir) {
      int fd = ::open(full.c_str(), O_WRONLY | O_CREAT, 0644);
      if (fd < 0) return fail("cannot create " + full + ": " + std::strerror(errno));
      ::close(fd);
    }
  }
  return 0;
}

int cmdUser(Args &a) {
  qs::Users users;
  users.load(gRoot + "/sim/users");
  if (a.size() == 2 && a[0] == "add") {
    if (!users.knowsArbor(a[1])) users.arbor.push_back(a[1]);
  } else if (a.size() == 3 && a[0] == "add-ad") {
    bool found = false;
    for (auto &[sid, name] : users.ad)
      if (sid == a[1]) {
        name = a[2];
        found = true;
      }
    if (!found) users.ad.emplace_back(a[1], a[2]);
  } else if (a.size() == 2 && a[0] == "del") {
    std::erase(users.arbor, a[1]);
    std::erase_if(users.ad, [&](const auto &p) { return p.first == a[1]; });
  } else if (a.size() == 1 && a[0] == "list") {
    for (const auto &n : users.arbor)
      std::printf("arbor %s\n", n.c_str());
    for (const auto &[sid, name] : users.ad)
      std::printf("ad %s %s\n", sid.c_str(), name.c_str());
    return 0;
  } else {
    return usage("user add NAME | user add-ad SID NAME | user del NAME|SID | user list");
  }
  return users.save(gRoot + "/sim/users") ? 0 : fail("cannot write the user list");
}

bool parseRights(const std::string &text, qs::Rights &r) { return qs::rightsFromLetters(text, r); }

int cmdTrustee(Args &a) {
  std::string id, name;
  takeOption(a, "--id", id);
  takeOption(a, "--name", name);
  if (a.size() != 5 || (a[0] != "add" && a[0] != "add-ad"))
    return usage("trustee add VOL PATH NAME RIGHTS [--id ID] | trustee add-ad VOL PATH SID "
                 "RIGHTS [--name NAME]");
  bool ad = a[0] == "add-ad";
  qs::Rights r;
  if (!parseRights(a[4], r)) return fail("bad rights: " + a[4]);
  qs::Trustee t;
  t.ad = ad;
  t.rights = r;
  if (ad) {
    qs::Users users;
    users.load(gRoot + "/sim/users");
    const std::string *known = users.adNameOfSid(a[3]);
    t.id = qs::intern(a[3]);
    t.name = qs::intern(!name.empty() ? name : known ? *known : "Unknown(21350)");
  } else {
    t.name = qs::intern(a[3]);
    t.id = qs::intern(id);
  }
  std::string rel = relPath(a[2]);
  return withVolume(a[1], [&](qs::Volume &v) {
    if (!existsOn(v, rel)) return fail("no such file on " + v.name + ": " + rel);
    v.setTrustee(rel, t);
    return 0;
  });
}

int cmdIrf(Args &a) {
  if (a.size() != 4 || a[0] != "set") return usage("irf set VOL PATH RIGHTS");
  qs::Rights r;
  if (!parseRights(a[3], r)) return fail("bad rights: " + a[3]);
  std::string rel = relPath(a[2]);
  return withVolume(a[1], [&](qs::Volume &v) {
    if (!existsOn(v, rel)) return fail("no such file on " + v.name + ": " + rel);
    v.setIrf(rel, r);
    return 0;
  });
}

int cmdQuota(Args &a) {
  std::string used = "0";
  takeOption(a, "--used", used);
  bool ad = takeFlag(a, "--ad");
  if (a.size() != 4 || (a[0] != "user" && a[0] != "dir"))
    return usage("quota user VOL NAME AMOUNT [--ad] [--used N] | quota dir VOL PATH AMOUNT "
                 "[--used N]");
  if (!qs::isDigits(a[3]) || !qs::isDigits(used)) return fail("bad amount: " + a[3]);
  if (a[0] == "user") {
    qs::UserQuota q;
    q.ad = ad;
    q.name = a[2];
    q.amount = a[3];
    q.used = used;
    if (ad) {
      qs::Users users;
      users.load(gRoot + "/sim/users");
      const std::string *sid = users.adSidOfName(a[2]);
      if (!sid) return fail("unknown AD user: " + a[2]);
      q.id = *sid;
    }
    return withVolume(a[1], [&](qs::Volume &v) {
      v.setUserQuota(q);
      return 0;
    });
  }
  std::string rel = relPath(a[2]);
  return withVolume(a[1], [&](qs::Volume &v) {
    if (!existsOn(v, rel)) return fail("no such directory on " + v.name + ": " + rel);
    v.setDirQuota({rel, a[3], used});
    return 0;
  });
}

// A large synthetic volume, written straight into the state file: N files in directories of
// 1000, each with one Arbor trustee, every tenth with an AD trustee and a filter.
int cmdGenerate(Args &a) {
  std::string files = "1000";
  takeOption(a, "--files", files);
  bool touch = takeFlag(a, "--touch");
  if (a.size() != 1 || !qs::isDigits(files)) return usage("generate VOL --files N [--touch]");
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *v = findVolume(vols, a[0]);
  if (!v) return fail("no such volume: " + a[0]);
  long n = std::strtol(files.c_str(), nullptr, 10);
  qs::Users users;
  users.load(gRoot + "/sim/users");
  const char *arbor = "admin.corp.TREE.";
  const char *sid = "S-1-5-21-1000-2000-3000-1104";
  if (!users.knowsArbor(arbor)) users.arbor.push_back(arbor);
  if (!users.adNameOfSid(sid)) users.ad.emplace_back(sid, "gen.user");
  users.save(gRoot + "/sim/users");
  std::string out = "# quillsim state of volume " + a[0] + " (generated)\n";
  out.reserve(static_cast<size_t>(n) * 90);
  char line[256];
  for (long i = 0; i < n; ++i) {
    char path[64];
    std::snprintf(path, sizeof path, "/d%04ld/f%07ld", i / 1000, i);
    std::snprintf(line, sizeof line, "T\t%s\tA\tRWF\t\t%s\n", path, arbor);
    out += line;
    if (i % 10 == 0) {
      std::snprintf(line, sizeof line, "T\t%s\tD\tRF\t%s\tgen.user\nI\t%s\tRWCEF\n", path, sid,
                    path);
      out += line;
    }
    if (touch) {
      std::string full = v->mount + path;
      if (i % 1000 == 0) qs::makeDirs(full.substr(0, full.rfind('/')));
      int fd = ::open(full.c_str(), O_WRONLY | O_CREAT, 0644);
      if (fd >= 0) ::close(fd);
    }
  }
  qs::StateLock lock(gRoot);
  qs::Locked held(lock);
  if (!storeCurrent(a[0], out)) return fail("cannot write the state of " + a[0]);
  return 0;
}

int cmdDump(Args &a) {
  if (a.size() != 1) return usage("dump VOL");
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *info = findVolume(vols, a[0]);
  if (!info) return fail("no such volume: " + a[0]);
  std::string text;
  {
    qs::StateLock lock(gRoot);
    qs::Locked held(lock);
    qs::Volume v;
    v.name = info->name;
    loadCurrent(v);
    text = v.text();
  }
  std::printf("volume %s mount %s%s%s\n", info->name.c_str(), info->mount.c_str(),
              info->shadow.empty() ? "" : " shadow ", info->shadow.c_str());
  size_t pos = 0;
  while (pos < text.size()) {
    size_t nl = text.find('\n', pos);
    std::string line = text.substr(pos, nl - pos);
    pos = nl == std::string::npos ? text.size() : nl + 1;
    if (!line.empty() && line[0] != '#') std::printf("%s\n", line.c_str());
  }
  return 0;
}

void help() {
  std::printf(
      "usage: quillsim [--root DIR] COMMAND [ARGS]\n"
      "  init                                     create the sandbox\n"
      "  volume add NAME [--mount DIR] [--shadow NAME2] | volume list\n"
      "  file add VOL PATH... | dir add VOL PATH...\n"
      "  user add NAME | user add-ad SID NAME | user del NAME|SID | user list\n"
      "  trustee add VOL PATH NAME RIGHTS [--id ID]\n"
      "  trustee add-ad VOL PATH SID RIGHTS [--name NAME]\n"
      "  irf set VOL PATH RIGHTS\n"
      "  quota user VOL NAME AMOUNT [--ad] [--used N] | quota dir VOL PATH AMOUNT [--used N]\n"
      "  generate VOL --files N [--touch]\n"
      "  fault refuse|no-marker|no-result|oversize|read-error|write-error|rxlcon|list|clear ...\n"
      "  fastmode on|off\n"
      "  latency [0|N{ns,us,ms,s}]                the wait before every reply (default 0)\n"
      "  rxl trustee VOL PATH NAME RIGHTS [GUID] | rxl irm VOL PATH RIGHTS | rxl raw VOL FILE "
      "| rxl show VOL\n"
      "  log [--rxl|--replies|--leaks] [--root-as TEXT] [--clear]\n"
      "  dump VOL\n"
      "  env\n"
      "  exec -- CMD [ARGS...]\n"
      "The sandbox is QUILLSIM_ROOT unless --root is given.\n");
}

}  // namespace

int main(int argc, char **argv) {
  Args args(argv + 1, argv + argc);
  std::string root;
  if (takeOption(args, "--root", root)) setenv("QUILLSIM_ROOT", root.c_str(), 1);
  if (args.empty() || args[0] == "--help" || args[0] == "help") {
    help();
    return args.empty() ? kUsage : 0;
  }
  root = qs::envRoot();
  if (root.empty()) return fail("no sandbox: set QUILLSIM_ROOT or give --root DIR");
  if (!qs::makeDirs(root)) return fail("cannot create the sandbox " + root);
  char real[PATH_MAX];
  gRoot = realpath(root.c_str(), real) ? real : root;
  std::string cmd = args[0];
  args.erase(args.begin());
  if (cmd == "init") return cmdInit(args);
  if (!initialised())
    return fail("the sandbox " + gRoot + " is not initialised (run quillsim init)");
  if (cmd == "volume") return cmdVolume(args);
  if (cmd == "file") return cmdFile(args, false);
  if (cmd == "dir") return cmdFile(args, true);
  if (cmd == "user") return cmdUser(args);
  if (cmd == "trustee") return cmdTrustee(args);
  if (cmd == "irf") return cmdIrf(args);
  if (cmd == "quota") return cmdQuota(args);
  if (cmd == "generate") return cmdGenerate(args);
  if (cmd == "fault") return cmdFault(args);
  if (cmd == "fastmode") return cmdFastmode(args);
  if (cmd == "latency") return cmdLatency(args);
  if (cmd == "log") return cmdLog(args);
  if (cmd == "dump") return cmdDump(args);
  if (cmd == "env") return cmdEnv(args);
  if (cmd == "exec") return cmdExec(args);
  if (cmd == "rxl") return cmdRxl(args);
  return fail("unknown command: " + cmd);
}
