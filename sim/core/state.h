// The simulated volumes: their registry, known users and per-volume state files.
//
// Sandbox layout (all under QUILLSIM_ROOT):
//   _admin/Manage_QUILL/{files,manage}.cmd      command files (real, always empty)
//   _admin/Manage_QUILL/Volume/<VOL>/           info directory, generated info files
//   _admin/.quillsim                            marker seen only through the simulator
//   etc/mtab                                    the simulated mount table
//   mnt/<VOL>/                                  default mount points
//   sim/volumes, sim/users, sim/<VOL>.state     state, one record a line
//   sim/<VOL>.journal                           changes made since the state file was written
//   sim/lock                                    held while a request or a command changes state
//   sim/faults, sim/fastmode, sim/latency       behaviour settings
//   sim/requests.log, sim/replies.log, sim/rxlcon.log
//   sim/leaks.log, sim/tmpfiles.log             what programs left behind (quillsim log --leaks)
#pragma once

#include "rights.h"

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qs {

/// A process-wide copy of text that stays put: trustee names and identifiers repeat across
/// millions of files, so each distinct one is stored once.
std::string_view intern(std::string_view text);

struct Trustee {
  std::string_view name;  // interned, decoded text; for AD trustees the directory's name
  std::string_view id;    // interned SID of an AD trustee; usually empty for Arbor trustees
  Rights rights = 0;
  bool ad = false;
};

struct FileEntry {
  std::string path;  // relative to the volume root, starting with '/'
  std::vector<Trustee> trustees;
  int irf = -1;  // -1: no filter set
};

struct UserQuota {
  bool ad = false;
  std::string name;
  std::string id;
  std::string amount;
  std::string used;
};

struct DirQuota {
  std::string path;  // relative, '/' separators
  std::string amount;
  std::string used;
};

struct VolumeInfo {
  std::string name;
  std::string mount;
  std::string shadow;
};

class Volume {
public:
  std::string name;
  std::string mount;
  std::string shadow;
  std::deque<FileEntry> files;
  std::vector<UserQuota> users;
  std::vector<DirQuota> dirs;
  /// The journal records of the changes made since the last take: every set and remove below
  /// appends the one line that replays it.
  std::string pending;

  /// Reads the state file; a missing file is an empty volume.
  bool load(const std::string &stateFile);
  /// Applies journal records (lines as `pending` holds them) in order; `pending` is left alone.
  void replay(std::string_view journal);
  /// The state file's text (grouped by file, one record a line).
  std::string text() const;
  /// Writes the state file.
  bool save(const std::string &stateFile) const;

  FileEntry *find(std::string_view path);
  FileEntry &findOrAdd(std::string_view path);
  /// Sets (or replaces) a trustee, keeping the order in which trustees were first added.
  void setTrustee(std::string_view path, const Trustee &t);
  /// Removes the first trustee the identifier names; returns 1, or 0 when none matches.
  int removeTrustees(std::string_view path, std::string_view id, bool adOnly);
  void setIrf(std::string_view path, Rights r);
  void setUserQuota(const UserQuota &q);
  void setDirQuota(const DirQuota &q);

  std::string trusteeInfo() const;
  std::string userInfo() const;
  std::string dirInfo() const;

private:
  std::unordered_map<std::string_view, FileEntry *> index_;
  bool indexed_ = false;
  void buildIndex();
};

struct Users {
  std::vector<std::string> arbor;                       // in order added
  std::vector<std::pair<std::string, std::string>> ad;  // (SID, name) in order added
  bool knowsArbor(std::string_view name) const;
  const std::string *adNameOfSid(std::string_view sid) const;
  const std::string *adSidOfName(std::string_view name) const;
  bool load(const std::string &file);
  bool save(const std::string &file) const;
};

/// The sandbox root from QUILLSIM_ROOT, or empty when the simulator is off.
std::string envRoot();

std::string simDir(const std::string &root);
std::string stateFile(const std::string &root, std::string_view volume);
std::string journalFile(const std::string &root, std::string_view volume);
std::string infoDir(const std::string &root, std::string_view volume);

std::vector<VolumeInfo> loadVolumes(const std::string &root);
bool saveVolumes(const std::string &root, const std::vector<VolumeInfo> &vols);
std::string mtabText(const std::vector<VolumeInfo> &vols);

/// Removes the generated info files of a volume so that the next open regenerates them.
void invalidateInfo(const std::string &root, std::string_view volume);
/// Writes the named info file ("TrusteeInfo.xml", ...) from the state if it is missing.
void ensureInfoFile(const std::string &root, const Volume &v, std::string_view file);

}  // namespace qs
