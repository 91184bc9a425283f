// Temporary files of trovanctl's own, in $TMPDIR (or /tmp).
#pragma once
#include <string>

// A new temporary file, already unlinked: it disappears with its descriptor. -1 on failure.
int scratchFile();
// A new named temporary file; its name goes to `name`. -1 on failure. The caller unlinks it.
int namedScratchFile(std::string &name);
