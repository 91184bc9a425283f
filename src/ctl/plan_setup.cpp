#include "ctl/plan_setup.h"

#include "ctl/restore_options.h"

PlanSetup::PlanSetup(CheckOptions &options)
    : options_(options), output_(options.json ? Format::json : Format::text) {}

bool PlanSetup::start(const char *command, const std::string &outName) {
  if (!resolveRestoreOptions(command, options_, settings_)) return false;
  plan_.emplace(options_, settings_);
  if (!plan_->readVolume()) return false;
  source_.emplace(options_.document, DocumentSource::once);
  if (!source_->ok()) {
    reportError(source_->error());
    return false;
  }
  return out_.open(outName);
}
