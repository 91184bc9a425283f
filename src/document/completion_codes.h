// Completion codes: what the program's functions return up the call chain, and what the run
// leaves with as its exit status (a negative code leaves with code & 0xff). Any other positive
// value is the errno of a failing system call.
#pragma once

inline constexpr int kSuccess = 0;
// The program's own failures: unknown user type, mask letter or file contents, a trustee without
// name or id, an info file that cannot be opened. Exit status 255.
inline constexpr int kOwnFailure = -1;
// The console runner's failures and a mount table that cannot be opened on restore. Exit 254.
inline constexpr int kConsoleFailure = -2;
// A line of the RXL trustee file too long for the save to process. Exit 254.
inline constexpr int kLineTooLong = -2;
// A Metadata document that ends before </metadata>. Exit 157.
inline constexpr int kEndOfInput = -99;
// ENOMEM: memory exhausted, and a -f expression that does not compile.
inline constexpr int kOutOfMemory = 12;
// EINVAL: usage errors, volume files that cannot be found, a legacy report that cannot be read.
inline constexpr int kUsageError = 22;
// Invalid trustee removal alone reports its success as 1.
inline constexpr int kRemovalSucceeded = 1;
