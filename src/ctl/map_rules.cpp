#include "ctl/map_rules.h"

#include <vector>

#include "ctl/entry_selection.h"
#include "document/xml_text.h"

namespace {

bool hasUser(const Entry &entry) {
  return entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota;
}

std::string mapUser(const UserMap &users, Entry &entry) {
  const std::string &user = entry.ad ? entry.id : entry.name;
  const auto found = users.names.find(user);
  if (found == users.names.end()) return "no mapping for the user " + user;
  const std::string &target = found->second;
  if (isSid(target)) {
    if (!entry.ad) entry.name = target;  // an AD user quota is known by a name as well
    entry.ad = true;
    entry.id = target;
  } else {
    entry.ad = false;
    entry.name = target;
    entry.id.clear();
  }
  return "";
}

// The tree is the last component of "name.TREE.", replaced as trovan restore -t replaces it.
std::string mapTree(const std::string &tree, Entry &entry) {
  if (entry.ad) return "";
  std::vector<char> name(entry.name.begin(), entry.name.end());
  name.resize(entry.name.size() + tree.size() + 2, '\0');
  const std::string before = entry.name;
  const std::size_t dot = before.size() >= 3 ? before.rfind('.', before.size() - 2) : 0;
  if (before.size() < 3 || before.back() != '.' || dot == std::string::npos || dot == 0)
    return "the name " + before + " has no tree component (name.TREE.)";
  replaceTreeName(name.data(), tree.c_str(), name.size());
  entry.name = name.data();
  return "";
}

std::string mapPath(const std::vector<std::pair<std::string, std::string>> &rebase, Entry &entry) {
  const std::string path = comparablePath(entry);
  for (const auto &[from, to] : rebase) {
    if (!pathUnder(path, from)) continue;
    std::string old = from;
    if (!old.empty() && old.back() == '/') old.pop_back();
    std::string mapped = to + path.substr(old.size());
    if (entry.kind == EntryKind::dirQuota)
      for (char &c : mapped)
        if (c == '/') c = '\\';
    entry.path = mapped;
    return "";
  }
  return "the path " + path + " is under no -r OLD";
}

}  // namespace

bool parseRebase(const std::string &text, std::pair<std::string, std::string> &rule) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) return false;
  rule = {text.substr(0, equals), text.substr(equals + 1)};
  return true;
}

std::string applyMapRules(const MapRules &rules, Entry &entry) {
  Entry mapped = entry;
  std::string problem;
  if (rules.hasUsers && hasUser(mapped)) problem = mapUser(rules.users, mapped);
  if (problem.empty() && !rules.tree.empty() && hasUser(mapped))
    problem = mapTree(rules.tree, mapped);
  if (problem.empty() && !rules.rebase.empty() && mapped.kind != EntryKind::userQuota)
    problem = mapPath(rules.rebase, mapped);
  if (problem.empty()) entry = std::move(mapped);
  return problem;
}
