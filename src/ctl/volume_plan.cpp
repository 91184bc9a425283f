#include "ctl/volume_plan.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ctl/document_operand.h"
#include "ctl/entry_request.h"
#include "ctl/output.h"
#include "ctl/scratch_file.h"
#include "document/records.h"
#include "document/xml_text.h"
#include "model/document_reader.h"
#include "model/entry_rules.h"
#include "save/identity_library.h"

namespace {

bool ofUser(const Entry &entry) {
  return entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota;
}

// Whether the rights elements as written fit trovan's field (a list in table order always does).
bool rightsFit(const Entry &entry) {
  if (entry.rights.written().empty()) return true;
  std::string elements;
  writtenElements(entry.rights, elements);
  return elements.size() < kRightsListSize;
}

// Why trovan's restore would send nothing for an entry it reads, or stop at it; "" when it sends.
std::string incomplete(const Entry &entry) {
  if ((entry.kind == EntryKind::trustee || entry.kind == EntryKind::filter) && !rightsFit(entry))
    return "the rights elements do not fit their field";
  switch (entry.kind) {
  case EntryKind::trustee:
    if (entry.ad && entry.id.empty()) return "an AD trustee without an id stops trovan restore";
    if (!entry.ad && entry.name.empty()) return "a trustee without a name stops trovan restore";
    return "";
  case EntryKind::filter: return entry.path.empty() ? "no path" : "";
  case EntryKind::userQuota:
    if (entry.name.empty()) return "a user quota without a name is never sent";
    [[fallthrough]];
  case EntryKind::dirQuota:
    if (entry.amount.empty()) return "a quota without an amount is never sent";
    return entry.kind == EntryKind::dirQuota && entry.path.empty() ? "no path" : "";
  }
  return "";
}

bool sameValue(const Entry &a, const Entry &b) {
  if (a.kind == EntryKind::trustee || a.kind == EntryKind::filter) return a.rights == b.rights;
  return a.amount == b.amount;
}

}  // namespace

std::string entryValue(const Entry &entry) {
  if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::filter)
    return "[" + rightsLetters(entry.rights) + "]";
  return entry.amount;
}

VolumePlan::VolumePlan(const CheckOptions &options, const RestoreSettings &settings)
    : options_(options), settings_(settings) {
  rules_.mountPoint = options.mountPoint;
}

bool VolumePlan::readVolume() {
  const int fd = scratchFile();
  if (fd < 0) {
    reportError("cannot make a temporary file: " + std::string(std::strerror(errno)));
    return false;
  }
  const int code = saveVolumeTo(options_.volume, fd);
  if (code != 0 || lseek(fd, 0, SEEK_SET) != 0) {
    close(fd);
    reportError("volume " + options_.volume + " could not be read (trovan save code " +
                std::to_string(code) + ")");
    return false;
  }
  bool wellFormed = true;
  {
    DocumentReader reader(fd, [](Finding) {});
    Entry entry;
    while (reader.next(entry))
      volume_.add(entry);
    wellFormed = !reader.failed() && reader.readError() == 0;
  }
  close(fd);
  if (!wellFormed) reportError("volume " + options_.volume + ": its info files could not be read");
  return wellFormed;
}

// Whether `full` names something: a path as the one before is answered as it was, and under a
// directory found missing nothing is looked up (it cannot be there either).
bool VolumePlan::pathExists(const std::string &full) {
  if (full == lastPath_) return lastPathExists_;
  lastPath_ = full;
  const std::size_t slash = full.rfind('/');
  const std::string_view folder(full.data(), slash == std::string::npos ? 0 : slash);
  if (folder.empty() || folder != lastFolder_) {
    lastFolder_.assign(folder);
    struct stat info;
    lastFolderMissing_ = !folder.empty() && stat(lastFolder_.c_str(), &info) != 0;
  }
  struct stat info;
  lastPathExists_ = !lastFolderMissing_ && stat(full.c_str(), &info) == 0;
  return lastPathExists_;
}

// Whether the identity library resolves `sid`, each SID asked once (up to a bound).
bool VolumePlan::sidKnown(const std::string &sid) {
  if (const auto known = sids_.find(sid); known != sids_.end()) return known->second;
  if (sids_.size() >= kSidCacheSize) sids_.clear();
  const bool known = sidNamesExistingUser(sid.c_str());
  sids_.emplace(sid, known);
  return known;
}

void VolumePlan::flagPredictable(PlannedEntry &planned, const Entry &entry) {
  if (entry.kind != EntryKind::userQuota) {
    full_ = options_.mountPoint;
    full_ += entry.path;
    if (entry.kind == EntryKind::dirQuota)
      std::replace(full_.begin() + static_cast<long>(options_.mountPoint.size()), full_.end(), '\\',
                   '/');
    if (!pathExists(full_)) {
      planned.flag = "missing-path";
      planned.reason = "no such file under the mount point: " + full_;
      return;
    }
  }
  if (entry.kind == EntryKind::trustee && entry.ad && !sidKnown(entry.id)) {
    planned.flag = "unknown-sid";
    planned.reason = "the identity library does not resolve " + entry.id;
  }
}

void VolumePlan::judge(PlannedEntry &planned, Entry &entry) {
  if (!wouldRestore(entry, options_, settings_)) {
    planned.verdict = Verdict::skipped;
    return;
  }
  std::string why = incomplete(entry);
  // trovan sends nothing for a user whose name no longer fits its field once -t puts the tree
  // name in (its raw text, as trovan's reader takes it).
  if (why.empty() && options_.treeGiven && ofUser(entry) &&
      !putTreeName(entry.rawName, options_, treeName_))
    why = kTreeNameDoesNotFit;
  if (!why.empty()) {
    planned.verdict = Verdict::refused;
    planned.flag = "incomplete";
    planned.reason = why;
    return;
  }
  checkEntryRules(entry, rules_, [&planned](Finding finding) {
    if (planned.verdict == Verdict::refused) return;
    planned.verdict = Verdict::refused;
    planned.flag = finding.code;
    planned.reason = finding.message;
  });
  if (planned.verdict == Verdict::refused) return;
  // An Arbor user is matched with the volume's under the name the restore gives it.
  if (options_.treeGiven && ofUser(entry) && !entry.ad &&
      putTreeName(entry.name, options_, treeName_))
    entry.name.swap(treeName_);
  if (volume_.match(entry, stored_)) {
    if (sameValue(entry, stored_)) {
      planned.verdict = Verdict::inPlace;
      return;
    }
    planned.verdict = Verdict::change;
    planned.was = entryValue(stored_);
  }
  if (flagging_) flagPredictable(planned, entry);
}

int VolumePlan::walk(int fd, const FindingSink &findings,
                     const std::function<void(const PlannedEntry &)> &visit) {
  DocumentReader reader(fd, findings);
  Entry entry;
  while (reader.next(entry)) {
    PlannedEntry planned;
    planned.entry = &entry;
    judge(planned, entry);
    visit(planned);
  }
  return reader.readError();
}

void VolumePlan::forEachExtra(const std::function<void(const Entry &, bool)> &visit) const {
  volume_.forEachUnmatched([&](const Entry &entry) {
    Entry scoped = entry;
    scoped.rawPath = entry.path;
    visit(entry, wouldRestore(scoped, options_, settings_));
  });
}

const char *actionName(Verdict verdict) {
  switch (verdict) {
  case Verdict::add: return "add";
  case Verdict::change: return "change";
  case Verdict::inPlace: return "in-place";
  case Verdict::skipped: return "skip";
  case Verdict::refused: break;
  }
  return "refuse";
}

bool removableTrustee(const Entry &entry) {
  return entry.kind == EntryKind::trustee && !entry.id.empty();
}
