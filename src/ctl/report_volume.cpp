// Reading a document into the report's volume: entries are merged by path and by user as they
// come, the directories above every path are added, and the nodes are put in tree order.
#include "ctl/report_volume.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "model/document_reader.h"

namespace {

struct Builder {
  ReportVolume &volume;
  std::unordered_map<std::string, std::uint32_t> pathIndex;
  std::unordered_map<std::string, std::uint32_t> userIndex;
  std::string key;

  std::uint32_t node(const std::string &path) {
    const auto [at, added] = pathIndex.try_emplace(path, std::uint32_t(volume.nodes.size()));
    if (added) {
      volume.nodes.emplace_back();
      volume.nodes.back().path = path;
    }
    return at->second;
  }

  std::uint32_t user(const Entry &entry) {
    key.assign(entry.ad ? "D" : "A");
    key += entry.ad && !entry.id.empty() ? entry.id : entry.name;
    const auto [at, added] = userIndex.try_emplace(key, std::uint32_t(volume.users.size()));
    if (added) volume.users.push_back({entry.name, entry.id, entry.ad, false, {}});
    ReportUser &known = volume.users[at->second];
    if (known.name.empty()) known.name = entry.name;
    return at->second;
  }

  void add(const Entry &entry) {
    if (entry.kind == EntryKind::userQuota) {
      ReportUser &holder = volume.users[user(entry)];
      holder.hasQuota = true;
      holder.quota = entry.amount;
      return;
    }
    const std::uint32_t userAt = entry.kind == EntryKind::trustee ? user(entry) : kNone;
    PathNode &target = volume.nodes[node(nodePath(comparablePath(entry)))];
    switch (entry.kind) {
    case EntryKind::trustee: target.trustees.push_back({userAt, entry.rights}); break;
    case EntryKind::filter:
      target.hasFilter = true;
      target.filter = entry.rights;
      break;
    default:
      target.hasDirQuota = true;
      target.dirQuota = entry.amount;
      break;
    }
  }

  // Adds every directory above the paths read, then sorts and links each node to its parent.
  void finish() {
    node("/");
    for (std::size_t at = 0; at < volume.nodes.size(); ++at) {
      std::string path = volume.nodes[at].path;
      while (path != "/") {
        const std::size_t slash = path.rfind('/');
        path.resize(slash == 0 ? 1 : slash);
        if (pathIndex.count(path) != 0) break;
        node(path);
      }
    }
    std::sort(volume.nodes.begin(), volume.nodes.end(),
              [](const PathNode &a, const PathNode &b) { return treeBefore(a.path, b.path); });
    for (std::size_t at = 0; at < volume.nodes.size(); ++at)
      pathIndex[volume.nodes[at].path] = std::uint32_t(at);
    for (PathNode &each : volume.nodes) {
      if (each.path == "/") continue;
      const std::size_t slash = each.path.rfind('/');
      each.parent = pathIndex[slash == 0 ? std::string("/") : each.path.substr(0, slash)];
    }
  }
};

}  // namespace

std::string collectVolume(int fd, const std::string &file, ReportVolume &volume) {
  // Findings that leave the document readable (trovanctl check reports them) do not stop a
  // report; the one that ends reading does, and it is the last made.
  std::string last;
  const FindingSink sink = [&last, &file](Finding finding) {
    last = file + ":" + std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
           ": " + finding.message;
  };
  Builder builder{volume, {}, {}, {}};
  DocumentReader reader(fd, sink);
  Entry entry;
  while (reader.next(entry))
    builder.add(entry);
  if (reader.readError() != 0) return file + ": " + std::strerror(reader.readError());
  if (reader.failed()) return last;
  builder.finish();
  return "";
}

bool treeBefore(const std::string &a, const std::string &b) {
  const std::size_t length = std::min(a.size(), b.size());
  for (std::size_t at = 0; at < length; ++at) {
    if (a[at] == b[at]) continue;
    // '/' ends a component, so it sorts before every other byte.
    if (a[at] == '/') return true;
    if (b[at] == '/') return false;
    return static_cast<unsigned char>(a[at]) < static_cast<unsigned char>(b[at]);
  }
  return a.size() < b.size();
}

std::string nodePath(std::string path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  if (path.empty() || path[0] != '/') path.insert(path.begin(), '/');
  return path;
}

bool underPath(const std::string &path, const std::string &prefix) {
  if (prefix == "/") return true;
  return path.compare(0, prefix.size(), prefix) == 0 &&
         (path.size() == prefix.size() || path[prefix.size()] == '/');
}

std::string userLabelOf(const ReportUser &user) {
  if (!user.ad) return user.name;
  if (user.name.empty()) return user.id;
  return user.id + " (" + user.name + ")";
}
