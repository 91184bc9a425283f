// The simulator inside a program: path redirection into the sandbox and the command files.
#include "glue.h"

#include "../core/server.h"
#include "../core/text.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

unsigned char qs_fd_kind[QS_MAX_FD];

namespace {

using qs::CmdFile;

// errno as the program last saw it, put back whatever the simulator's own calls did.
struct ErrnoGuard {
  int saved = errno;
  ~ErrnoGuard() { errno = saved; }
};

// Open descriptions of command files; dup'ed descriptors share one.
struct Channel {
  CmdFile file;
  std::string request;
  std::string reply;
  off_t pos = 0;
  bool pending = false;
  int refs = 1;
};

Channel *channels[QS_MAX_FD];

// The sandbox root, read once; empty when the simulator is off.
const std::string &root() {
  static const std::string *r = new std::string(qs::envRoot());
  return *r;
}

qs::Server &server() {
  static qs::Server *s = new qs::Server(root());
  return *s;
}

void debugLog(const char *what, std::string_view detail) {
  static const char *file = std::getenv("QUILLSIM_DEBUG");
  if (!file || !*file) return;
  std::string line = std::string(what) + ' ' + std::string(detail) + '\n';
  qs::appendFile(file, line);
}

constexpr std::string_view kAdmin = "/_admin";
constexpr std::string_view kMtab = "/etc/mtab";
constexpr std::string_view kVolumeDir = "/_admin/Manage_QUILL/Volume/";

bool isRedirected(std::string_view p) {
  if (p.starts_with(kAdmin)) return p.size() == kAdmin.size() || p[kAdmin.size()] == '/';
  return p == kMtab;
}

// An info file is generated from the volume's state when it is first looked at after a change.
void prepareInfo(std::string_view p) {
  if (!p.starts_with(kVolumeDir)) return;
  std::string_view rest = p.substr(kVolumeDir.size());
  size_t slash = rest.find('/');
  if (slash == std::string_view::npos) return;
  std::string_view vol = rest.substr(0, slash), file = rest.substr(slash + 1);
  if (file == "TrusteeInfo.xml" || file == "UserInfo.xml" || file == "DirInfo.xml") {
    const unsigned long loads = server().stateLoads();
    server().prepareInfoFile(vol, file);
    if (server().stateLoads() != loads) debugLog("load", vol);
  }
}

// Runs a request that was written but not yet answered.
void answer(Channel &c) {
  if (!c.pending) return;
  c.pending = false;
  ErrnoGuard keep;
  c.reply = server().handle(c.file, c.request);
}

void release(int fd) {
  Channel *c = channels[fd];
  channels[fd] = nullptr;
  qs_fd_kind[fd] = 0;
  if (!c) return;
  answer(*c);
  if (--c->refs == 0) {
    delete c;
    ErrnoGuard keep;
    if (!server().fast()) server().flush();
  }
}

// "program[pid]", the way resource records name the process that left something behind.
std::string processLabel() {
  return std::string(program_invocation_short_name) + '[' + std::to_string(getpid()) + ']';
}

// Records, one line each in sim/leaks.log, the descriptors the program still holds on simulated
// admin files (command files, info files, their directories) or on the mount table as it ends.
// Descriptor 0 is left out: standard input may be left holding an info file on purpose (invalid
// trustee removal reads one through it), and a command file opened while standard input was
// closed gets descriptor 0, which the program treats as "none" and never closes. Streams count
// through their descriptors.
void recordOpenDescriptors() {
  char resolved[PATH_MAX];
  if (!realpath(root().c_str(), resolved)) return;
  const std::string_view base(resolved);
  DIR *dir = opendir("/proc/self/fd");
  if (!dir) return;
  std::string lines;
  while (const dirent *entry = readdir(dir)) {
    char *end = nullptr;
    const long fd = std::strtol(entry->d_name, &end, 10);
    if (end == entry->d_name || *end || fd <= 0 || fd == dirfd(dir)) continue;
    const std::string link = std::string("/proc/self/fd/") + entry->d_name;
    char target[PATH_MAX];
    const ssize_t n = readlink(link.c_str(), target, sizeof target);
    if (n <= 0 || static_cast<size_t>(n) >= sizeof target) continue;
    std::string_view path(target, static_cast<size_t>(n));
    if (!path.starts_with(base) || !isRedirected(path.substr(base.size()))) continue;
    lines += processLabel() + ": descriptor " + std::to_string(fd) + " left open on " +
             std::string(path.substr(base.size())) + '\n';
  }
  closedir(dir);
  if (!lines.empty()) qs::appendFile(root() + "/sim/leaks.log", lines);
}

__attribute__((destructor)) void writeBack() {
  if (root().empty()) return;
  ErrnoGuard keep;
  recordOpenDescriptors();
  for (int fd = 0; fd < QS_MAX_FD; ++fd)
    if (channels[fd]) answer(*channels[fd]);
  server().flush();
}

}  // namespace

extern "C" const char *qs_redirect(const char *path, char *buf, size_t size) {
  if (!path || path[0] != '/') return path;
  std::string_view p(path);
  if (!isRedirected(p)) return path;
  const std::string &r = root();
  if (r.empty()) return path;
  if (r.size() + p.size() + 1 > size) {
    errno = ENAMETOOLONG;
    return nullptr;
  }
  r.copy(buf, r.size());
  std::memcpy(buf + r.size(), path, p.size() + 1);
  {
    ErrnoGuard keep;
    debugLog("redirect", p);
    prepareInfo(p);
  }
  return buf;
}

extern "C" void qs_opened(int fd, const char *path) {
  std::string_view p(path);
  CmdFile file;
  if (p == "/_admin/Manage_QUILL/files.cmd")
    file = CmdFile::files;
  else if (p == "/_admin/Manage_QUILL/manage.cmd")
    file = CmdFile::manage;
  else
    return;
  if (fd >= QS_MAX_FD) return;
  if (channels[fd]) release(fd);
  channels[fd] = new Channel{file, {}, {}, 0, false, 1};
  qs_fd_kind[fd] = 1;
}

extern "C" ssize_t qs_write(int fd, const void *buf, size_t count) {
  Channel &c = *channels[fd];
  std::string_view data(static_cast<const char *>(buf), count);
  if (!server().fast()) {
    ErrnoGuard keep;
    keep.saved = server().writeFault(data);
    if (keep.saved) return -1;
    keep.saved = errno;
  }
  if (c.pos == 0 || !c.pending)
    c.request.assign(data);
  else {
    c.request.resize(static_cast<size_t>(c.pos));
    c.request.append(data);
  }
  c.pos = static_cast<off_t>(c.request.size());
  c.pending = true;
  return static_cast<ssize_t>(count);
}

extern "C" ssize_t qs_pwrite(int fd, const void *buf, size_t count, off_t offset) {
  Channel &c = *channels[fd];
  off_t saved = c.pos;
  c.pos = offset;
  ssize_t n = qs_write(fd, buf, count);
  c.pos = saved;
  return n;
}

extern "C" ssize_t qs_pread(int fd, void *buf, size_t count, off_t offset) {
  Channel &c = *channels[fd];
  answer(c);
  if (!server().fast()) {
    ErrnoGuard keep;
    keep.saved = server().readFault(c.request);
    if (keep.saved) return -1;
    keep.saved = errno;
  }
  if (offset < 0) {
    errno = EINVAL;
    return -1;
  }
  size_t at = static_cast<size_t>(offset);
  if (at >= c.reply.size()) return 0;
  size_t n = std::min(count, c.reply.size() - at);
  std::memcpy(buf, c.reply.data() + at, n);
  return static_cast<ssize_t>(n);
}

extern "C" ssize_t qs_read(int fd, void *buf, size_t count) {
  Channel &c = *channels[fd];
  ssize_t n = qs_pread(fd, buf, count, c.pos);
  if (n > 0) c.pos += n;
  return n;
}

extern "C" off_t qs_lseek(int fd, off_t offset, int whence) {
  Channel &c = *channels[fd];
  answer(c);
  off_t base = whence == SEEK_SET   ? 0
               : whence == SEEK_CUR ? c.pos
               : whence == SEEK_END ? static_cast<off_t>(c.reply.size())
                                    : -1;
  if (base < 0 || base + offset < 0) {
    errno = EINVAL;
    return -1;
  }
  c.pos = base + offset;
  return c.pos;
}

extern "C" void qs_closing(int fd) { release(fd); }

extern "C" void qs_created(const char *path) {
  constexpr std::string_view kTmp = "/tmp/";
  static bool busy = false;  // the record is written through the library's own open
  if (busy || !path) return;
  std::string_view p(path);
  if (!p.starts_with(kTmp) || p.size() == kTmp.size() ||
      p.find('/', kTmp.size()) != std::string_view::npos || root().empty())
    return;
  ErrnoGuard keep;
  busy = true;
  qs::appendFile(root() + "/sim/tmpfiles.log", processLabel() + ' ' + std::string(p) + '\n');
  busy = false;
}

extern "C" void qs_duped(int oldfd, int newfd) {
  if (newfd < 0 || newfd >= QS_MAX_FD || !channels[oldfd]) return;
  if (channels[newfd]) release(newfd);
  channels[newfd] = channels[oldfd];
  channels[newfd]->refs++;
  qs_fd_kind[newfd] = 1;
}
