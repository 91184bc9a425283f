// The entry kinds as the --kind option of every command names them: trustee, filter,
// user-quota, dir-quota. The JSON spellings userQuota and dirQuota are taken too.
#pragma once
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "model/entry.h"

// The kind `text` names, either spelling. False when it names none.
bool kindFromOption(std::string_view text, EntryKind &kind);

// The option's own name of a kind: "trustee", "filter", "user-quota", "dir-quota".
std::string_view kindOptionName(EntryKind kind);

// A validator for --kind that takes either spelling and leaves the option's own name in the
// value; its message lists the option's names only.
CLI::Validator kindOptionValidator();
