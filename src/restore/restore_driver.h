// trovan restore: applies a Metadata document read from inputFd to one volume.
#pragma once
#include <regex.h>

// filter: the compiled -f expression or null; mask: the -m text (may be empty); tree: the -t
// tree name or null; rxlMode: 1 with -n. Returns 0 when </metadata> was reached, else the first
// failure's code (kOwnFailure, kEndOfInput for a document cut short, or an errno value).
int restoreMetadata(const char *volumeName, const regex_t *filter, const char *mask,
                    const char *tree, int rxlMode);

// restoreMetadata with the volume's mount point given: what restoreMetadata does once it has the
// mount point. With mountPoint null, each section that needs it looks it up from volumeName, as
// restoreMetadata does (so a lookup failure shows where the section starts). volumeName is still
// what the user quota requests name, and the base of the paths in RXL mode.
int restoreDocument(const char *volumeName, const char *mountPoint, const regex_t *filter,
                    const char *mask, const char *tree, int rxlMode);
