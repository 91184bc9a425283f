// One pass over a prepared legacy report (on descriptor 0) with trovan's own line and field
// readers: each record line trovan restore -w would convert becomes an entry, and each line it
// would pass over or change is listed on standard error.
#pragma once
#include <string>

class CanonicalWriter;

struct ConvertSettings {
  std::string label;   // the report's name for messages
  std::string tree;    // -t
  const char *prefix;  // -r, or null
};

struct ConvertResult {
  bool trouble = false;      // not a report, or text that is not UTF-8 (nothing may be written)
  unsigned long listed = 0;  // lines passed over, letters left out, paths without '/'
};

// Writes the entries to `writer` (begun and left open) when it is given.
ConvertResult convertReport(const ConvertSettings &settings, CanonicalWriter *writer);
