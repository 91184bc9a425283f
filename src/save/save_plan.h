// Which sections a save writes and whether it first removes invalid trustees, from the mask.
#pragma once

struct MaskFlags;

enum class TrusteeSource {
  none,                // no trustee section
  infoFile,            // copied from TrusteeInfo.xml
  rxlFile,             // generated from the RXL trustee file
  removalThenInfoFile  // invalid trustees removed first, then copied from TrusteeInfo.xml
};

struct SavePlan {
  TrusteeSource trustees = TrusteeSource::none;
  bool userQuotas = false;
  bool dirQuotas = false;
};

// The remove-invalid letter removes trustees only when the trustees come from the info file and
// no quota letter is given with it, unless the trustee letter is: "rt" and "a" remove, "ru" and
// "rd" do not, and "r" alone removes and still writes the trustee section (even with an RXL
// trustee file). With the trustee letter and an RXL trustee file, nothing is removed.
SavePlan planSave(const MaskFlags &mask, bool haveRxlTrusteeFile);
