// Copying one of the volume's info files into the Metadata document.
#pragma once

// Reads infoDir + fileName whole, strips its reply wrapper, applies the user-type filter
// (TrusteeInfo.xml and UserInfo.xml only) and, when path is given, the path filter on
// elementName ("file" or "directory"), then writes what is left to descriptor 1 in one write.
// Returns 0, kOutOfMemory, kOwnFailure when the file cannot be opened or an element removal
// fails, or the errno of a failed read or write.
int extractInfoFile(const char *infoDir, const char *fileName, const char *path,
                    const char *elementName);
