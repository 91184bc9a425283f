// The views: by path (tree order), by user (users in label order, each user's assignments in
// tree order, then its quota), and effective rights at one path or at every path.
#include <algorithm>
#include <numeric>

#include "ctl/report_effective.h"
#include "ctl/report_lines.h"
#include "document/rights.h"

const char kEffectiveNote[] =
    "note: effective rights come from trustee assignments and inherited rights filters only; "
    "group membership and security equivalence are not counted";

std::string_view lineKindName(LineKind kind) {
  switch (kind) {
  case LineKind::trustee: return "trustee";
  case LineKind::filter: return "filter";
  case LineKind::userQuota: return "user-quota";
  case LineKind::dirQuota: return "dir-quota";
  case LineKind::effective: break;
  }
  return "effective";
}

std::string_view lettersOf(RightsSet rights) {
  constexpr std::size_t kSets = 1u << (sizeof kRights / sizeof kRights[0]);
  static const std::vector<std::string> table = [] {
    std::vector<std::string> letters(kSets);
    for (std::size_t at = 0; at < kSets; ++at)
      letters[at] = rightsLetters(RightsSet(at));
    return letters;
  }();
  // A set holds only the table's rights.
  return table[rights & (kSets - 1)];
}

bool LineFilter::keeps(const ReportVolume &volume, const ReportLine &line) const {
  if (byPath && (line.path == nullptr || !underPath(*line.path, path))) return false;
  const ReportUser *holder = line.user == kNone ? nullptr : &volume.users[line.user];
  if (byUser && (holder == nullptr || (holder->name != user && holder->id != user))) return false;
  if (rights != 0) {
    const bool holds = holder != nullptr && line.kind != LineKind::userQuota &&
                       (shownRights(line.rights) & rights) == rights;
    if (!holds) return false;
  }
  if (kind.empty()) return true;
  if (kind == "arbor" || kind == "ad") return holder != nullptr && holder->ad == (kind == "ad");
  const LineKind asKind = line.kind == LineKind::effective ? LineKind::trustee : line.kind;
  return lineKindName(asKind) == kind;
}

namespace {

struct Emitter {
  const ReportVolume &volume;
  const LineFilter &filter;
  LineWriter &writer;
  void operator()(const ReportLine &line) const {
    if (filter.keeps(volume, line)) writer.line(line);
  }
};

void pathLines(const ReportVolume &volume, const Emitter &emit) {
  for (const PathNode &node : volume.nodes) {
    for (const Assignment &own : volume.trusteesOf(node))
      emit({LineKind::trustee, &node.path, own.user, own.rights});
    if (node.hasFilter) emit({LineKind::filter, &node.path, kNone, node.filter});
    if (node.hasDirQuota) emit({LineKind::dirQuota, &node.path, kNone, 0, &node.dirQuota});
  }
}

// Users by label (Arbor before AD at equal labels): their rank in that order.
std::vector<std::uint32_t> userOrder(const ReportVolume &volume) {
  std::vector<std::uint32_t> order(volume.users.size());
  std::iota(order.begin(), order.end(), 0u);
  std::vector<std::string> labels;
  labels.reserve(volume.users.size());
  for (const ReportUser &user : volume.users)
    labels.push_back(userLabelOf(user));
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    if (labels[a] != labels[b]) return labels[a] < labels[b];
    return volume.users[a].ad < volume.users[b].ad;
  });
  return order;
}

void userLines(const ReportVolume &volume, const Emitter &emit) {
  // Each user's assignments, in tree order, by counting them out per user.
  std::vector<std::size_t> start(volume.users.size() + 1, 0);
  for (const Assignment &own : volume.assignments)
    ++start[own.user + 1];
  std::partial_sum(start.begin(), start.end(), start.begin());
  // The path itself is kept with each, so that the lines are made from this one array.
  std::vector<std::pair<std::string_view, RightsSet>> held(start.back());
  std::vector<std::size_t> fill(start.begin(), start.end() - 1);
  for (const PathNode &node : volume.nodes)
    for (const Assignment &own : volume.trusteesOf(node))
      held[fill[own.user]++] = {node.path, own.rights};
  for (const std::uint32_t user : userOrder(volume)) {
    for (std::size_t at = start[user]; at < start[user + 1]; ++at)
      emit({LineKind::trustee, &held[at].first, user, held[at].second});
    if (volume.users[user].hasQuota)
      emit({LineKind::userQuota, nullptr, user, 0, &volume.users[user].quota});
  }
}

// The effective rights of one path, trustees in label order; `list` is sorted in place.
void effectiveLines(const ReportVolume &volume, const std::vector<std::uint32_t> &rank,
                    const std::string_view &path, EffectiveList &list, const Emitter &emit) {
  std::sort(list.begin(), list.end(), [&rank](const EffectiveRight &a, const EffectiveRight &b) {
    return rank[a.user] < rank[b.user];
  });
  for (const EffectiveRight &each : list)
    emit({LineKind::effective, &path, each.user, shownRights(each.rights), nullptr,
          &volume.nodes[each.from].path});
}

}  // namespace

void writeView(const ReportVolume &volume, ReportView view, const std::string &effectivePath,
               const LineFilter &filter, LineWriter &writer) {
  const Emitter emit{volume, filter, writer};
  if (view == ReportView::byPath) pathLines(volume, emit);
  if (view == ReportView::byUser) userLines(volume, emit);
  if (view == ReportView::effective || view == ReportView::effectiveAll) {
    const std::vector<std::uint32_t> order = userOrder(volume);
    std::vector<std::uint32_t> rank(order.size());
    for (std::uint32_t at = 0; at < order.size(); ++at)
      rank[order[at]] = at;
    if (view == ReportView::effective) {
      const std::string path = nodePath(effectivePath);
      const std::string_view pathView = path;
      EffectiveList list = effectiveAt(volume, path);
      effectiveLines(volume, rank, pathView, list, emit);
    } else {
      EffectiveList sorted;  // one list for every path, so that a path costs no allocation
      forEachEffective(volume, [&](std::uint32_t node, const EffectiveList &list) {
        const std::string_view &path = volume.nodes[node].path;
        if (filter.byPath && !underPath(path, filter.path)) return;
        sorted.assign(list.begin(), list.end());
        effectiveLines(volume, rank, path, sorted, emit);
      });
    }
  }
  writer.finish();
}
