// The rules of trovanctl map, applied to one entry: users from a mapping file, the tree name
// replaced, paths rebased.
#pragma once
#include <string>
#include <utility>
#include <vector>

#include "ctl/user_map.h"
#include "model/entry.h"

struct MapRules {
  bool hasUsers = false;
  UserMap users;
  std::string tree;                                         // empty: not replaced
  std::vector<std::pair<std::string, std::string>> rebase;  // OLD, NEW ('/' paths)
};

// Applies every rule to `entry`. Returns "" when each rule that applies could map it, or why
// one could not (the entry is then left as it was).
std::string applyMapRules(const MapRules &rules, Entry &entry);

// Parses "OLD=NEW". False when there is no '='.
bool parseRebase(const std::string &text, std::pair<std::string, std::string> &rule);
