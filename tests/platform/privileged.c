/* What a program that has more rights than its caller takes from it: the log threshold and the
 * search path, on standard error. */
#include <locator/locator.h>
#include <stdio.h>
#include <unistd.h>

int main(void) {
  size_t count = 0;
  cu_String* directory = NULL;
  cu_SearchPath_count(getConfigLocator(), &count);
  cu_String_new(&directory, 0);
  fprintf(stderr, "%u", (unsigned)cu_Logger_getThreshold());
  for (size_t i = 0; i < count; ++i) {
    cu_SearchPath_get(getConfigLocator(), i, directory);
    fprintf(stderr, "[%s]", cu_String_get(directory));
  }
  cu_String_delete(&directory);
  _exit(0); /* a leak check cannot look into such a program */
}
