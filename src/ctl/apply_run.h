// One run of trovanctl apply: the plan of the document against the volume, then the changes
// alone written as a canonical document and sent by trovan's own restore walkers (its one request
// builder, each request handed to the command file of its envelope), with an account of every
// entry, the refused ones as a document, progress, and a clean stop on SIGINT or SIGTERM.
#pragma once
#include <csignal>
#include <string>

#include "ctl/check_settings.h"
#include "ctl/command_files.h"
#include "ctl/entry_document.h"
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
  void account(const Entry &entry, const ReplyOutcome &outcome);
  void reject(const Entry &entry);
  int finish(const std::string &label);

  ApplyOptions &options_;
  RestoreSettings &settings_;
  VolumePlan plan_;
  Output output_;
  ApplyCounts counts_;
  CommandFiles commandFiles_;
  std::string changesName_;
  int changesFd_ = -1;
  int progressFd_ = -1;
  EntryDocument rejects_;
};
