#include "server.h"

#include "latency.h"
#include "text.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qs {

namespace {

constexpr std::string_view kFileOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";
constexpr std::string_view kFileClose = "</fileRequest>";
constexpr std::string_view kVolOpen =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
constexpr std::string_view kVolClose = "</quillRequest>";

// Result values the volume answers with.
constexpr long kNoFile = 2;     // file or directory does not exist
constexpr long kNoUser = 3;     // user unknown to the directory
constexpr long kNoVolume = 19;  // no such volume
constexpr long kNotDir = 20;    // directory quota on a file
constexpr long kBadRequest = 22;
constexpr long kNoTrustee = 61;  // nothing to remove

// A cursor over the request text that accepts the exact forms the volume understands.
struct Cursor {
  std::string_view s;
  bool ok = true;
  bool lit(std::string_view l) {
    if (ok && s.starts_with(l)) {
      s.remove_prefix(l.size());
      return true;
    }
    return false;
  }
  void need(std::string_view l) {
    if (!lit(l)) ok = false;
  }
  // The text up to the given end tag, which is consumed.
  std::string_view until(std::string_view end) {
    if (!ok) return {};
    size_t p = s.find(end);
    if (p == std::string_view::npos) {
      ok = false;
      return {};
    }
    std::string_view out = s.substr(0, p);
    s.remove_prefix(p + end.size());
    return out;
  }
  // Element text: nothing inside it may start a tag. (File names are taken with until(): a
  // path that the volume reported in a CDATA section comes back as it stands, '<' and all.)
  std::string_view text(std::string_view end) {
    std::string_view t = until(end);
    if (t.find('<') != std::string_view::npos) ok = false;
    return t;
  }
};

bool statChanged(const std::string &path, struct timespec &stamp) {
  struct stat st;
  struct timespec now {};
  if (::stat(path.c_str(), &st) == 0) now = st.st_mtim;
  bool changed = now.tv_sec != stamp.tv_sec || now.tv_nsec != stamp.tv_nsec;
  stamp = now;
  return changed;
}

std::string malformed(std::string_view kind) {
  return makeReply(kind, kBadRequest, "malformed request", kind.empty() ? "request" : kind);
}

}  // namespace

std::string_view requestKind(std::string_view r) {
  if (r.find("addTrustee") != std::string_view::npos) return "addTrustee";
  if (r.find("modifyInheritedRightsFilter") != std::string_view::npos)
    return "modifyInheritedRightsFilter";
  if (r.find("removeTrustee") != std::string_view::npos) return "removeTrustee";
  if (r.find("userSpaceRestrictions") != std::string_view::npos) return "userSpaceRestrictions";
  if (r.find("addQuota") != std::string_view::npos) return "addQuota";
  return {};
}

std::string makeReply(std::string_view kind, long value, std::string_view description,
                      std::string_view name) {
  std::string out = "<quillReply>\n";
  if (!kind.empty()) {
    out += '<';
    out += kind;
    out += '>';
  }
  out += "<result value=\"" + std::to_string(value) + "\"><description>";
  out += description;
  out += "</description>";
  if (!name.empty()) {
    out += "<name>";
    out += name;
    out += "</name>";
  }
  out += "</result>";
  if (!kind.empty()) {
    out += "</";
    out += kind;
    out += '>';
  }
  out += "\n</quillReply>\n";
  return out;
}

Server::Server(std::string root) : root_(std::move(root)), lock_(root_) {
  const char *f = std::getenv("QUILLSIM_FAST");
  struct stat st;
  fast_ = (f && *f && *f != '0') || ::stat((root_ + "/sim/fastmode").c_str(), &st) == 0;
  latency_ = loadLatency(root_);
  // The first refresh must read everything.
  listStamp_.tv_nsec = usersStamp_.tv_nsec = faultsStamp_.tv_nsec = -1;
  statChanged(root_ + "/sim/latency", latencyStamp_);
}

void Server::refresh() {
  if (statChanged(root_ + "/sim/volumes", listStamp_)) list_ = loadVolumes(root_);
  if (statChanged(root_ + "/sim/users", usersStamp_)) users_.load(root_ + "/sim/users");
  if (statChanged(root_ + "/sim/faults", faultsStamp_)) faults_ = loadFaults(root_);
  if (statChanged(root_ + "/sim/latency", latencyStamp_)) latency_ = loadLatency(root_);
}

Volume *Server::volumeOfPath(std::string_view full, std::string &rel) {
  const VolumeInfo *best = nullptr;
  for (const VolumeInfo &v : list_) {
    std::string_view m = v.mount;
    if (full.starts_with(m) && (full.size() == m.size() || full[m.size()] == '/') &&
        (!best || m.size() > best->mount.size()))
      best = &v;
  }
  if (!best) return nullptr;
  rel = std::string(full.substr(best->mount.size()));
  if (rel.empty()) rel = "/";
  return volume(best->name);
}

Volume *Server::shadowOf(const Volume &v) { return v.shadow.empty() ? nullptr : volume(v.shadow); }

bool Server::exists(const Volume &v, const std::string &full, std::string_view rel, bool wantDir) {
  struct stat st;
  if (::stat(full.c_str(), &st) == 0) return !wantDir || S_ISDIR(st.st_mode);
  // Files of a generated volume exist in the state only.
  return const_cast<Volume &>(v).find(rel) != nullptr;
}

void Server::prepareInfoFile(std::string_view volName, std::string_view file) {
  // Fast mode keeps no request's changes, but the volume's own state is still shown.
  Locked held(lock_);
  refresh();
  // Every change removes the volume's info files, so one that exists is current: it is served
  // as it is, without loading the volume's state.
  bool listed = false;
  for (const VolumeInfo &v : list_)
    listed = listed || v.name == volName;
  struct stat st;
  if (listed && ::stat((infoDir(root_, volName) + "/" + std::string(file)).c_str(), &st) == 0)
    return;
  if (Volume *v = volume(volName)) ensureInfoFile(root_, *v, file);
}

int Server::readFault(std::string_view request) {
  refresh();
  const Fault *f = findFault(faults_, "read-error", request);
  return f ? parseErrno(f->value) : 0;
}

int Server::writeFault(std::string_view data) {
  refresh();
  const Fault *f = findFault(faults_, "write-error", data);
  return f ? parseErrno(f->value) : 0;
}

std::string Server::handle(CmdFile file, std::string_view request) {
  std::string_view kind = requestKind(request);
  if (fast_) {
    waitLatency(latency_);
    return makeReply(kind, 0, "success", {});
  }
  std::string reply;
  {
    Locked held(lock_);
    refresh();
    reply = handleLocked(file, request, kind);
    commit();
  }
  waitLatency(latency_);
  return reply;
}

std::string Server::handleLocked(CmdFile file, std::string_view request, std::string_view kind) {
  std::string line(request);
  if (line.find('\n') != std::string::npos) {
    std::string esc;
    for (char c : line)
      esc += c == '\n' ? std::string("\\n") : c == '\\' ? std::string("\\\\") : std::string(1, c);
    line = esc;
  }
  appendFile(root_ + "/sim/requests.log", line + '\n');
  std::string reply;
  if (const Fault *f = findFault(faults_, "refuse", request)) {
    reply = makeReply(kind, std::strtol(f->value.c_str(), nullptr, 10), f->description, f->name);
  } else if (findFault(faults_, "no-marker", request)) {
    apply(file, request, kind);
    reply = makeReply({}, 0, "success", {});
  } else if (findFault(faults_, "no-result", request)) {
    apply(file, request, kind);
    std::string k(kind.empty() ? "reply" : kind);
    reply = "<quillReply>\n<" + k + "><description>no result</description></" + k +
            ">\n</quillReply>\n";
  } else {
    reply = apply(file, request, kind);
  }
  if (const Fault *f = findFault(faults_, "oversize", request)) {
    size_t want = std::strtoul(f->value.c_str(), nullptr, 10);
    std::string tail = "</quillReply>\n";
    std::string head = reply.substr(0, reply.size() - tail.size()) + "<padding>";
    std::string close = "</padding>\n" + tail;
    if (want > head.size() + close.size())
      reply = head + std::string(want - head.size() - close.size(), 'x') + close;
  }
  appendFile(root_ + "/sim/replies.log", reply);
  return reply;
}

std::string Server::apply(CmdFile file, std::string_view req, std::string_view kind) {
  std::string_view open = file == CmdFile::files ? kFileOpen : kVolOpen;
  std::string_view close = file == CmdFile::files ? kFileClose : kVolClose;
  if (!req.starts_with(open) || !req.ends_with(close)) {
    bool other = req.starts_with(file == CmdFile::files ? kVolOpen : kFileOpen);
    return makeReply(kind, kBadRequest,
                     other ? "request not supported by this command file" : "malformed request",
                     kind.empty() ? "request" : kind);
  }
  std::string_view body = req.substr(open.size(), req.size() - open.size() - close.size());
  if (file == CmdFile::files) {
    if (body.starts_with("<trustees><addTrustee><name>")) return addTrustee(body, false);
    if (body.starts_with("<trustees><addTrustee type=\"adID\"><userID>"))
      return addTrustee(body, true);
    if (body.starts_with("<trustees><modifyInheritedRightsFilter>")) return modifyIrf(body);
    if (body.starts_with("<trustee><removeTrustee><")) return removeTrustee(body, false);
    if (body.starts_with("<trustee><removeTrustee type=\"adID\"><"))
      return removeTrustee(body, true);
    if (body.starts_with("<directoryQuota><addQuota>")) return dirQuota(body);
  } else {
    if (body.starts_with("<userSpaceRestrictions><set>")) return userQuota(body, false);
    if (body.starts_with("<userSpaceRestrictions><set type=\"adID\">"))
      return userQuota(body, true);
  }
  return malformed(kind);
}

std::string Server::addTrustee(std::string_view req, bool ad) {
  constexpr std::string_view kind = "addTrustee";
  Cursor c{req};
  std::string_view who;
  if (ad) {
    c.need("<trustees><addTrustee type=\"adID\"><userID>");
    who = c.text("</userID>");
  } else {
    c.need("<trustees><addTrustee><name>");
    who = c.text("</name>");
  }
  c.need("<rights>");
  std::string_view rights = c.until("</rights>");
  c.need("<fileName>");
  std::string_view fileName = c.until("</fileName>");
  bool gemel = c.lit("<gemelPath/>");
  c.need("<symLink/></addTrustee></trustees>");
  if (!c.ok || !c.s.empty()) return malformed(kind);
  RightsTarget target = rightsTarget(kind, rights, fileName);
  if (!target.error.empty()) return target.error;
  Volume *v = target.volume;
  const std::string &rel = target.relative;
  Trustee t;
  t.rights = target.rights;
  t.ad = ad;
  if (ad) {
    const std::string *name = users_.adNameOfSid(who);
    if (!name) return makeReply(kind, kNoUser, "user not found", who);
    t.id = intern(who);
    t.name = intern(*name);
  } else {
    t.name = intern(xmlDecode(who));
    if (t.name.empty() || !users_.knowsArbor(t.name))
      return makeReply(kind, kNoUser, "user not found", who);
  }
  v->setTrustee(rel, t);
  if (Volume *s = gemel ? shadowOf(*v) : nullptr) s->setTrustee(rel, t);
  return makeReply(kind, 0, "success", {});
}

std::string Server::modifyIrf(std::string_view req) {
  constexpr std::string_view kind = "modifyInheritedRightsFilter";
  Cursor c{req};
  c.need("<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>");
  std::string_view rights = c.until("</inheritedRightsFilter>");
  c.need("<fileName>");
  std::string_view fileName = c.until("</fileName>");
  bool gemel = c.lit("<gemelPath/>");
  c.need("</modifyInheritedRightsFilter></trustees>");
  if (!c.ok || !c.s.empty()) return malformed(kind);
  RightsTarget target = rightsTarget(kind, rights, fileName);
  if (!target.error.empty()) return target.error;
  target.volume->setIrf(target.relative, target.rights);
  if (Volume *s = gemel ? shadowOf(*target.volume) : nullptr)
    s->setIrf(target.relative, target.rights);
  return makeReply(kind, 0, "success", {});
}

Server::RightsTarget Server::rightsTarget(std::string_view kind, std::string_view rights,
                                          std::string_view fileName) {
  RightsTarget target;
  std::string bad;
  if (!rightsFromElements(rights, target.rights, bad)) {
    target.error = makeReply(kind, kBadRequest, "invalid rights", bad);
    return target;
  }
  const std::string full = xmlDecode(fileName);
  target.volume = volumeOfPath(full, target.relative);
  if (!target.volume)
    target.error = makeReply(kind, kNoVolume, "volume not found", fileName);
  else if (!exists(*target.volume, full, target.relative, false))
    target.error = makeReply(kind, kNoFile, "file not found", fileName);
  return target;
}

std::string Server::removeTrustee(std::string_view req, bool ad) {
  constexpr std::string_view kind = "removeTrustee";
  Cursor c{req};
  c.need(ad ? "<trustee><removeTrustee type=\"adID\"><fileName>"
            : "<trustee><removeTrustee><fileName>");
  std::string_view fileName = c.until("</fileName>");
  c.need("<userID>");
  std::string_view id = c.text("</userID>");
  c.need("</removeTrustee></trustee>");
  if (!c.ok || !c.s.empty()) return malformed(kind);
  size_t colon = fileName.find(':');
  if (colon == std::string_view::npos)
    return makeReply(kind, kBadRequest, "malformed file name", fileName);
  Volume *v = volume(fileName.substr(0, colon));
  if (!v) return makeReply(kind, kNoVolume, "volume not found", fileName.substr(0, colon));
  std::string rel = xmlDecode(fileName.substr(colon + 1));
  if (rel.empty() || rel[0] != '/') rel.insert(0, "/");
  if (!exists(*v, v->mount + rel, rel, false))
    return makeReply(kind, kNoFile, "file not found", fileName);
  if (v->removeTrustees(rel, id, ad) == 0)
    return makeReply(kind, kNoTrustee, "trustee not found", id);
  return makeReply(kind, 0, "success", {});
}

std::string Server::userQuota(std::string_view req, bool ad) {
  constexpr std::string_view kind = "userSpaceRestrictions";
  Cursor c{req};
  c.need(ad ? "<userSpaceRestrictions><set type=\"adID\"><volumeName>"
            : "<userSpaceRestrictions><set><volumeName>");
  std::string_view volName = c.text("</volumeName>");
  c.need("<userName>");
  std::string_view userName = c.text("</userName>");
  c.need("<quota>");
  std::string_view amount = c.text("</quota>");
  bool gemel = c.lit("<gemelPath/>");
  c.need("</set></userSpaceRestrictions>");
  if (!c.ok || !c.s.empty()) return malformed(kind);
  Volume *v = volume(volName);
  if (!v) return makeReply(kind, kNoVolume, "volume not found", volName);
  UserQuota q;
  q.ad = ad;
  q.name = xmlDecode(userName);
  if (ad) {
    const std::string *sid = users_.adSidOfName(q.name);
    if (!sid) return makeReply(kind, kNoUser, "user not found", userName);
    q.id = *sid;
  } else if (q.name.empty() || !users_.knowsArbor(q.name)) {
    return makeReply(kind, kNoUser, "user not found", userName);
  }
  if (!isDigits(amount)) return makeReply(kind, kBadRequest, "invalid quota amount", amount);
  q.amount = std::string(amount);
  q.used = "0";
  v->setUserQuota(q);
  if (Volume *s = gemel ? shadowOf(*v) : nullptr) s->setUserQuota(q);
  return makeReply(kind, 0, "success", {});
}

std::string Server::dirQuota(std::string_view req) {
  constexpr std::string_view kind = "addQuota";
  Cursor c{req};
  c.need("<directoryQuota><addQuota><fileName>");
  std::string_view fileName = c.until("</fileName>");
  bool gemel = c.lit("<gemelPath/>");
  c.need("<quotaAmount>");
  std::string_view amount = c.text("</quotaAmount>");
  c.need("</addQuota></directoryQuota>");
  if (!c.ok || !c.s.empty()) return malformed(kind);
  std::string full = xmlDecode(fileName), rel;
  Volume *v = volumeOfPath(full, rel);
  if (!v) return makeReply(kind, kNoVolume, "volume not found", fileName);
  struct stat st;
  if (::stat(full.c_str(), &st) == 0 && !S_ISDIR(st.st_mode))
    return makeReply(kind, kNotDir, "not a directory", fileName);
  if (!exists(*v, full, rel, true))
    return makeReply(kind, kNoFile, "directory not found", fileName);
  if (!isDigits(amount)) return makeReply(kind, kBadRequest, "invalid quota amount", amount);
  DirQuota q{rel, std::string(amount), "0"};
  v->setDirQuota(q);
  if (Volume *s = gemel ? shadowOf(*v) : nullptr) s->setDirQuota(q);
  return makeReply(kind, 0, "success", {});
}

}  // namespace qs
