// The document side of plan, apply and verify: the operand streamed against the volume, its
// strict-reading findings shown on standard error as they come.
#pragma once
#include <functional>

#include "ctl/document_source.h"
#include "ctl/volume_plan.h"

struct WalkResult {
  bool ok = true;              // false: the document could not be read through (after a message)
  unsigned long findings = 0;  // strict-reading findings, fatal or not
};

WalkResult walkDocument(VolumePlan &plan, DocumentSource &source,
                        const std::function<void(const PlannedEntry &)> &visit);
