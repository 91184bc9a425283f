#include "ctl/plan_walk.h"

#include <cstring>

#include "ctl/output.h"

WalkResult walkDocument(VolumePlan &plan, DocumentSource &source,
                        const std::function<void(const PlannedEntry &)> &visit) {
  WalkResult result;
  const std::string &file = source.label();
  const FindingSink findings = [&](Finding finding) {
    ++result.findings;
    if (finding.code == "not-well-formed" || finding.code == "doctype") result.ok = false;
    reportError(file, finding.at.line, finding.at.column, finding.message);
  };
  if (const int error = plan.walk(source.first(), findings, visit); error != 0) {
    reportError(file + ": " + std::strerror(error));
    result.ok = false;
  }
  return result;
}
