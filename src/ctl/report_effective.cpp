#include "ctl/report_effective.h"

#include <algorithm>

#include "document/rights.h"

namespace {

constexpr RightsSet kSupervisor = 1u << 7;
constexpr RightsSet kEveryRight = (1u << (sizeof kRights / sizeof kRights[0])) - 1;

}  // namespace

RightsSet shownRights(RightsSet rights) {
  return (rights & kSupervisor) != 0 ? kEveryRight : rights;
}

void stepInto(const ReportVolume &volume, const PathNode &node, std::uint32_t at,
              const EffectiveList &above, EffectiveList &here, std::vector<std::uint32_t> &slots) {
  here.clear();
  const RightsSet mask = node.hasFilter ? RightsSet(node.filter | kSupervisor) : kEveryRight;
  for (const EffectiveRight &brought : above) {
    const RightsSet kept = brought.rights & mask;
    if (kept == 0) continue;
    slots[brought.user] = std::uint32_t(here.size());
    here.push_back({brought.user, kept, brought.from});
  }
  for (const Assignment &own : volume.trusteesOf(node)) {
    if (slots[own.user] != kNone) {
      here[slots[own.user]] = {own.user, own.rights, at};
    } else {
      slots[own.user] = std::uint32_t(here.size());
      here.push_back({own.user, own.rights, at});
    }
  }
  for (const EffectiveRight &each : here)
    slots[each.user] = kNone;
}

EffectiveList effectiveAt(const ReportVolume &volume, std::string_view path) {
  // The nodes on the way, found by climbing from the deepest one that exists.
  std::vector<std::uint32_t> chain;
  std::string probe = nodePath(std::string(path));
  for (;;) {
    const auto place = std::lower_bound(
        volume.nodes.begin(), volume.nodes.end(), probe,
        [](const PathNode &node, std::string_view path) { return treeBefore(node.path, path); });
    const std::uint32_t found = place != volume.nodes.end() && place->path == probe
                                    ? std::uint32_t(place - volume.nodes.begin())
                                    : kNone;
    if (found != kNone) {
      for (std::uint32_t at = found; at != kNone; at = volume.nodes[at].parent)
        chain.push_back(at);
      break;
    }
    const std::size_t slash = probe.rfind('/');
    probe.resize(slash == 0 ? 1 : slash);
  }
  std::vector<std::uint32_t> slots(volume.users.size(), kNone);
  EffectiveList above;
  EffectiveList here;
  for (auto at = chain.rbegin(); at != chain.rend(); ++at) {
    stepInto(volume, volume.nodes[*at], *at, above, here, slots);
    above.swap(here);
  }
  return above;
}

void forEachEffective(const ReportVolume &volume,
                      const std::function<void(std::uint32_t, const EffectiveList &)> &visit) {
  // One list per depth; a node that changes nothing shares the list of the level above it.
  struct Level {
    std::uint32_t node;
    std::size_t list;
  };
  std::vector<Level> stack;
  std::vector<EffectiveList> lists(1);
  std::vector<std::uint32_t> slots(volume.users.size(), kNone);
  for (std::uint32_t at = 0; at < volume.nodes.size(); ++at) {
    const PathNode &node = volume.nodes[at];
    while (!stack.empty() && stack.back().node != node.parent)
      stack.pop_back();
    const std::size_t above = stack.empty() ? 0 : stack.back().list;
    std::size_t list = above;
    if (node.hasTrustees() || node.hasFilter) {
      list = stack.size() + 1;
      if (lists.size() <= list) lists.resize(list + 1);
      stepInto(volume, node, at, lists[above], lists[list], slots);
    }
    stack.push_back({at, list});
    if (node.hasEntry()) visit(at, lists[list]);
  }
}
