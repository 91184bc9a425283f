// trovanctl: checks, compares, converts and maps Metadata documents before trovan applies them.
#include "ctl/program.h"

int main(int argc, char **argv) { return runTrovanctl(argc, argv); }
