// What a restore of a document would change on a live volume: the volume's entries are read
// through its info files (trovan save's code) and held compactly by key; the document is then
// streamed against them, and every entry gets a verdict. What the volume holds beyond the
// document is what no document entry matched.
#pragma once
#include <functional>
#include <string>
#include <unordered_map>

#include "ctl/check_settings.h"
#include "model/entry.h"
#include "model/entry_index.h"
#include "model/entry_rules.h"
#include "model/finding.h"

enum class Verdict : std::uint8_t {
  add,      // not on the volume: a restore adds it
  change,   // on the volume with other rights or another amount: a restore sets it
  inPlace,  // on the volume as the document has it: nothing to send
  skipped,  // left out by the restore options (-m, -u, -f, the "no quota" amount)
  refused,  // never sent: its path would leave the volume or a value would carry markup
};

// One entry of the document and what a restore would do with it.
struct PlannedEntry {
  const Entry *entry = nullptr;  // as it would be sent (the -t tree name put in)
  Verdict verdict = Verdict::add;
  std::string was;     // change: the volume's rights letters or amount
  std::string flag;    // add/change refused predictably: "missing-path" or "unknown-sid"
  std::string reason;  // the flag's or the refusal's text
};

// The volume's name and mount point, and the options of the restore being planned.
class VolumePlan {
public:
  VolumePlan(const CheckOptions &options, const RestoreSettings &settings);

  // Leaves out the flags of entries that may be refused ("missing-path", "unknown-sid"): a run
  // that shows none of them (apply) spares a lookup per entry.
  void withoutFlags() { flagging_ = false; }

  // Reads the live volume. False after a message on standard error.
  bool readVolume();
  // Streams the document on `fd` against the volume. Every strict-reading finding goes to
  // `findings`, every entry to `visit` in document order. Returns 0, or the errno of a read error.
  int walk(int fd, const FindingSink &findings,
           const std::function<void(const PlannedEntry &)> &visit);
  // Every volume entry the document did not name; `inScope` when a restore with these options
  // would have sent it (a trustee in scope is what --prune removes).
  void forEachExtra(const std::function<void(const Entry &, bool inScope)> &visit) const;

private:
  void judge(PlannedEntry &planned, Entry &entry);
  void flagPredictable(PlannedEntry &planned, const Entry &entry);
  bool pathExists(const std::string &full);
  bool sidKnown(const std::string &sid);

  static constexpr std::size_t kSidCacheSize = 4096;

  const CheckOptions &options_;
  const RestoreSettings &settings_;
  EntryIndex volume_;
  RuleSettings rules_;
  Entry stored_;          // the volume's entry a document entry matched
  std::string full_;      // the path looked up for a flag
  std::string treeName_;  // a user's name with -t's tree name put in
  std::string lastPath_, lastFolder_;
  bool lastPathExists_ = false, lastFolderMissing_ = false;
  bool flagging_ = true;
  std::unordered_map<std::string, bool> sids_;
};

// The value an entry sets, for people: "[rwf]" for rights, the amount for a quota.
std::string entryValue(const Entry &entry);

// The verdict's word in rows: "add", "change", "in-place", "skip", "refuse".
const char *actionName(Verdict verdict);

// Whether a removeTrustee request can name this trustee: the file system removes a trustee by
// its identifier (an AD user's SID, or an Arbor trustee's id where it has one).
bool removableTrustee(const Entry &entry);
inline constexpr char kNoIdentifierReason[] =
    "not removable: the file system removes a trustee by its identifier, and this one has none";
