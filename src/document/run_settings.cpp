#include "document/run_settings.h"

int showActions = 0;
int debug = 0;
int arborUsers = 0;
int adUsers = 0;
int inputFd = 0;

void resetRunSettings() {
  showActions = 0;
  debug = 0;
  arborUsers = 0;
  adUsers = 0;
  inputFd = 0;
}
