// Reading a document into the report's volume. As entries come, each path is kept once per
// run of entries that name it, and each entry becomes a small fact about its run; then the
// runs are put in tree order (by index), merged by path, the directories above every path are
// added, and the facts are counted out to their nodes.
#include "ctl/report_volume.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "model/document_reader.h"

namespace {

constexpr std::size_t kBlockSize = 1 << 20;

// Makes `path` a node's path in place (see nodePath).
void toNodePath(std::string &path) {
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  if (path.empty() || path[0] != '/') path.insert(path.begin(), '/');
}

// Whether `path` lies strictly below `above`.
bool strictlyBelow(std::string_view path, std::string_view above) {
  return path.size() > above.size() && underPath(path, above);
}

// Sorts `order` stably by merging its ascending stretches pairwise: a document comes in a few
// sections, each already in tree order, so this costs little more than one look at each.
template <class Before> void mergeStretches(std::vector<std::uint32_t> &order, Before before) {
  std::vector<std::size_t> bounds{0};
  for (std::size_t at = 1; at < order.size(); ++at)
    if (before(order[at], order[at - 1])) bounds.push_back(at);
  bounds.push_back(order.size());
  while (bounds.size() > 2) {
    std::vector<std::size_t> merged{0};
    for (std::size_t at = 0; at + 2 < bounds.size(); at += 2) {
      std::inplace_merge(order.begin() + std::ptrdiff_t(bounds[at]),
                         order.begin() + std::ptrdiff_t(bounds[at + 1]),
                         order.begin() + std::ptrdiff_t(bounds[at + 2]), before);
      merged.push_back(bounds[at + 2]);
    }
    // An odd stretch out goes on as it is.
    if (bounds.size() % 2 == 0) merged.push_back(bounds.back());
    bounds.swap(merged);
  }
}

PathNode newNode(std::string_view path, std::uint32_t parent) {
  PathNode node;
  node.path = path;
  node.parent = parent;
  return node;
}

// One entry of a run: a trustee (value: its user), a filter, or a directory quota (value: the
// index of its amount).
struct Fact {
  std::uint32_t run;
  std::uint32_t value;
  RightsSet rights;
  EntryKind kind;
};

// The users by key ("A" and the Arbor name, "D" and the SID or else the name of an AD user):
// an open-addressing table, at most 3/4 full, of a user's number and a tag of its key's hash,
// 8 bytes a slot so that the table stays small.
class UserIndex {
public:
  // The user of `key`, or kNone, with the slot where it would go.
  std::uint32_t find(std::string_view key, const std::vector<std::string_view> &keys,
                     std::size_t &slot) const {
    const std::uint64_t hash = std::hash<std::string_view>{}(key);
    const auto tag = std::uint32_t(hash >> 32);
    for (slot = hash & (slots_.size() - 1);; slot = (slot + 1) & (slots_.size() - 1)) {
      const Slot &here = slots_[slot];
      if (here.user == kNone) return kNone;
      if (here.tag == tag && keys[here.user] == key) return here.user;
    }
  }

  // Adds the last of `keys` at `slot`, as find left it.
  void add(std::size_t slot, const std::vector<std::string_view> &keys) {
    slots_[slot] = {std::uint32_t(std::hash<std::string_view>{}(keys.back()) >> 32),
                    std::uint32_t(keys.size() - 1)};
    if (keys.size() * 4 > slots_.size() * 3) grow(keys);
  }

private:
  struct Slot {
    std::uint32_t tag = 0;
    std::uint32_t user = kNone;  // kNone marks a free slot
  };

  void grow(const std::vector<std::string_view> &keys) {
    slots_.assign(slots_.size() * 2, Slot{});
    for (std::uint32_t user = 0; user < keys.size(); ++user) {
      const std::uint64_t hash = std::hash<std::string_view>{}(keys[user]);
      std::size_t slot = hash & (slots_.size() - 1);
      while (slots_[slot].user != kNone)
        slot = (slot + 1) & (slots_.size() - 1);
      slots_[slot] = {std::uint32_t(hash >> 32), user};
    }
  }

  std::vector<Slot> slots_ = std::vector<Slot>(1024);
};

struct Builder {
  ReportVolume &volume;
  std::vector<std::string_view> runs;  // the path of each run of entries, as they come
  std::vector<Fact> facts;
  std::vector<std::string_view> amounts;
  UserIndex userIndex;
  std::vector<std::string_view> userKeys;  // the key of each user
  TextPool keyTexts;  // the keys, together: every entry compares one, and paths are many
  std::string scratch;

  std::uint32_t run(const Entry &entry) {
    scratch.assign(entry.path);
    if (entry.kind == EntryKind::dirQuota) std::replace(scratch.begin(), scratch.end(), '\\', '/');
    toNodePath(scratch);
    // The entries of one <file> come together: most entries start no new run.
    if (runs.empty() || runs.back() != scratch) runs.push_back(volume.texts.keep(scratch));
    return std::uint32_t(runs.size() - 1);
  }

  std::uint32_t user(const Entry &entry) {
    scratch.assign(entry.ad ? "D" : "A");
    scratch += entry.ad && !entry.id.empty() ? entry.id : entry.name;
    std::size_t slot = 0;
    std::uint32_t found = userIndex.find(scratch, userKeys, slot);
    if (found == kNone) {
      found = std::uint32_t(volume.users.size());
      userKeys.push_back(keyTexts.keep(scratch));
      userIndex.add(slot, userKeys);
      ReportUser added;
      added.id = volume.texts.keep(entry.id);
      added.ad = entry.ad;
      volume.users.push_back(added);
    }
    ReportUser &known = volume.users[found];
    if (known.name.empty()) known.name = volume.texts.keep(entry.name);
    return found;
  }

  void add(const Entry &entry) {
    switch (entry.kind) {
    case EntryKind::userQuota: {
      ReportUser &holder = volume.users[user(entry)];
      holder.hasQuota = true;
      holder.quota = volume.texts.keep(entry.amount);
      return;
    }
    case EntryKind::trustee: {
      const std::uint32_t holder = user(entry);
      facts.push_back({run(entry), holder, entry.rights, entry.kind});
      return;
    }
    case EntryKind::filter: facts.push_back({run(entry), 0, entry.rights, entry.kind}); return;
    case EntryKind::dirQuota:
      amounts.push_back(volume.texts.keep(entry.amount));
      facts.push_back({run(entry), std::uint32_t(amounts.size() - 1), 0, entry.kind});
      return;
    }
  }

  // Appends the node of `path` below the nodes on `stack`, adding the directories between.
  void place(std::string_view path, std::vector<std::uint32_t> &stack) {
    std::vector<PathNode> &nodes = volume.nodes;
    while (!strictlyBelow(path, nodes[stack.back()].path))
      stack.pop_back();
    for (;;) {
      const std::string_view above = nodes[stack.back()].path;
      const std::size_t next = path.find('/', above.size() + (above.size() > 1 ? 1 : 0));
      if (next == std::string_view::npos) break;
      stack.push_back(std::uint32_t(nodes.size()));
      nodes.push_back(newNode(path.substr(0, next), stack[stack.size() - 2]));
    }
    stack.push_back(std::uint32_t(nodes.size()));
    nodes.push_back(newNode(path, stack[stack.size() - 2]));
  }

  // The node of each run, the nodes in tree order with the directories above them.
  std::vector<std::uint32_t> placeRuns() {
    std::vector<std::uint32_t> order(runs.size());
    for (std::uint32_t at = 0; at < order.size(); ++at)
      order[at] = at;
    const auto before = [this](std::uint32_t a, std::uint32_t b) {
      return treeBefore(runs[a], runs[b]);
    };
    mergeStretches(order, before);
    std::vector<std::uint32_t> nodeOf(runs.size());
    volume.nodes.reserve(runs.size() + 1);
    volume.nodes.push_back(newNode(volume.texts.keep("/"), kNone));
    std::vector<std::uint32_t> stack{0};
    for (const std::uint32_t each : order) {
      if (runs[each] != volume.nodes.back().path) place(runs[each], stack);
      nodeOf[each] = std::uint32_t(volume.nodes.size() - 1);
    }
    return nodeOf;
  }

  // Hands the facts to their nodes: the trustees counted out node by node, in document order.
  void finish() {
    const std::vector<std::uint32_t> nodeOf = placeRuns();
    std::vector<PathNode> &nodes = volume.nodes;
    for (const Fact &fact : facts)
      if (fact.kind == EntryKind::trustee) ++nodes[nodeOf[fact.run]].trusteesEnd;
    std::uint32_t total = 0;
    for (PathNode &node : nodes) {
      node.trusteesBegin = total;
      total += node.trusteesEnd;
      node.trusteesEnd = node.trusteesBegin;
    }
    volume.assignments.resize(total);
    for (const Fact &fact : facts) {
      PathNode &node = nodes[nodeOf[fact.run]];
      if (fact.kind == EntryKind::trustee)
        volume.assignments[node.trusteesEnd++] = {fact.value, fact.rights};
      if (fact.kind == EntryKind::filter) {
        node.hasFilter = true;
        node.filter = fact.rights;
      }
      if (fact.kind == EntryKind::dirQuota) {
        node.hasDirQuota = true;
        node.dirQuota = amounts[fact.value];
      }
    }
  }
};

}  // namespace

std::string_view TextPool::keep(std::string_view text) {
  if (text.empty()) return {};
  if (text.size() > left_) {
    const std::size_t size = std::max(kBlockSize, text.size());
    blocks_.push_back(std::make_unique<char[]>(size));
    free_ = blocks_.back().get();
    left_ = size;
  }
  std::memcpy(free_, text.data(), text.size());
  const std::string_view kept(free_, text.size());
  free_ += text.size();
  left_ -= text.size();
  return kept;
}

std::string collectVolume(int fd, const std::string &file, ReportVolume &volume) {
  // Findings that leave the document readable (trovanctl check reports them) do not stop a
  // report; the one that ends reading does, and it is the last made.
  std::string last;
  const FindingSink sink = [&last, &file](Finding finding) {
    last = file + ":" + std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
           ": " + finding.message;
  };
  Builder builder{volume, {}, {}, {}, {}, {}, {}, {}};
  DocumentReader reader(fd, sink);
  Entry entry;
  while (reader.next(entry))
    builder.add(entry);
  if (reader.readError() != 0) return file + ": " + std::strerror(reader.readError());
  if (reader.failed()) return last;
  builder.finish();
  return "";
}

bool treeBefore(std::string_view a, std::string_view b) {
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
  toNodePath(path);
  return path;
}

bool underPath(std::string_view path, std::string_view prefix) {
  if (prefix == "/") return true;
  return path.starts_with(prefix) && (path.size() == prefix.size() || path[prefix.size()] == '/');
}

std::string userLabelOf(const ReportUser &user) {
  if (!user.ad) return std::string(user.name);
  if (user.name.empty()) return std::string(user.id);
  return std::string(user.id) + " (" + std::string(user.name) + ")";
}
