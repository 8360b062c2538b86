/* The floor of anything that touches a body: copies so many bytes, on the line "go", as often as it is asked.
 *   MemoryCopy BYTES
 * Prints the nanoseconds of each copy. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

static long long now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1000000000LL + time.tv_nsec;
}

int main(int count, char **arguments) {
  const size_t size = count > 1 ? strtoull(arguments[1], NULL, 10) : 0;
  char *from = malloc(size + 1);
  char *to = malloc(size + 1);
  if (from == NULL || to == NULL) {
    return 1;
  }
  memset(from, 'a', size);
  memset(to, 'b', size);
  char line[16];
  while (fgets(line, sizeof line, stdin) != NULL) {
    const long long begin = now();
    memcpy(to, from, size);
    /* The compiler must take the copy for used. */
    __asm__ volatile("" : : "r"(to) : "memory");
    printf("{\"wall\": %lld}\n", now() - begin);
    fflush(stdout);
  }
  return 0;
}
