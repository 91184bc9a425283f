// Removal of trustees whose users no longer exist, before a save copies the trustee section.
#pragma once

// Returns 1 when the info file was worked through, 0 on failure.
int removeInvalidTrustees(const char *volume, const char *infoDirectory, const char *infoFileName,
                          const char *pathFilter);
