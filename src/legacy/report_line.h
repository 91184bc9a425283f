// Line reading for the legacy TRUSTEE.KXM report on standard input.
#pragma once

// The next non-empty line of standard input, without its line end (LF, CR or both), in a new
// NUL-terminated buffer that the caller frees. Null at the end of the input, after a failed read,
// or after "Error getting enough buffer for reading input file" when no buffer could be had.
char *readReportLine();

// The line of the input, counted from 1 (a line end is LF, CR or CR LF), on which the line last
// returned by readReportLine starts.
unsigned long reportLineStart();

// Forgets what was read ahead of the last line. For tests that feed many inputs to one process.
void resetReportInput();
