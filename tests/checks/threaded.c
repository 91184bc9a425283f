/* A program that starts a thread: check_no_threads.sh must refuse it. */
#include <pthread.h>

static void *work(void *argument) { return argument; }

int main(void) {
  pthread_t thread;
  if (pthread_create(&thread, 0, work, 0) != 0) return 1;
  return pthread_join(thread, 0);
}
