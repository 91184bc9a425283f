// Removal of trustees whose users no longer exist, before a save copies the trustee section.
#pragma once
#include <cstddef>
#include <string_view>

// Returns 1 when the info file was worked through, 0 on failure.
int removeInvalidTrustees(const char *volume, const char *infoDirectory, const char *infoFileName,
                          const char *pathFilter);

// Builds the removeTrustee request in requestBuffer: the AD form (type="adID") or the plain one,
// for the file `fileName` ("<volume>:<path>") and the trustee's identifier. Returns its length.
std::size_t buildTrusteeRemoval(bool ad, std::string_view fileName, std::string_view identifier);
