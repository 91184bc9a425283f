// Which entries a command works on: by path prefix, user and kind, as diff and map select them.
#pragma once
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "model/entry.h"

struct EntrySelection {
  std::vector<std::string> paths;  // --path: the path itself or anything under it
  std::vector<std::string> users;  // --user: an Arbor name, an AD user's SID or name
  std::vector<std::string> kinds;  // --kind: trustee, filter, user-quota, dir-quota

  // Adds --path, --user and --kind to `command`.
  void define(CLI::App &command);
  // Whether an entry is selected: every option given must hold (each is repeatable, and one of
  // its values must match). A user quota has no path, so --path leaves user quotas out.
  bool selects(const Entry &entry) const;
  bool empty() const { return paths.empty() && users.empty() && kinds.empty(); }
};

// Whether `path` is `prefix` or lies under it ("/a" holds "/a" and "/a/b", not "/ab").
bool pathUnder(std::string_view path, std::string_view prefix);
