#include "ctl/entry_selection.h"

#include "ctl/kind_option.h"

void EntrySelection::define(CLI::App &command) {
  command.add_option("--path", paths, "only entries of this path or under it (repeatable)")
      ->type_name("PREFIX");
  command.add_option("--user", users, "only entries of this user: Arbor name, SID or name")
      ->type_name("USER");
  command.add_option("--kind", kinds, "only entries of this kind (repeatable)")
      ->type_name("KIND")
      ->transform(kindOptionValidator());
}

bool pathUnder(std::string_view path, std::string_view prefix) {
  if (!prefix.empty() && prefix.back() == '/') prefix.remove_suffix(1);
  if (!path.starts_with(prefix)) return false;
  return path.size() == prefix.size() || path[prefix.size()] == '/';
}

bool EntrySelection::selects(const Entry &entry) const {
  if (!kinds.empty()) {
    bool found = false;
    for (const std::string &kind : kinds)
      found = found || kind == kindOptionName(entry.kind);
    if (!found) return false;
  }
  if (!users.empty()) {
    if (entry.kind != EntryKind::trustee && entry.kind != EntryKind::userQuota) return false;
    bool found = false;
    for (const std::string &user : users)
      found = found || user == entry.name || (entry.ad && user == entry.id);
    if (!found) return false;
  }
  if (!paths.empty()) {
    if (entry.kind == EntryKind::userQuota) return false;
    const std::string path = comparablePath(entry);
    bool found = false;
    for (const std::string &prefix : paths)
      found = found || pathUnder(path, prefix);
    if (!found) return false;
  }
  return true;
}
