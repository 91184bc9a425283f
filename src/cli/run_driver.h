// The program's entry: parses the command line, prepares the input, runs save or restore and
// releases everything. Returns the process exit status.
#pragma once

int runTrovan(int argc, char **argv);
