// trovan save: writes the Metadata document of one volume to standard output.
#pragma once

// volume: the volume name; infoDir: "/_admin/Manage_QUILL/Volume/<volume>/"; mask: the -m text
// (may be empty); rxlTrusteeFile: the RXL trustee file for -n, or null; path: the normalised -p
// path, or null (changed in place). Returns 0 or the run's completion code.
int saveMetadata(const char *volume, const char *infoDir, const char *mask,
                 const char *rxlTrusteeFile, char *path);
