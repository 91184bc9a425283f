// The temporary files of a run, removed when the run is ended by SIGINT, SIGTERM or SIGHUP.
#pragma once
#include <cstddef>

// The files a run can have in /tmp at one time: the converted legacy document of -w and the
// console command's report of -n.
enum class TempFile { kLegacyDocument = 0, kConsoleReport = 1 };

inline constexpr std::size_t kTempFileNameSize = 64;

// Notes `name` (cut to kTempFileNameSize - 1 bytes) as the run's file of that kind.
void rememberTempFile(TempFile kind, const char *name);
// The file of that kind is gone, or is no longer the run's to remove.
void forgetTempFile(TempFile kind);

// From now on SIGINT, SIGTERM and SIGHUP (unless ignored when the run started) remove the
// remembered files and then end the process by the same signal, as it would have ended without
// a handler.
void removeTempFilesOnSignal();

// The removal itself, as the handler does it. For tests.
void removeRememberedTempFiles();
