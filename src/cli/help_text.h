#pragma once

// The usage screen (also shown by --help and for a wrong argument count), on standard output.
void printUsage(const char *programName);
// The version text, on standard output.
void printVersion();
