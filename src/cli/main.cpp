#include <cstdlib>

#include "cli/run_driver.h"

int main(int argc, char **argv) { std::exit(runTrovan(argc, argv)); }
