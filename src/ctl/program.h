// The trovanctl program: parses the command line, runs one command, returns the exit status
// (0 clean, 1 findings or differences, 2 usage or fatal error).
#pragma once

int runTrovanctl(int argc, char **argv);
