// The trustee section of a save taken from the file-sharing server's RXL trustee file.
#pragma once

// Writes the trusteeInfo section to descriptor 1. Returns 0, kOwnFailure (cannot open),
// kLineTooLong, or an errno value.
int importRxlTrusteeFile(const char *fileName, const char *pathFilter);
// Scans one block of whole lines; block[length] must be writable (the scanner terminates there).
void parseRxlTrusteeBlock(char *block, int length, const char *pathFilter);
// Puts the block scanner back to its start-of-run state (expecting an entry). For tests only: a
// save imports one file, so the program itself never resets it.
void resetRxlImportScanner();
