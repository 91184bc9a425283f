// The RXL server's trustee database of a volume: <mount point>/._KESTREL/.trustee_database.xml.
#pragma once

#include <string>
#include <vector>

namespace qs {

struct RxlEntry {
  bool filter = false;  // inherited_rights_mask entry
  std::string path;
  std::string name;
  std::string rights;  // upper-case letters
  std::string guid;
};

std::string rxlDbPath(const std::string &mount);
std::vector<RxlEntry> loadRxlDb(const std::string &file);
bool saveRxlDb(const std::string &file, const std::vector<RxlEntry> &entries);
/// Sets an entry, replacing one for the same path (and name, for trustees).
void setRxlEntry(std::vector<RxlEntry> &entries, const RxlEntry &e);
/// A stable object GUID for a user name.
std::string guidOf(const std::string &name);

}  // namespace qs
