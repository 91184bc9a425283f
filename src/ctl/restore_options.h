// The trovan restore options that plan, apply and verify share, and the volume operand they
// resolve into a name and a mount point.
#pragma once
#include <CLI/CLI.hpp>

#include "ctl/check_settings.h"

// VOL and DOC operands, then -m, -u, -t, -f and -k, as trovan restore has them.
void defineRestoreOptions(CLI::App &command, CheckOptions &options);

// Checks the options and finds the volume's mount point in the mount table, as trovan restore
// does. False after a message (prefixed by `command`).
bool resolveRestoreOptions(const char *command, CheckOptions &options, RestoreSettings &settings);
