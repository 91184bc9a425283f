// Running the file-sharing server's console command, one child process at a time.
#pragma once
#include <cstddef>

inline constexpr std::size_t kConsoleTempNameSize = 64;

// Runs `file` (looked up along PATH) with argv. With tempName, the command's standard error is
// caught in "/tmp/trovan<pid>" (name written into tempName, kConsoleTempNameSize bytes); its
// standard output is always discarded. Returns the exit status (0-255), kOwnFailure when the
// process could not be made or died by a signal, the negative result of a failed wait, or (in a
// child whose error file could not be made, which goes on as a copy of the caller)
// kConsoleFailure.
int runCommand(const char *file, char *const argv[], char *tempName);

// Runs "rxlcon volume <volume>" with all output discarded; 0 when the server knows the volume.
int checkRxlVolume(const char *volume);
