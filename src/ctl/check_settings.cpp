#include "ctl/check_settings.h"

#include "document/records.h"

RestoreSettings::~RestoreSettings() {
  if (hasFilter) regfree(&filter);
}

namespace {

std::string resolveMask(const std::string &mask, RestoreSettings &settings) {
  if (mask.empty()) return "";
  settings.trustees = settings.userQuotas = settings.dirQuotas = false;
  for (const char letter : mask) {
    switch (letter) {
    case 't': settings.trustees = true; break;
    case 'u': settings.userQuotas = true; break;
    case 'd': settings.dirQuotas = true; break;
    case 'r': break;  // removal of invalid trustees: save only
    case 'a': settings.trustees = settings.userQuotas = settings.dirQuotas = true; break;
    default: return std::string("unknown letter in the mask (-m): ") + letter;
    }
  }
  return "";
}

}  // namespace

std::string resolveCheckOptions(CheckOptions &options, RestoreSettings &settings) {
  if (std::string problem = resolveMask(options.mask, settings); !problem.empty()) return problem;
  if (options.userType == "arbor") {
    settings.adUsers = false;
  } else if (options.userType == "ad") {
    settings.arborUsers = false;
    if (options.rxlMode) return "-u ad cannot be used with -n";
  } else if (!options.userType.empty()) {
    return "unknown user type (-u): " + options.userType + " (arbor or ad)";
  }
  if (options.filterGiven) {
    const int code = regcomp(&settings.filter, options.filter.c_str(), REG_NOSUB);
    if (code != 0) {
      char text[256];
      regerror(code, &settings.filter, text, sizeof text);
      return "bad filter expression (-f) \"" + options.filter + "\": " + text;
    }
    settings.hasFilter = true;
  }
  if (options.mountPoint.empty()) options.mountPoint = "/mnt/" + options.volume;
  return "";
}

bool wouldRestore(const Entry &entry, const CheckOptions &options,
                  const RestoreSettings &settings) {
  const bool ofUser = entry.kind == EntryKind::trustee || entry.kind == EntryKind::userQuota;
  if (ofUser && !(entry.ad ? settings.adUsers : settings.arborUsers)) return false;
  switch (entry.kind) {
  case EntryKind::trustee:
  case EntryKind::filter: {
    if (!settings.trustees) return false;
    if (!settings.hasFilter) return true;
    const std::string full = (options.rxlMode ? options.volume + ":" : options.mountPoint) +
                             (options.rxlMode ? entry.path : entry.rawPath);
    return regexec(&settings.filter, full.c_str(), 0, nullptr, 0) == 0;
  }
  case EntryKind::userQuota:
    return settings.userQuotas && !options.rxlMode && entry.amount != kNoQuota;
  case EntryKind::dirQuota: {
    if (!settings.dirQuotas || options.rxlMode || entry.amount == kNoQuota) return false;
    if (!settings.hasFilter) return true;
    std::string full = options.mountPoint + entry.rawPath;
    for (char &c : full)
      if (c == '\\') c = '/';
    return regexec(&settings.filter, full.c_str(), 0, nullptr, 0) == 0;
  }
  }
  return false;
}
