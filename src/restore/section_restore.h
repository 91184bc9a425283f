// The frame of every section restore: the section's command file is opened, the section walked
// and the file closed. When a request stand-in answers the requests, no file is opened.
#pragma once

// Opens commandFile into adminFd (nothing with a stand-in). `purpose` ends the message of a failed
// open: "Unable to open the admin file for administration of <purpose>.  err=%m". Returns 0 or the
// errno of the failed open.
int openSectionFile(const char *commandFile, const char *purpose);
// Closes adminFd, if open, and leaves 0 there.
void closeSectionFile();

// Runs walk() between openSectionFile() and closeSectionFile(). Returns the failed open's errno,
// or what walk() returned.
template <typename Walk>
int restoreSection(const char *commandFile, const char *purpose, Walk walk) {
  if (const int error = openSectionFile(commandFile, purpose); error != 0) return error;
  const int result = walk();
  closeSectionFile();
  return result;
}
