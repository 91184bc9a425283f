// The mapping file of trovanctl map: one rule a line, "old,new" (CSV: a field may be written in
// double quotes, with "" for a quotation mark inside, so that a name may hold a comma). Old and
// new are Arbor names or AD SIDs (S-1-...). Empty lines and lines starting with '#' are passed
// over.
#pragma once
#include <string>
#include <string_view>
#include <unordered_map>

struct UserMap {
  std::unordered_map<std::string, std::string> names;
};

// Parses the text of a mapping file. Returns "" or what is wrong, as "LINE:COLUMN: message".
std::string parseUserMap(std::string_view text, UserMap &map);

// Whether a user text is an AD SID ("S-1-...").
bool isSid(std::string_view user);
