#include "state.h"

#include "text.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>
#include <unordered_set>

namespace qs {

std::string_view intern(std::string_view text) {
  static auto *pool = new std::unordered_set<std::string>();
  if (text.empty()) return {};
  return *pool->emplace(text).first;
}

namespace {

// Walks the tab-separated fields of one line without allocating.
class Fields {
public:
  explicit Fields(std::string_view line) : rest_(line) {}
  std::string_view next() {
    size_t tab = rest_.find('\t');
    std::string_view f = rest_.substr(0, tab);
    rest_ = tab == std::string_view::npos ? std::string_view() : rest_.substr(tab + 1);
    return f;
  }

private:
  std::string_view rest_;
};

Rights lettersOrNone(std::string_view s) {
  Rights r = 0;
  rightsFromLetters(s, r);
  return r;
}

std::string lettersOrDash(Rights r) {
  std::string s = rightsToLetters(r);
  return s.empty() ? "-" : s;
}

// One record of the state file or the journal, each with its line end. Paths come escaped.
void appendTrusteeRecord(std::string &out, std::string_view path, const Trustee &t) {
  out += "T\t";
  out += path;
  out += t.ad ? "\tD\t" : "\tA\t";
  out += lettersOrDash(t.rights);
  out += '\t';
  out += fieldEscape(t.id);
  out += '\t';
  out += fieldEscape(t.name);
  out += '\n';
}

void appendIrfRecord(std::string &out, std::string_view path, Rights r) {
  out += "I\t";
  out += path;
  out += '\t';
  out += lettersOrDash(r);
  out += '\n';
}

void appendUserRecord(std::string &out, const UserQuota &q) {
  out += q.ad ? "U\tD\t" : "U\tA\t";
  out += fieldEscape(q.amount) + '\t' + fieldEscape(q.used) + '\t' + fieldEscape(q.id) + '\t' +
         fieldEscape(q.name) + '\n';
}

void appendDirRecord(std::string &out, const DirQuota &q) {
  out += "Q\t" + fieldEscape(q.path) + '\t' + fieldEscape(q.amount) + '\t' + fieldEscape(q.used) +
         '\n';
}

Trustee trusteeOfFields(Fields &f) {
  Trustee t;
  t.ad = f.next() == "D";
  t.rights = lettersOrNone(f.next());
  std::string_view id = f.next(), name = f.next();
  t.id = id.find('\\') == std::string_view::npos ? intern(id) : intern(fieldUnescape(id));
  t.name = name.find('\\') == std::string_view::npos ? intern(name) : intern(fieldUnescape(name));
  return t;
}

UserQuota userOfFields(Fields &f) {
  UserQuota q;
  q.ad = f.next() == "D";
  q.amount = fieldUnescape(f.next());
  q.used = fieldUnescape(f.next());
  q.id = fieldUnescape(f.next());
  q.name = fieldUnescape(f.next());
  return q;
}

DirQuota dirOfFields(Fields &f) {
  DirQuota q;
  q.path = fieldUnescape(f.next());
  q.amount = fieldUnescape(f.next());
  q.used = fieldUnescape(f.next());
  return q;
}

}  // namespace

bool Volume::load(const std::string &file) {
  files.clear();
  users.clear();
  dirs.clear();
  index_.clear();
  indexed_ = false;
  std::string text;
  if (!readFile(file, text)) return false;
  FileEntry *last = nullptr;
  forEachStateLine(text, [&](std::string_view line) {
    Fields f(line);
    std::string_view kind = f.next();
    if (kind == "T" || kind == "I") {
      std::string_view rawPath = f.next();
      bool plain = rawPath.find('\\') == std::string_view::npos;
      if (!last || (plain ? last->path != rawPath : last->path != fieldUnescape(rawPath))) {
        files.emplace_back();
        last = &files.back();
        last->path = plain ? std::string(rawPath) : fieldUnescape(rawPath);
      }
      if (kind == "I") {
        last->irf = lettersOrNone(f.next());
        return;
      }
      last->trustees.push_back(trusteeOfFields(f));
    } else if (kind == "U") {
      users.push_back(userOfFields(f));
    } else if (kind == "Q") {
      dirs.push_back(dirOfFields(f));
    }
  });
  return true;
}

void Volume::replay(std::string_view journal) {
  const size_t keep = pending.size();
  forEachStateLine(journal, [&](std::string_view line) {
    Fields f(line);
    std::string_view kind = f.next();
    if (kind == "U") {
      setUserQuota(userOfFields(f));
      return;
    }
    if (kind == "Q") {
      setDirQuota(dirOfFields(f));
      return;
    }
    const std::string path = fieldUnescape(f.next());
    if (kind == "T") {
      setTrustee(path, trusteeOfFields(f));
    } else if (kind == "I") {
      setIrf(path, lettersOrNone(f.next()));
    } else if (kind == "X") {
      const bool adOnly = f.next() == "D";
      removeTrustees(path, fieldUnescape(f.next()), adOnly);
    }
  });
  pending.resize(keep);
}

std::string Volume::text() const {
  std::string out = "# quillsim state of volume " + name +
                    "\n# T path A|D rights id name / I path rights / U A|D amount used id "
                    "name / Q path amount used\n";
  for (const FileEntry &e : files) {
    std::string path = fieldEscape(e.path);
    for (const Trustee &t : e.trustees)
      appendTrusteeRecord(out, path, t);
    if (e.irf >= 0) appendIrfRecord(out, path, static_cast<Rights>(e.irf));
  }
  for (const UserQuota &q : users)
    appendUserRecord(out, q);
  for (const DirQuota &q : dirs)
    appendDirRecord(out, q);
  return out;
}

bool Volume::save(const std::string &file) const { return writeFileAtomic(file, text()); }

void Volume::buildIndex() {
  index_.clear();
  index_.reserve(files.size() * 2);
  for (FileEntry &e : files) {
    auto [it, added] = index_.emplace(std::string_view(e.path), &e);
    if (!added) {
      // A path listed twice in a hand-edited state file: fold the later record in.
      for (Trustee &t : e.trustees)
        it->second->trustees.push_back(std::move(t));
      e.trustees.clear();
      if (e.irf >= 0) it->second->irf = e.irf;
      e.irf = -1;
    }
  }
  indexed_ = true;
}

FileEntry *Volume::find(std::string_view path) {
  if (!indexed_) buildIndex();
  auto it = index_.find(path);
  return it == index_.end() ? nullptr : it->second;
}

FileEntry &Volume::findOrAdd(std::string_view path) {
  if (FileEntry *e = find(path)) return *e;
  files.emplace_back();
  FileEntry &e = files.back();
  e.path = std::string(path);
  index_.emplace(std::string_view(e.path), &e);
  return e;
}

void Volume::setTrustee(std::string_view path, const Trustee &t) {
  FileEntry &e = findOrAdd(path);
  appendTrusteeRecord(pending, fieldEscape(path), t);
  for (Trustee &old : e.trustees) {
    // AD trustees are one per SID; Arbor trustees one per name (and identifier, which only
    // unresolved ones carry).
    bool same =
        t.ad ? (old.ad && old.id == t.id) : (!old.ad && old.name == t.name && old.id == t.id);
    if (same) {
      old = t;
      return;
    }
  }
  e.trustees.push_back(t);
}

int Volume::removeTrustees(std::string_view path, std::string_view id, bool adOnly) {
  FileEntry *e = find(path);
  if (!e) return 0;
  // One request removes one trustee: the first that the identifier names. The plain form names
  // a trustee by its identifier; an empty identifier can only stand for a trustee whose user the
  // directory no longer resolves.
  auto it = std::find_if(e->trustees.begin(), e->trustees.end(), [&](const Trustee &t) {
    if (adOnly) return t.ad && t.id == id;
    if (id.empty()) return t.id.empty() && t.name == "Unknown(21350)";
    return t.id == id;
  });
  if (it == e->trustees.end()) return 0;
  e->trustees.erase(it);
  pending += "X\t" + fieldEscape(path) + (adOnly ? "\tD\t" : "\tA\t") + fieldEscape(id) + '\n';
  return 1;
}

void Volume::setIrf(std::string_view path, Rights r) {
  findOrAdd(path).irf = r;
  appendIrfRecord(pending, fieldEscape(path), r);
}

void Volume::setUserQuota(const UserQuota &q) {
  appendUserRecord(pending, q);
  for (UserQuota &old : users) {
    if (old.ad == q.ad && old.name == q.name) {
      old.amount = q.amount;
      old.id = q.id;
      return;
    }
  }
  users.push_back(q);
}

void Volume::setDirQuota(const DirQuota &q) {
  appendDirRecord(pending, q);
  for (DirQuota &old : dirs) {
    if (old.path == q.path) {
      old.amount = q.amount;
      return;
    }
  }
  dirs.push_back(q);
}

bool Users::knowsArbor(std::string_view name) const {
  return std::find(arbor.begin(), arbor.end(), name) != arbor.end();
}

const std::string *Users::adNameOfSid(std::string_view sid) const {
  for (const auto &[s, n] : ad)
    if (s == sid) return &n;
  return nullptr;
}

const std::string *Users::adSidOfName(std::string_view name) const {
  for (const auto &[s, n] : ad)
    if (n == name) return &s;
  return nullptr;
}

bool Users::load(const std::string &file) {
  arbor.clear();
  ad.clear();
  std::string text;
  if (!readFile(file, text)) return false;
  forEachStateLine(text, [&](std::string_view line) {
    Fields f(line);
    std::string_view kind = f.next();
    if (kind == "A") {
      arbor.push_back(fieldUnescape(f.next()));
    } else if (kind == "D") {
      std::string sid = fieldUnescape(f.next());
      ad.emplace_back(std::move(sid), fieldUnescape(f.next()));
    }
  });
  return true;
}

bool Users::save(const std::string &file) const {
  std::string out = "# quillsim known users: A arbor-name / D SID name\n";
  for (const std::string &n : arbor)
    out += "A\t" + fieldEscape(n) + '\n';
  for (const auto &[s, n] : ad)
    out += "D\t" + fieldEscape(s) + '\t' + fieldEscape(n) + '\n';
  return writeFileAtomic(file, out);
}

std::string envRoot() {
  const char *r = std::getenv("QUILLSIM_ROOT");
  return r && *r ? std::string(r) : std::string();
}

std::string simDir(const std::string &root) { return root + "/sim"; }

std::string stateFile(const std::string &root, std::string_view volume) {
  return root + "/sim/" + std::string(volume) + ".state";
}

std::string journalFile(const std::string &root, std::string_view volume) {
  return root + "/sim/" + std::string(volume) + ".journal";
}

std::string infoDir(const std::string &root, std::string_view volume) {
  return root + "/_admin/Manage_QUILL/Volume/" + std::string(volume);
}

std::vector<VolumeInfo> loadVolumes(const std::string &root) {
  std::vector<VolumeInfo> vols;
  std::string text;
  if (!readFile(root + "/sim/volumes", text)) return vols;
  forEachStateLine(text, [&](std::string_view line) {
    Fields f(line);
    VolumeInfo v;
    v.name = fieldUnescape(f.next());
    v.mount = fieldUnescape(f.next());
    v.shadow = fieldUnescape(f.next());
    vols.push_back(std::move(v));
  });
  return vols;
}

bool saveVolumes(const std::string &root, const std::vector<VolumeInfo> &vols) {
  std::string out = "# quillsim volumes: name mount-point shadow-volume\n";
  for (const VolumeInfo &v : vols)
    out += fieldEscape(v.name) + '\t' + fieldEscape(v.mount) + '\t' + fieldEscape(v.shadow) + '\n';
  return writeFileAtomic(root + "/sim/volumes", out);
}

// A mount-table field: blanks, tabs, line feeds and backslashes are written as octal escapes.
std::string mtabField(std::string_view text) {
  std::string out;
  for (char c : text) {
    switch (c) {
    case ' ': out += "\\040"; break;
    case '\t': out += "\\011"; break;
    case '\n': out += "\\012"; break;
    case '\\': out += "\\134"; break;
    default: out += c;
    }
  }
  return out;
}

std::string mtabText(const std::vector<VolumeInfo> &vols) {
  std::string out = "/dev/vda1 / ext4 rw,relatime 0 0\n"
                    "proc /proc proc rw,nosuid,nodev,noexec,relatime 0 0\n"
                    "tmpfs /run tmpfs rw,nosuid,nodev,mode=755 0 0\n";
  for (const VolumeInfo &v : vols)
    out += v.name + ' ' + mtabField(v.mount) + " quillvol rw,name=" + v.name + " 0 0\n";
  out += "admin /_admin quilladmin rw 0 0\n";
  return out;
}

}  // namespace qs
