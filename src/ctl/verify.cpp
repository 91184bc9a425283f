// trovanctl verify VOL DOC [restore options]: is every entry of DOC in place on VOL? One row for
// each entry that is not; --remaining writes those entries as a document to apply.
#include <memory>

#include "ctl/account_rows.h"
#include "ctl/commands.h"
#include "ctl/plan_setup.h"
#include "ctl/plan_walk.h"
#include "ctl/restore_options.h"

namespace {

struct VerifyOptions {
  CheckOptions restore;
  std::string remaining;
};

struct VerifyCounts {
  unsigned long inPlace = 0, missing = 0, different = 0, skipped = 0;
};

int runVerify(VerifyOptions &options) {
  PlanSetup setup(options.restore);
  if (!setup.start("verify", options.remaining)) return kTrouble;
  EntryDocument &out = setup.out();
  Output &output = setup.output();
  VerifyCounts counts;
  const WalkResult walked =
      walkDocument(setup.plan(), setup.source(), [&](const PlannedEntry &planned) {
        if (planned.verdict == Verdict::inPlace) {
          ++counts.inPlace;
          return;
        }
        if (planned.verdict == Verdict::skipped) {
          ++counts.skipped;
          return;
        }
        const bool different = planned.verdict == Verdict::change;
        ++(different ? counts.different : counts.missing);
        Row row = entryRow("verify", different ? "different" : "missing", *planned.entry);
        if (different) row["reason"] = "the volume has " + planned.was;
        output.emit(row);
        out.write(*planned.entry);
      });
  if (!walked.ok) return kTrouble;
  output.emit(summaryRow("verify-summary", options.restore.volume, setup.source().label(),
                         {{"inPlace", counts.inPlace},
                          {"missing", counts.missing},
                          {"different", counts.different},
                          {"skipped", counts.skipped}}));
  if (!out.commit()) return kTrouble;
  return counts.missing + counts.different == 0 ? kClean : kFindings;
}

}  // namespace

CommandRun defineVerify(CLI::App &command) {
  auto options = std::make_shared<VerifyOptions>();
  defineRestoreOptions(command, options->restore);
  command
      .add_option("--remaining", options->remaining,
                  "write the entries not in place as a Metadata document")
      ->type_name("FILE");
  command.add_flag("--json", options->restore.json, "JSON Lines: one object a row, summary last");
  return [options]() { return runVerify(*options); };
}
