// The start that plan and verify share: the restore options resolved, the live volume read, the
// document opened (read once), the optional entry document (--out, --remaining) and the output.
#pragma once
#include <optional>
#include <string>

#include "ctl/check_settings.h"
#include "ctl/document_source.h"
#include "ctl/entry_document.h"
#include "ctl/output.h"
#include "ctl/volume_plan.h"

class PlanSetup {
public:
  explicit PlanSetup(CheckOptions &options);
  // `command` names the command in messages; `outName` is the entry document ("" for none).
  // False after a message.
  bool start(const char *command, const std::string &outName);

  VolumePlan &plan() { return *plan_; }
  DocumentSource &source() { return *source_; }
  EntryDocument &out() { return out_; }
  Output &output() { return output_; }

private:
  CheckOptions &options_;
  RestoreSettings settings_;
  std::optional<VolumePlan> plan_;
  std::optional<DocumentSource> source_;
  EntryDocument out_;
  Output output_;
};
