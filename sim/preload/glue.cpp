// The simulator inside a program: path redirection into the sandbox and the command files.
#include "glue.h"

#include "../core/server.h"
#include "../core/text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>

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
  if (!file || !*file)
    return;
  std::string line = std::string(what) + ' ' + std::string(detail) + '\n';
  qs::appendFile(file, line);
}

constexpr std::string_view kAdmin = "/_admin";
constexpr std::string_view kMtab = "/etc/mtab";
constexpr std::string_view kVolumeDir = "/_admin/Manage_QUILL/Volume/";

bool isRedirected(std::string_view p) {
  if (p.starts_with(kAdmin))
    return p.size() == kAdmin.size() || p[kAdmin.size()] == '/';
  return p == kMtab;
}

// An info file is generated from the volume's state when it is first looked at after a change.
void prepareInfo(std::string_view p) {
  if (!p.starts_with(kVolumeDir))
    return;
  std::string_view rest = p.substr(kVolumeDir.size());
  size_t slash = rest.find('/');
  if (slash == std::string_view::npos)
    return;
  std::string_view vol = rest.substr(0, slash), file = rest.substr(slash + 1);
  if (file == "TrusteeInfo.xml" || file == "UserInfo.xml" || file == "DirInfo.xml") {
    const unsigned long loads = server().stateLoads();
    server().prepareInfoFile(vol, file);
    if (server().stateLoads() != loads)
      debugLog("load", vol);
  }
}

// Runs a request that was written but not yet answered.
void answer(Channel &c) {
  if (!c.pending)
    return;
  c.pending = false;
  ErrnoGuard keep;
  c.reply = server().handle(c.file, c.request);
}

void release(int fd) {
  Channel *c = channels[fd];
  channels[fd] = nullptr;
  qs_fd_kind[fd] = 0;
  if (!c)
    return;
  answer(*c);
  if (--c->refs == 0) {
    delete c;
    ErrnoGuard keep;
    if (!server().fast())
      server().flush();
  }
}

__attribute__((destructor)) void writeBack() {
  if (root().empty())
    return;
  ErrnoGuard keep;
  for (int fd = 0; fd < QS_MAX_FD; ++fd)
    if (channels[fd])
      answer(*channels[fd]);
  server().flush();
}

} // namespace

extern "C" const char *qs_redirect(const char *path, char *buf, size_t size) {
  if (!path || path[0] != '/')
    return path;
  std::string_view p(path);
  if (!isRedirected(p))
    return path;
  const std::string &r = root();
  if (r.empty())
    return path;
  if (r.size() + p.size() + 1 > size) {
    errno = ENAMETOOLONG;
    return nullptr;
  }
  std::memcpy(buf, r.data(), r.size());
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
  if (fd >= QS_MAX_FD)
    return;
  if (channels[fd])
    release(fd);
  channels[fd] = new Channel{file, {}, {}, 0, false, 1};
  qs_fd_kind[fd] = 1;
}

extern "C" ssize_t qs_write(int fd, const void *buf, size_t count) {
  Channel &c = *channels[fd];
  std::string_view data(static_cast<const char *>(buf), count);
  if (!server().fast()) {
    ErrnoGuard keep;
    keep.saved = server().writeFault(data);
    if (keep.saved)
      return -1;
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
    if (keep.saved)
      return -1;
    keep.saved = errno;
  }
  if (offset < 0) {
    errno = EINVAL;
    return -1;
  }
  size_t at = static_cast<size_t>(offset);
  if (at >= c.reply.size())
    return 0;
  size_t n = std::min(count, c.reply.size() - at);
  std::memcpy(buf, c.reply.data() + at, n);
  return static_cast<ssize_t>(n);
}

extern "C" ssize_t qs_read(int fd, void *buf, size_t count) {
  Channel &c = *channels[fd];
  ssize_t n = qs_pread(fd, buf, count, c.pos);
  if (n > 0)
    c.pos += n;
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

extern "C" void qs_duped(int oldfd, int newfd) {
  if (newfd < 0 || newfd >= QS_MAX_FD || !channels[oldfd])
    return;
  if (channels[newfd])
    release(newfd);
  channels[newfd] = channels[oldfd];
  channels[newfd]->refs++;
  qs_fd_kind[newfd] = 1;
}
