// trovanctl apply VOL DOC [restore options]: sends the volume only what the document changes,
// after the document has been checked, with one apply per volume at a time.
#include <memory>

#include "ctl/apply_run.h"
#include "ctl/commands.h"
#include "ctl/restore_options.h"
#include "ctl/volume_lock.h"

namespace {

void onStopSignal(int signal) { applyStopSignal = signal; }

// SIGINT and SIGTERM let the request in flight finish; the run then stops sending. A read or
// write the signal comes in is taken up again, so that no reply and no line of the account is
// lost to it (the account may be going to a pipe that is slow to empty).
void catchStopSignals() {
  struct sigaction action {};
  action.sa_handler = onStopSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int runApply(ApplyOptions &options) {
  RestoreSettings settings;
  if (!resolveRestoreOptions("apply", options.restore, settings)) return kTrouble;
  VolumeLock lock;
  if (!lock.take(options.restore.volume, options.restore.mountPoint, !options.noWait))
    return kTrouble;
  catchStopSignals();
  ApplyRun run(options, settings);
  return run.run();
}

}  // namespace

CommandRun defineApply(CLI::App &command) {
  auto options = std::make_shared<ApplyOptions>();
  defineRestoreOptions(command, options->restore);
  command.add_flag("--prune", options->prune,
                   "also remove the trustees the document does not hold");
  command.add_flag("--force", options->force,
                   "send the changes even when the check finds problems");
  command
      .add_option("--rejects", options->rejects, "write the refused entries as a Metadata document")
      ->type_name("FILE");
  command.add_flag("--no-wait", options->noWait,
                   "exit at once when another apply holds the volume");
  command.add_flag("--progress", options->progress,
                   "show progress even when stderr is no terminal");
  command.add_flag("--quiet", options->quiet, "show no progress");
  command.add_flag("--json", options->restore.json,
                   "JSON Lines: one object an entry, summary last");
  return [options]() { return runApply(*options); };
}
