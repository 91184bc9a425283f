#include "ctl/apply_run.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "channel/admin_channel.h"
#include "ctl/account_rows.h"
#include "ctl/apply_progress.h"
#include "ctl/commands.h"
#include "ctl/document_source.h"
#include "ctl/entry_request.h"
#include "ctl/plan_walk.h"
#include "save/invalid_trustees.h"

volatile std::sig_atomic_t applyStopSignal = 0;

namespace {

// Standard error pointed elsewhere for a while (trovan's walkers print their own refusal lines,
// which the account replaces), and given back.
class StderrAside {
public:
  StderrAside() {
    std::fflush(stderr);
    saved_ = dup(2);
    const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null >= 0) {
      dup2(null, 2);
      close(null);
    }
  }
  ~StderrAside() {
    std::fflush(stderr);
    if (saved_ >= 0) {
      dup2(saved_, 2);
      close(saved_);
    }
  }
  StderrAside(const StderrAside &) = delete;
  StderrAside &operator=(const StderrAside &) = delete;

private:
  int saved_ = -1;
};

}  // namespace

ApplyRun::ApplyRun(ApplyOptions &options, RestoreSettings &settings)
    : options_(options), plan_(options.restore, settings),
      output_(options.restore.json ? Format::json : Format::text), requests_(options.restore) {
  plan_.withoutFlags();  // the account shows what the server answers instead
  const bool wanted = options.progress || isatty(2);
  if (wanted && !options.quiet) progressFd_ = dup(2);
}

ApplyRun::~ApplyRun() {
  if (progressFd_ >= 0) close(progressFd_);
}

void ApplyRun::reject(const Entry &entry) { rejects_.write(entry); }

// An entry's row with nothing added; in text, its line is made without the row.
void ApplyRun::show(const char *action, const Entry &entry) {
  if (output_.format() == Format::text) {
    outcomeLine(line_, action, entry);
    output_.line(line_);
  } else {
    output_.emit(entryRow("apply", action, entry));
  }
}

// The plan: rows for what is not sent, and the changes set aside.
bool ApplyRun::planChanges(const std::string &label) {
  if (const int error = changes_.open(); error != 0) {
    reportError("apply: cannot make a temporary file: " + std::string(std::strerror(error)));
    return false;
  }
  DocumentSource source(options_.restore.document, DocumentSource::once);
  if (!source.ok()) {
    reportError(source.error());
    return false;
  }
  const WalkResult walked = walkDocument(plan_, source, [&](const PlannedEntry &planned) {
    switch (planned.verdict) {
    case Verdict::add:
    case Verdict::change: changes_.write(*planned.entry); return;
    case Verdict::inPlace:
      ++counts_.inPlace;
      show(actionName(planned.verdict), *planned.entry);
      return;
    case Verdict::skipped:
      ++counts_.skipped;
      show(actionName(planned.verdict), *planned.entry);
      return;
    case Verdict::refused: break;
    }
    ++counts_.refused;
    reject(*planned.entry);
    Row row = entryRow("apply", actionName(planned.verdict), *planned.entry);
    row["reason"] = "never sent: " + planned.reason;
    output_.emit(row);
  });
  counts_.changes = changes_.count();
  if (const int error = changes_.rewind(); error != 0) {
    reportError("apply: temporary file: " + std::string(std::strerror(error)));
    return false;
  }
  if (!walked.ok) return false;
  const unsigned long findings = walked.findings + counts_.refused;
  if (findings > 0 && !options_.force) {
    reportError("apply: " + label + ": " + std::to_string(findings) +
                " problem(s) found (see trovanctl check); nothing sent. --force sends the "
                "changes anyway");
    return false;
  }
  return true;
}

void ApplyRun::account(const Entry &entry, const ReplyOutcome &outcome) {
  if (!outcome.sent && outcome.error == 0) {
    ++counts_.notSent;  // interrupted: the next run sends it
    return;
  }
  const bool applied = outcome.sent && outcome.result == 0;
  ++(applied ? counts_.applied : counts_.refused);
  if (applied) {
    show("applied", entry);
    return;
  }
  Row row = entryRow("apply", "refused", entry);
  if (outcome.error != 0) {
    row["reason"] = std::string("the command file failed: ") + std::strerror(outcome.error);
  } else if (outcome.result == -1) {
    row["reason"] = "the reply is not one to this request, or holds no result";
  } else {
    row["result"] = outcome.result;
    row["description"] = outcome.description;
  }
  reject(entry);
  output_.emit(row);
}

// One change: its request, as trovan restore would send it, through the channel.
void ApplyRun::sendOne(const Entry &entry) {
  ReplyOutcome outcome;
  if (applyStopSignal != 0) {
    account(entry, outcome);  // not sent: the next run sends it
    return;
  }
  EntryRequest request;
  if (!requests_.build(entry, request)) {
    ++counts_.refused;
    reject(entry);
    Row row = entryRow("apply", "refused", entry);
    row["reason"] = "never sent: " + std::string(requests_.why());
    output_.emit(row);
    return;
  }
  commandFiles_.exchange(request.length, request.replyElement, request.volumeRequest, outcome);
  account(entry, outcome);
}

// Sends the changes set aside, one request each, in document order.
bool ApplyRun::sendChanges() {
  if (counts_.changes == 0) return true;
  ApplyProgress progress(progressFd_, counts_.changes);
  reflectOnGemel = options_.restore.noGemel ? 0 : 1;
  unsigned long done = 0;
  Entry entry;
  {
    StderrAside aside;  // the channel's own messages: the account says it all
    while (changes_.read(entry)) {
      sendOne(entry);
      progress.update(++done, counts_.refused);
    }
  }
  progress.end(done, counts_.refused);
  if (changes_.error() != 0) {
    reportError("apply: temporary file: " + std::string(std::strerror(changes_.error())));
    return false;
  }
  return true;
}

// --prune: the trustees in the restore's scope that the document does not hold, removed with
// the request trovan save sends for invalid trustees.
void ApplyRun::pruneExtras() {
  if (!options_.prune) return;
  StderrAside aside;  // the channel's own messages: the account says it all
  plan_.forEachExtra([&](const Entry &entry, bool inScope) {
    if (!inScope || entry.kind != EntryKind::trustee) return;
    if (!removableTrustee(entry)) {
      Row row = entryRow("apply", "kept", entry);
      row["reason"] = kNoIdentifierReason;
      output_.emit(row);
      return;
    }
    if (applyStopSignal != 0) {
      ++counts_.notSent;
      return;
    }
    const std::string fileName = options_.restore.volume + ":" + entry.path;
    const std::size_t length = buildTrusteeRemoval(entry.ad, fileName, entry.id);
    ReplyOutcome outcome;
    commandFiles_.exchange(length, "removeTrustee", false, outcome);
    const bool removed = outcome.sent && outcome.error == 0 && outcome.result == 0;
    ++(removed ? counts_.removed : counts_.refused);
    Row row = entryRow("apply", removed ? "removed" : "refused", entry);
    if (outcome.error != 0) {
      row["reason"] = std::string("the command file failed: ") + std::strerror(outcome.error);
    } else if (!removed) {
      row["result"] = outcome.result;
      row["description"] = outcome.description;
    }
    output_.emit(row);
  });
}

int ApplyRun::finish(const std::string &label) {
  Row row = summaryRow("apply-summary", options_.restore.volume, label,
                       {{"applied", counts_.applied},
                        {"inPlace", counts_.inPlace},
                        {"refused", counts_.refused},
                        {"skipped", counts_.skipped},
                        {"removed", counts_.removed},
                        {"notSent", counts_.notSent}});
  if (applyStopSignal != 0) row["interrupted"] = applyStopSignal == SIGINT ? "SIGINT" : "SIGTERM";
  output_.emit(row);
  std::fflush(stdout);
  if (!rejects_.commit()) return kTrouble;
  if (applyStopSignal != 0) return 128 + applyStopSignal;
  return counts_.refused > 0 ? kFindings : kClean;
}

int ApplyRun::run() {
  if (!plan_.readVolume()) return kTrouble;
  if (!rejects_.open(options_.rejects)) return kTrouble;
  const std::string label =
      options_.restore.document == "-" ? "(standard input)" : options_.restore.document;
  if (!planChanges(label)) return kTrouble;
  if (counts_.changes > 0 || options_.prune) {
    if (!commandFiles_.open()) return kTrouble;
    if (replyBuffer == nullptr && !allocateReplyBuffer()) {
      reportError("apply: out of memory");
      return kTrouble;
    }
  }
  const bool sent = sendChanges();
  if (sent) pruneExtras();
  const int status = finish(label);
  freeReplyBuffer();
  return sent ? status : kTrouble;
}
