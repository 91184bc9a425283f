#include "save/save_plan.h"

#include "cli/options.h"

SavePlan planSave(const MaskFlags &mask, bool haveRxlTrusteeFile) {
  SavePlan plan;
  plan.userQuotas = mask.userQuotas != 0;
  plan.dirQuotas = mask.dirQuotas != 0;
  if (mask.removeInvalid) {
    if (mask.trustees)
      plan.trustees =
          haveRxlTrusteeFile ? TrusteeSource::rxlFile : TrusteeSource::removalThenInfoFile;
    else if (!mask.userQuotas && !mask.dirQuotas)
      plan.trustees = TrusteeSource::removalThenInfoFile;
  } else if (mask.trustees) {
    plan.trustees = haveRxlTrusteeFile ? TrusteeSource::rxlFile : TrusteeSource::infoFile;
  }
  return plan;
}
