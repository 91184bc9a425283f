// quillsim: creates and drives a sandbox of the simulated QUILL server.
#include "../core/faults.h"
#include "../core/latency.h"
#include "../core/lock.h"
#include "../core/rxl_db.h"
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

namespace {

using Args = std::vector<std::string>;

constexpr int kFail = 1;
constexpr int kUsage = 2;

std::string gRoot;

int fail(const std::string &msg) {
  std::fprintf(stderr, "quillsim: %s\n", msg.c_str());
  return kFail;
}

int usage(const char *syntax) {
  std::fprintf(stderr, "usage: quillsim %s\n", syntax);
  return kUsage;
}

// Pulls "--opt VALUE" out of args; false when the option is absent.
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

std::string relPath(std::string p) {
  if (p.empty() || p[0] != '/') p.insert(0, "/");
  return p;
}

std::string exeDir() {
  char buf[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
  if (n <= 0) return ".";
  buf[n] = '\0';
  std::string s(buf);
  return s.substr(0, s.rfind('/'));
}

bool isDir(const std::string &p) {
  struct stat st;
  return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool initialised() { return isDir(gRoot + "/sim"); }

const qs::VolumeInfo *findVolume(const std::vector<qs::VolumeInfo> &vols, const std::string &n) {
  for (const auto &v : vols)
    if (v.name == n) return &v;
  return nullptr;
}

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

int cmdFault(Args &a) {
  auto faults = qs::loadFaults(gRoot);
  const char *syntax =
      "fault refuse PATTERN VALUE DESCRIPTION [NAME] | fault no-marker [PATTERN] | "
      "fault no-result [PATTERN] | fault oversize BYTES [PATTERN] | "
      "fault read-error ERRNO [PATTERN] | fault write-error ERRNO [PATTERN] | "
      "fault rxlcon exit N|silent|signal SIG | fault list | fault clear";
  if (a.empty()) return usage(syntax);
  const std::string &k = a[0];
  if (k == "list") {
    for (const auto &f : faults)
      std::printf("%s\t%s\t%s\t%s\t%s\n", f.kind.c_str(), f.pattern.c_str(), f.value.c_str(),
                  f.description.c_str(), f.name.c_str());
    return 0;
  }
  if (k == "clear") {
    faults.clear();
  } else if (k == "refuse" && (a.size() == 4 || a.size() == 5)) {
    faults.push_back({k, a[1], a[2], a[3], a.size() == 5 ? a[4] : ""});
  } else if ((k == "no-marker" || k == "no-result") && a.size() <= 2) {
    faults.push_back({k, a.size() == 2 ? a[1] : "", "", "", ""});
  } else if (k == "oversize" && (a.size() == 2 || a.size() == 3) && qs::isDigits(a[1])) {
    faults.push_back({k, a.size() == 3 ? a[2] : "", a[1], "", ""});
  } else if ((k == "read-error" || k == "write-error") && (a.size() == 2 || a.size() == 3)) {
    if (!qs::parseErrno(a[1])) return fail("unknown errno: " + a[1]);
    faults.push_back({k, a.size() == 3 ? a[2] : "", a[1], "", ""});
  } else if (k == "rxlcon" && a.size() >= 2 &&
             ((a[1] == "silent" && a.size() == 2) ||
              ((a[1] == "exit" || a[1] == "signal") && a.size() == 3))) {
    std::erase_if(faults, [](const qs::Fault &f) { return f.kind == "rxlcon"; });
    faults.push_back({k, "", a[1], a.size() == 3 ? a[2] : "", ""});
  } else {
    return usage(syntax);
  }
  return qs::saveFaults(gRoot, faults) ? 0 : fail("cannot write the fault list");
}

int cmdFastmode(Args &a) {
  if (a.size() != 1 || (a[0] != "on" && a[0] != "off")) return usage("fastmode on|off");
  std::string f = gRoot + "/sim/fastmode";
  if (a[0] == "on") return qs::writeFileAtomic(f, "on\n") ? 0 : fail("cannot write " + f);
  ::unlink(f.c_str());
  return 0;
}

// latency [DURATION]: the wait before every reply, as a real server's round trip; alone, prints it.
int cmdLatency(Args &a) {
  const char *syntax = "latency [0|N{ns,us,ms,s}]";
  std::string f = gRoot + "/sim/latency";
  if (a.empty()) {
    std::printf("%s\n", qs::formatLatency(qs::loadLatency(gRoot)).c_str());
    return 0;
  }
  long long ns = 0;
  if (a.size() != 1) return usage(syntax);
  if (!qs::parseLatency(a[0], ns))
    return fail("bad latency: " + a[0] +
                " (0, or a whole number of ns, us, ms or s up to a minute)");
  if (ns == 0) {
    ::unlink(f.c_str());
    return 0;
  }
  return qs::writeFileAtomic(f, qs::formatLatency(ns) + "\n") ? 0 : fail("cannot write " + f);
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

// Rights of an RXL seed as the server's console writes them: upper-case letters of ACEFMRSW;
// "none" or "-" for none (made empty). A lower-case letter would be no right at all to a reader
// of the file, so it is refused rather than seeded as a trustee without rights.
bool rxlSeedRights(std::string &rights) {
  if (rights == "none" || rights == "-") {
    rights.clear();
    return true;
  }
  return !rights.empty() && rights.find_first_not_of("ACEFMRSW") == std::string::npos;
}

// rxl trustee VOL PATH NAME RIGHTS [GUID] | rxl irm VOL PATH RIGHTS | rxl show VOL
int cmdRxl(Args &a) {
  const char *syntax = "rxl trustee VOL PATH NAME RIGHTS [GUID] | rxl irm VOL PATH RIGHTS | "
                       "rxl raw VOL FILE | rxl show VOL";
  if (a.size() < 2) return usage(syntax);
  auto vols = qs::loadVolumes(gRoot);
  const qs::VolumeInfo *v = findVolume(vols, a[1]);
  if (!v) return fail("no such volume: " + a[1]);
  std::string db = qs::rxlDbPath(v->mount);
  if (a[0] == "show" && a.size() == 2) {
    std::string text;
    if (!qs::readFile(db, text)) return fail("no RXL trustee file on " + a[1]);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return 0;
  }
  if (a[0] == "raw" && a.size() == 3) {
    std::string text;
    if (!qs::readFile(a[2], text)) return fail("cannot read " + a[2]);
    qs::makeDirs(v->mount + "/._KESTREL");
    return qs::writeFileAtomic(db, text) ? 0 : fail("cannot write " + db);
  }
  auto entries = qs::loadRxlDb(db);
  qs::RxlEntry e;
  if (a[0] == "trustee" && (a.size() == 5 || a.size() == 6)) {
    e.path = a[2];
    e.name = a[3];
    e.rights = a[4];
    e.guid = a.size() == 6 ? a[5] : qs::guidOf(a[3]);
  } else if (a[0] == "irm" && a.size() == 4) {
    e.filter = true;
    e.path = a[2];
    e.rights = a[3];
  } else {
    return usage(syntax);
  }
  if (!rxlSeedRights(e.rights))
    return fail("bad RXL rights: " + e.rights +
                " (the server's console writes upper-case letters of ACEFMRSW, or none)");
  qs::setRxlEntry(entries, e);
  return qs::saveRxlDb(db, entries) ? 0 : fail("cannot write " + db);
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
