#include "ctl/restore_match.h"

#include <algorithm>

#include "document/completion_codes.h"
#include "document/records.h"
#include "document/xml_text.h"

namespace {

// Entries kept waiting for their request at most; older ones are judged not sent.
constexpr std::size_t kPendingLimit = 65536;

// The user of the kinds that name none.
const std::string kNoUser;

std::string describe(EntryKind kind, std::string_view user, std::string_view fileName) {
  std::string text(kindName(kind));
  if (!user.empty()) text.append(" of ").append(user);
  if (!fileName.empty()) text.append(" on ").append(fileName);
  return text;
}

std::string letters(RightsSet rights) { return "[" + rightsLetters(rights) + "]"; }

}  // namespace

RestoreMatch::RestoreMatch(DocumentReader &reader, const CheckOptions &options,
                           const RestoreSettings &settings, FindingSink findings,
                           std::function<void(const Entry &)> onEntry, unsigned long long readFrom)
    : reader_(reader), options_(options), settings_(settings), findings_(std::move(findings)),
      onEntry_(std::move(onEntry)), restoreOffset_(readFrom),
      sendsEveryFileEntry_(settings.trustees && settings.arborUsers && settings.adUsers &&
                           !settings.hasFilter) {}

// What a request for the entry should name is derived only when a finding needs it; the
// comparison looks at the entry's own texts.
void RestoreMatch::expect(Pending &pending) const {
  const Entry &entry = pending.entry;
  const bool fileEntry = entry.kind == EntryKind::trustee || entry.kind == EntryKind::filter;
  pending.expected =
      (fileEntry && sendsEveryFileEntry_) || wouldRestore(entry, options_, settings_);
  pending.ownUser = false;
  // trovan's own -t rule, on the name as the file system reads it.
  if (options_.treeGiven && entry.name.size() < kNameTextSize &&
      ((entry.kind == EntryKind::trustee && !entry.ad) || entry.kind == EntryKind::userQuota)) {
    char name[kNameTextSize];
    entry.name.copy(name, entry.name.size());
    name[entry.name.size()] = '\0';
    if (replaceTreeName(name, options_.tree.c_str(), sizeof name)) {
      pending.user = name;
      pending.ownUser = true;
    }
  }
}

const std::string &RestoreMatch::userOf(const Pending &pending) {
  const Entry &entry = pending.entry;
  if (pending.ownUser) return pending.user;
  if (entry.kind == EntryKind::trustee && entry.ad) return entry.id;
  if (entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota) return entry.name;
  return kNoUser;
}

std::string RestoreMatch::fileNameOf(const Pending &pending) const {
  std::string fileName;
  if (pending.entry.kind == EntryKind::userQuota) return fileName;
  // The mount point and the path in the one form entries are compared in.
  fileName.append(options_.mountPoint).append(pending.entry.path);
  if (pending.entry.kind == EntryKind::dirQuota)
    std::replace(fileName.begin() + static_cast<long>(options_.mountPoint.size()), fileName.end(),
                 '\\', '/');
  return fileName;
}

inline bool RestoreMatch::namesFile(const Pending &pending, std::string_view path) const {
  const std::string &own = pending.entry.path;
  if (path.size() != own.size()) return false;
  if (pending.entry.kind != EntryKind::dirQuota) return path == own;
  return std::equal(own.begin(), own.end(), path.begin(),
                    [](char mine, char sent) { return (mine == '\\' ? '/' : mine) == sent; });
}

bool RestoreMatch::pull() {
  if (readerDone_) return false;
  Pending &pending = pending_.pushBack();
  if (!reader_.next(pending.entry)) {
    pending_.popBack();
    readerDone_ = true;
    return false;
  }
  if (onEntry_) onEntry_(pending.entry);
  lastEntryAt_ = pending.entry.at;
  expect(pending);
  if (pending_.size() > kPendingLimit) dropThrough(0);
  return true;
}

void RestoreMatch::pullUpTo(unsigned long long offset) {
  while (!readerDone_ && (pending_.empty() || reader_.offset() < offset))
    if (!pull()) break;
}

void RestoreMatch::reportNotSent(const Pending &pending) {
  findings_({pending.entry.at, "not-sent",
             "trovan restore would send nothing for this " +
                 describe(pending.entry.kind, userOf(pending), fileNameOf(pending))});
}

// Removes the pending entries up to `index`, included; those before it that should have been
// sent never will be (trovan sends in document order).
void RestoreMatch::dropThrough(std::size_t index) {
  for (std::size_t at = 0; at < index; ++at)
    if (pending_[at].expected) reportNotSent(pending_[at]);
  pending_.popFront(index + 1);
}

namespace {

// Whether a request for the entry, expected, sets what the entry says: the usual case, in which
// compareValues() finds nothing.
inline bool sentAsWritten(const Entry &entry, bool expected, const SentRequestView &request) {
  if (!expected) return false;
  switch (entry.kind) {
  case EntryKind::trustee:
    return request.rights == entry.rights && !request.unknownRight && request.ad == entry.ad;
  case EntryKind::filter: return request.rights == entry.rights && !request.unknownRight;
  case EntryKind::userQuota:
  case EntryKind::dirQuota: break;
  }
  return request.amount == entry.amount;
}

}  // namespace

void RestoreMatch::compareValues(const Pending &pending, const SentRequestView &request) {
  const Entry &entry = pending.entry;
  // Words for the entry, made only for a finding.
  const auto what = [this, &pending] {
    return describe(pending.entry.kind, userOf(pending), fileNameOf(pending));
  };
  if (!pending.expected)
    findings_({entry.at, "unexpected-request",
               "trovan restore would send this " + what() + " although the options leave it out"});
  if ((entry.kind == EntryKind::trustee || entry.kind == EntryKind::filter) &&
      (request.rights != entry.rights || request.unknownRight))
    findings_({entry.at, "sent-otherwise",
               "trovan restore would send this " + what() + " with rights " +
                   letters(request.rights) +
                   (request.unknownRight ? " and elements that are not rights" : "") + ", not " +
                   letters(entry.rights)});
  if ((entry.kind == EntryKind::userQuota || entry.kind == EntryKind::dirQuota) &&
      request.amount != entry.amount)
    findings_({entry.at, "sent-otherwise",
               "trovan restore would send this " + what() + " with the amount \"" +
                   std::string(request.amount) + "\", not \"" + entry.amount + "\""});
  if (entry.kind == EntryKind::trustee && request.ad != entry.ad)
    findings_({entry.at, "sent-otherwise",
               "trovan restore would send this " + what() +
                   (request.ad ? " as an AD user" : " as an Arbor user")});
}

Position RestoreMatch::lastPosition() const {
  if (!pending_.empty()) return pending_.back().entry.at;
  if (reader_.failed()) return reader_.position();
  return lastEntryAt_;
}

void RestoreMatch::reportUnmatched(const SentRequestView &request) {
  const EntryKind kind = entryKindOf(request.kind);
  std::string what = describe(kind, request.user, request.fileName);
  if (kind == EntryKind::trustee || kind == EntryKind::filter)
    what += " " + letters(request.rights);
  if (kind == EntryKind::userQuota || kind == EntryKind::dirQuota)
    what.append(" ").append(request.amount);
  if (reader_.failed() && pending_.empty())
    findings_({reader_.position(), "unexpected-request",
               "past the point where the document stops being XML, trovan restore would still "
               "send this " +
                   what});
  else
    findings_(
        {lastPosition(), "unexpected-request",
         "trovan restore would send this " + what + ", which no entry of the document asks for"});
}

namespace {

// The request kind named in bytes that are not one of trovan's forms, for the count.
RequestKind guessKind(std::string_view bytes) {
  if (bytes.find("<modifyInheritedRightsFilter>") != std::string_view::npos)
    return RequestKind::modifyInheritedRightsFilter;
  if (bytes.find("<userSpaceRestrictions>") != std::string_view::npos)
    return RequestKind::userSpaceRestrictions;
  if (bytes.find("<directoryQuota>") != std::string_view::npos) return RequestKind::addQuota;
  return RequestKind::addTrustee;
}

// What a restore's status means, said at an entry ("before this entry") or elsewhere.
std::string statusText(int status, bool atEntry) {
  if (status == kEndOfInput)
    return "trovan restore would end with status 157 here: the document ends before </metadata>";
  return "trovan restore would stop with status " + std::to_string(status & 0xff) +
         (atEntry ? " before this entry" : "");
}

}  // namespace

void RestoreMatch::request(std::string_view bytes, RestorePlace place) {
  restoreOffset_ = place.read;
  pullUpTo(place.parsed);
  SentRequestView request;
  if (!readSentRequest(bytes, request, sentRequest_)) {
    ++sent_[static_cast<int>(guessKind(bytes))];
    std::size_t index = 0;
    while (index < pending_.size() && !pending_[index].expected)
      ++index;
    const Position at = index < pending_.size() ? pending_[index].entry.at : lastPosition();
    findings_({at, "malformed-request",
               "trovan restore would send a request that is none of its forms: " +
                   std::string(bytes.substr(0, 160)) + (bytes.size() > 160 ? "..." : "")});
    if (index < pending_.size()) dropThrough(index);
    return;
  }
  match(request);
}

void RestoreMatch::readRequest(const SentRequestView &request, RestorePlace place) {
  restoreOffset_ = place.read;
  pullUpTo(place.parsed);
  match(request);
}

inline bool RestoreMatch::sameTarget(const Pending &pending, const Target &target) const {
  const EntryKind kind = pending.entry.kind;
  if (kind != target.kind) return false;
  if (kind == EntryKind::userQuota) return userOf(pending) == target.user;
  if (!target.inVolume || !namesFile(pending, target.path)) return false;
  return kind != EntryKind::trustee || userOf(pending) == target.user;
}

// Finds the entry a request is for and compares the two.
void RestoreMatch::match(const SentRequestView &request) {
  ++sent_[static_cast<int>(request.kind)];
  // The request's file name split once, for all the entries it is set against.
  Target target{entryKindOf(request.kind), false, request.fileName, request.user};
  target.inVolume = target.path.starts_with(options_.mountPoint);
  if (target.inVolume) target.path.remove_prefix(options_.mountPoint.size());
  for (std::size_t at = 0; at < pending_.size(); ++at) {
    const Pending &pending = pending_[at];
    if (!sameTarget(pending, target)) continue;
    if (!sentAsWritten(pending.entry, pending.expected, request)) compareValues(pending, request);
    dropThrough(at);
    return;
  }
  matchElsewhere(request);
}

// A request that names no entry waiting: the entry it was for, sent to another file or user, or
// none.
void RestoreMatch::matchElsewhere(const SentRequestView &request) {
  // The first entry still waiting for its request, when the request is of its kind but names
  // another file or user: that is where its request went.
  std::size_t first = 0;
  while (first < pending_.size() && !pending_[first].expected)
    ++first;
  const EntryKind kind = entryKindOf(request.kind);
  // A trustee is known by its user first: the same user on another path is where it went.
  for (std::size_t at = first; kind == EntryKind::trustee && at < pending_.size(); ++at) {
    const Pending &pending = pending_[at];
    if (pending.entry.kind != kind || userOf(pending) != request.user) continue;
    findings_({pending.entry.at, "lands-elsewhere",
               "trovan restore would add this trustee of " + userOf(pending) + " to " +
                   std::string(request.fileName) + ", not to " + fileNameOf(pending)});
    dropThrough(at);
    return;
  }
  if (first < pending_.size() && pending_[first].entry.kind == kind &&
      kind != EntryKind::userQuota) {
    const Pending &pending = pending_[first];
    const std::string fileName = fileNameOf(pending);
    const std::string &user = userOf(pending);
    if (fileName == request.fileName && kind == EntryKind::trustee &&
        pending.entry.ad != request.ad)
      findings_({pending.entry.at, "sent-otherwise",
                 "trovan restore would send this trustee on " + fileName + " as the " +
                     (request.ad ? "AD user " : "Arbor user ") + std::string(request.user) +
                     ", not as the " + (pending.entry.ad ? "AD user " : "Arbor user ") + user});
    else if (fileName == request.fileName)
      findings_({pending.entry.at, "sent-for-another-user",
                 "trovan restore would send this " + std::string(kindName(kind)) + " on " +
                     fileName + " for " + std::string(request.user) + ", not for " + user});
    else
      findings_({pending.entry.at, "lands-elsewhere",
                 "trovan restore would send this " + std::string(kindName(kind)) + " to " +
                     std::string(request.fileName) + ", not to " + fileName});
    dropThrough(first);
    return;
  }
  reportUnmatched(request);
}

void RestoreMatch::finish(int status, int signal) {
  pullUpTo(restoreOffset_);
  std::size_t first = 0;
  while (first < pending_.size() && !pending_[first].expected)
    ++first;
  // A restore that stops (not one whose input ends early) sends nothing from the entry it
  // stopped before: one finding says so for all of them.
  const bool stopped = signal != 0 || (status != 0 && status != kEndOfInput);
  if (stopped && first < pending_.size()) {
    const Position at = pending_[first].entry.at;
    while (pull()) {
    }
    unsigned long after = 0;
    for (std::size_t index = first + 1; index < pending_.size(); ++index)
      if (pending_[index].expected) ++after;
    pending_.clear();
    const std::string cause = signal != 0 ? "trovan restore would end its process with signal " +
                                                std::to_string(signal) + " before this entry"
                                          : statusText(status, true);
    findings_({at, "restore-stops",
               cause + ": nothing is sent for it" +
                   (after == 0   ? std::string()
                    : after == 1 ? std::string(" or the entry after it")
                                 : " or the " + std::to_string(after) + " entries after it")});
    return;
  }
  while (pull()) {
  }
  for (std::size_t index = 0; index < pending_.size(); ++index)
    if (pending_[index].expected) reportNotSent(pending_[index]);
  pending_.clear();
  if (signal != 0 || status != 0)
    findings_({reader_.position(), "restore-stops",
               signal != 0
                   ? "trovan restore would end its process with signal " + std::to_string(signal)
                   : statusText(status, false)});
}

void RestoreMatch::drain() {
  while (pull())
    pending_.clear();
}
