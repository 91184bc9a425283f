/* A program of one thread: check_no_threads.sh must accept it. */
#include <stdio.h>

int main(void) { return puts("one thread") < 0; }
