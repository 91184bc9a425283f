// One run of trovanctl apply: the plan of the document against the volume (the document read
// once), the changes set aside meanwhile, then each change sent as trovan restore sends it (its
// request builders, its admin channel), with an account of every entry, the refused ones as a
// document, progress, and a clean stop on SIGINT or SIGTERM.
#pragma once
#include <csignal>
#include <string>

#include "ctl/check_settings.h"
#include "ctl/command_files.h"
#include "ctl/entry_document.h"
#include "ctl/entry_request.h"
#include "ctl/entry_spool.h"
#include "ctl/output.h"
#include "ctl/volume_plan.h"

struct ApplyOptions {
  CheckOptions restore;
  std::string rejects;
  bool prune = false;
  bool force = false;
  bool noWait = false;
  bool progress = false;
  bool quiet = false;
};

struct ApplyCounts {
  unsigned long applied = 0, inPlace = 0, refused = 0, skipped = 0, removed = 0, notSent = 0;
  unsigned long changes = 0, removals = 0;
};

// The signal that asked the run to stop (SIGINT, SIGTERM), or 0.
extern volatile std::sig_atomic_t applyStopSignal;

class ApplyRun {
public:
  ApplyRun(ApplyOptions &options, RestoreSettings &settings);
  ~ApplyRun();
  // Returns the exit status.
  int run();

private:
  bool planChanges(const std::string &label);
  bool sendChanges();
  void pruneExtras();
  void sendOne(const Entry &entry);
  void account(const Entry &entry, const ReplyOutcome &outcome);
  void show(const char *action, const Entry &entry);
  void reject(const Entry &entry);
  int finish(const std::string &label);

  ApplyOptions &options_;
  VolumePlan plan_;
  Output output_;
  ApplyCounts counts_;
  EntryRequests requests_;
  CommandFiles commandFiles_;
  EntrySpool changes_;
  int progressFd_ = -1;
  EntryDocument rejects_;
  std::string line_;  // the text line being written
};
