/* The floor of all work on a body: copies so many bytes for each line on its standard input, and prints their
 * number.
 *   MemoryCopy BYTES */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

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
    memcpy(to, from, size);
    /* The compiler must treat the copy as used. */
    __asm__ volatile("" : : "r"(to) : "memory");
    printf("{\"bytes\": %zu}\n", size);
    fflush(stdout);
  }
  return 0;
}
