// The identity library liblumo.so.0, loaded at run time the first time an AD identifier has to
// be checked. Only the success or failure of its two calls matters to this system.
#pragma once

inline constexpr const char *kIdentityLibraryName = "liblumo.so.0";

// True when the SID text names an existing user: it converts to a binary SID and the SID looks
// up a user. When the library cannot be loaded, the reason is printed once and every SID counts
// as existing, so that no trustee is removed for want of a lookup.
bool sidNamesExistingUser(const char *sidText);

// Unloads the library and forgets that it was tried. For tests.
void resetIdentityLibrary();
