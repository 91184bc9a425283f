// Parsing of the mask and user-type settings shared by save and restore.
#pragma once

struct MaskFlags {
  int trustees = 0;
  int userQuotas = 0;
  int dirQuotas = 0;
  int removeInvalid = 0;
};

// Letters t, u, d, r, and a (all four); an empty or missing mask means t, u and d.
// Returns 0, or kOwnFailure after "Unknown metadata type in the mask: %c" (flags set so far stay
// set).
int parseMask(const char *mask, MaskFlags &flags);

// Sets arborUsers and adUsers from the -u argument. Without -u: both 0 on save (no filtering),
// both 1 on restore. Returns 0, or kOwnFailure after "Unknown user type : %s".
int parseUserType(int given, const char *type, bool forSave);

// The -p argument as an owned path: "/" is put in front unless it starts with "/", then one
// trailing "/" is dropped unless the path is that single "/". Null when memory is exhausted.
char *normalisePathOption(const char *argument);
