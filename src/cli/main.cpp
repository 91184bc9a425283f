#include <cstdlib>

#include "cli/process_start.h"
#include "cli/run_driver.h"

int main(int argc, char **argv) {
  prepareProcess();
  std::exit(runTrovan(argc, argv));
}
