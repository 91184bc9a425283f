// The server's copies of the volumes: brought up to date with other clients' journal records
// before a request is applied, and the request's changes appended to the journal after it.
#include "server.h"

#include "text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qs {

namespace {
// A journal grows to this size at least before it is folded into the state file.
constexpr off_t kCompactAtLeast = 1 << 20;
}  // namespace

Volume *Server::volume(std::string_view name) {
  const VolumeInfo *info = nullptr;
  for (const VolumeInfo &v : list_)
    if (v.name == name) info = &v;
  if (!info) return nullptr;
  const std::string key(name);
  Loaded &l = volumes_[key];
  const std::string file = stateFile(root_, name);
  Stamp now;
  struct stat st;
  if (::stat(file.c_str(), &st) == 0) now = {st.st_ino, st.st_mtim, st.st_size};
  if (!l.vol || !(now == l.state)) {
    // First use, or the state file was rewritten (by quillsim or a compaction): read it whole;
    // the journal is then read from its start.
    l.vol = std::make_unique<Volume>();
    l.vol->load(file);
    ++stateLoads_;
    l.state = now;
    l.journalIno = 0;
    l.journalRead = 0;
  }
  catchUp(key, l);
  l.vol->name = info->name;
  l.vol->mount = info->mount;
  l.vol->shadow = info->shadow;
  return l.vol.get();
}

void Server::catchUp(const std::string &name, Loaded &l) {
  const std::string file = journalFile(root_, name);
  int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return;
  struct stat st;
  if (::fstat(fd, &st) == 0 && (st.st_ino != l.journalIno || st.st_size != l.journalRead)) {
    if (l.journalRead > 0 && (st.st_ino != l.journalIno || st.st_size < l.journalRead)) {
      // Not the journal this copy was following: start again from the state file.
      l.vol->load(stateFile(root_, name));
      ++stateLoads_;
      l.journalRead = 0;
    }
    std::string tail;
    tail.resize(static_cast<size_t>(st.st_size - l.journalRead));
    ssize_t n = ::pread(fd, tail.data(), tail.size(), l.journalRead);
    tail.resize(n > 0 ? static_cast<size_t>(n) : 0);
    // Records are appended whole under the lock; a partial last line is left for later.
    tail.resize(tail.rfind('\n') == std::string::npos ? 0 : tail.rfind('\n') + 1);
    l.vol->replay(tail);
    l.journalIno = st.st_ino;
    l.journalRead += static_cast<off_t>(tail.size());
  }
  ::close(fd);
}

void Server::commit() {
  for (auto &[name, l] : volumes_) {
    if (!l.vol || l.vol->pending.empty()) continue;
    const std::string file = journalFile(root_, name);
    int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd >= 0) {
      writeAll(fd, l.vol->pending);
      struct stat st;
      if (::fstat(fd, &st) == 0) {
        l.journalIno = st.st_ino;
        l.journalRead = st.st_size;
      }
      ::close(fd);
    }
    l.vol->pending.clear();
    invalidateInfo(root_, name);
    if (l.journalRead > kCompactAtLeast && l.journalRead > l.state.size) compact(name, l);
  }
}

void Server::compact(const std::string &name, Loaded &l) {
  const std::string file = stateFile(root_, name);
  if (!l.vol->save(file)) return;
  ::unlink(journalFile(root_, name).c_str());
  struct stat st;
  if (::stat(file.c_str(), &st) == 0) l.state = {st.st_ino, st.st_mtim, st.st_size};
  l.journalIno = 0;
  l.journalRead = 0;
}

void Server::flush() {
  bool any = false;
  for (auto &[name, l] : volumes_)
    any = any || (l.vol && !l.vol->pending.empty());
  if (!any) return;
  Locked held(lock_);
  commit();
}

}  // namespace qs
