// trovan restore: applies a Metadata document read from inputFd to one volume.
#pragma once
#include <regex.h>

// filter: the compiled -f expression or null; mask: the -m text (may be empty); tree: the -t
// tree name or null; rxlMode: 1 with -n. Returns 0 when </metadata> was reached, else the first
// failure's code (-1, -99 for a document cut short, or an errno value).
int restoreMetadata(const char *volumeName, const regex_t *filter, const char *mask,
                    const char *tree, int rxlMode);
