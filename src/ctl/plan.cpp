// trovanctl plan VOL DOC [restore options]: what a restore of DOC would change on VOL, entry by
// entry, and what VOL holds beyond DOC. --out writes the changes alone as a document.
#include <memory>

#include "ctl/account_rows.h"
#include "ctl/commands.h"
#include "ctl/plan_setup.h"
#include "ctl/plan_walk.h"
#include "ctl/restore_options.h"

namespace {

struct PlanOptions {
  CheckOptions restore;
  std::string out;
  bool prune = false;
};

struct PlanCounts {
  unsigned long add = 0, change = 0, inPlace = 0, skipped = 0, refused = 0, flagged = 0;
  unsigned long extra = 0, remove = 0;
};

void countAndShow(const PlannedEntry &planned, PlanCounts &counts, Output &output) {
  const Entry &entry = *planned.entry;
  switch (planned.verdict) {
  case Verdict::inPlace: ++counts.inPlace; return;
  case Verdict::skipped: ++counts.skipped; return;
  case Verdict::refused: ++counts.refused; break;
  case Verdict::add: ++counts.add; break;
  case Verdict::change: ++counts.change; break;
  }
  Row row = entryRow("plan", actionName(planned.verdict), entry);
  if (planned.verdict == Verdict::change) row["was"] = planned.was;
  if (!planned.flag.empty()) {
    if (planned.verdict != Verdict::refused) ++counts.flagged;
    row["flag"] = planned.flag;
    row["reason"] = planned.reason;
  }
  output.emit(row);
}

int runPlan(PlanOptions &options) {
  PlanSetup setup(options.restore);
  if (!setup.start("plan", options.out)) return kTrouble;
  VolumePlan &plan = setup.plan();
  EntryDocument &out = setup.out();
  Output &output = setup.output();
  PlanCounts counts;
  const WalkResult walked = walkDocument(plan, setup.source(), [&](const PlannedEntry &planned) {
    countAndShow(planned, counts, output);
    if (planned.verdict == Verdict::add || planned.verdict == Verdict::change)
      out.write(*planned.entry);
  });
  if (!walked.ok) return kTrouble;
  plan.forEachExtra([&](const Entry &entry, bool inScope) {
    ++counts.extra;
    const bool remove = options.prune && inScope && removableTrustee(entry);
    if (remove) ++counts.remove;
    Row row = entryRow("plan", remove ? "remove" : "extra", entry);
    if (options.prune && inScope && entry.kind == EntryKind::trustee && !remove)
      row["reason"] = kNoIdentifierReason;
    output.emit(row);
  });
  output.emit(summaryRow("plan-summary", options.restore.volume, setup.source().label(),
                         {{"add", counts.add},
                          {"change", counts.change},
                          {"inPlace", counts.inPlace},
                          {"skipped", counts.skipped},
                          {"refused", counts.refused},
                          {"flagged", counts.flagged},
                          {"extra", counts.extra},
                          {"remove", counts.remove}}));
  if (!out.commit()) return kTrouble;
  const unsigned long pending = counts.add + counts.change + counts.refused + counts.remove;
  return pending == 0 ? kClean : kFindings;
}

}  // namespace

CommandRun definePlan(CLI::App &command) {
  auto options = std::make_shared<PlanOptions>();
  defineRestoreOptions(command, options->restore);
  command.add_option("--out", options->out, "write the changes alone as a Metadata document")
      ->type_name("FILE");
  command.add_flag("--prune", options->prune,
                   "also remove the trustees the document does not hold");
  command.add_flag("--json", options->restore.json, "JSON Lines: one object a row, summary last");
  return [options]() { return runPlan(*options); };
}
