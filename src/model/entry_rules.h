// What an entry may ask of the server without meaning to, even where trovan reads it right:
// a path that leaves the volume once the mount point is put before it, a value that carries
// markup into a request or that the file system decodes into something else, and (in RXL
// mode) an '&' that trovan's decoding never gets past.
#pragma once
#include <string>

#include "model/entry.h"
#include "model/finding.h"

struct RuleSettings {
  std::string mountPoint = "/mnt/VOLUME";  // put before every path, as trovan restore does
  bool rxlMode = false;                    // trovan restore -n
};

void checkEntryRules(const Entry &entry, const RuleSettings &settings, const FindingSink &sink);
