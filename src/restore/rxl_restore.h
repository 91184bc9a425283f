// Restoring trustees and inherited rights filters through the file-sharing server's console.
#pragma once

// path: "VOL:/dir/file"; rightsElements: "<read/><write/>". Returns 0 on success.
int addRxlInheritedRightsFilter(const char *path, const char *rightsElements);
// trusteeName is changed in place to its typeless form. Returns 0 on success.
int addRxlTrustee(const char *path, char *trusteeName, const char *rightsElements);
