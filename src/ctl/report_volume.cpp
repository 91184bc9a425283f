// Reading a document into the report's volume: entries are merged by path and by user as they
// come, the directories above every path are added, and the nodes are put in tree order.
#include "ctl/report_volume.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "model/document_reader.h"

namespace {

// Merges `from` (a node of the same path) into `into`.
void mergeNode(PathNode &into, PathNode &from) {
  into.trustees.insert(into.trustees.end(), from.trustees.begin(), from.trustees.end());
  if (from.hasFilter) {
    into.hasFilter = true;
    into.filter = from.filter;
  }
  if (from.hasDirQuota) {
    into.hasDirQuota = true;
    into.dirQuota = std::move(from.dirQuota);
  }
}

// Whether `path` lies strictly below `above`.
bool strictlyBelow(const std::string &path, const std::string &above) {
  return path.size() > above.size() && underPath(path, above);
}

struct Builder {
  ReportVolume &volume;
  std::vector<PathNode> read;  // a node for each run of entries of one path, as they come
  std::unordered_map<std::string, std::uint32_t> userIndex;
  std::string key;

  PathNode &node(const std::string &path) {
    // The entries of one <file> come together: most entries need no new node.
    if (read.empty() || read.back().path != path) {
      read.emplace_back();
      read.back().path = path;
    }
    return read.back();
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
    PathNode &target = node(nodePath(comparablePath(entry)));
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

  // Appends `node` to the volume below the nodes on `stack`, adding the directories between.
  void place(PathNode &&node, std::vector<std::uint32_t> &stack) {
    std::vector<PathNode> &nodes = volume.nodes;
    while (!strictlyBelow(node.path, nodes[stack.back()].path))
      stack.pop_back();
    for (;;) {
      const std::string &above = nodes[stack.back()].path;
      const std::size_t next = node.path.find('/', above.size() + (above.size() > 1 ? 1 : 0));
      if (next == std::string::npos) break;
      PathNode directory;
      directory.path = node.path.substr(0, next);
      directory.parent = stack.back();
      stack.push_back(std::uint32_t(nodes.size()));
      nodes.push_back(std::move(directory));
    }
    node.parent = stack.back();
    stack.push_back(std::uint32_t(nodes.size()));
    nodes.push_back(std::move(node));
  }

  // Puts the nodes in tree order, merges those of one path, and adds every directory above.
  void finish() {
    const auto before = [](const PathNode &a, const PathNode &b) {
      return treeBefore(a.path, b.path);
    };
    if (!std::is_sorted(read.begin(), read.end(), before))
      std::stable_sort(read.begin(), read.end(), before);
    volume.nodes.reserve(read.size() + 1);
    volume.nodes.emplace_back();
    volume.nodes.back().path = "/";
    std::vector<std::uint32_t> stack{0};
    for (PathNode &each : read) {
      PathNode &last = volume.nodes.back();
      if (each.path == last.path)
        mergeNode(last, each);
      else
        place(std::move(each), stack);
    }
    read.clear();
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
  builder.userIndex.reserve(1024);
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
