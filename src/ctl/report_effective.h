// Effective rights, by the model trovanctl(8) writes out: walking from the volume's root down to
// a path, the rights a trustee brings into a level are masked by that level's inherited rights
// filter (the supervisor right is never masked), then replaced by the trustee's own assignment
// at that level if it has one. Group membership and security equivalence are not counted.
#pragma once
#include <functional>
#include <vector>

#include "ctl/report_volume.h"

// One trustee's rights at a path, and the node of the assignment they come from.
struct EffectiveRight {
  std::uint32_t user;
  RightsSet rights;  // as assigned and masked; supervisor is not yet widened (see shownRights)
  std::uint32_t from;
};

using EffectiveList = std::vector<EffectiveRight>;

// The rights a trustee holds: every right of the table when it holds supervisor.
RightsSet shownRights(RightsSet rights);

// Steps one level down: `above` (the rights brought in) to `here`, for `node` (index `at`).
// Trustees whose rights the filter takes away wholly are dropped. `slots` is scratch of one
// entry a user, each kNone, and is left so.
void stepInto(const ReportVolume &volume, const PathNode &node, std::uint32_t at,
              const EffectiveList &above, EffectiveList &here, std::vector<std::uint32_t> &slots);

// The effective rights at `path` (any path, with or without an entry), walking from the root.
EffectiveList effectiveAt(const ReportVolume &volume, std::string_view path);

// Every node that has an entry, in tree order, with its effective rights, in one walk of the
// tree that carries the inherited rights down.
void forEachEffective(const ReportVolume &volume,
                      const std::function<void(std::uint32_t node, const EffectiveList &)> &visit);
