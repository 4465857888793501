/* Uses the platform libraries from C. */
#include <cutil/cutil.h>
#include <locator/locator.h>
#include <stdio.h>

static void print(uint32_t level, const char* message, void* userData) {
  printf("%s: level %u, %s\n", (const char*)userData, (unsigned)level, message);
}

int main(void) {
  static char name[] = "callback";
  size_t count = 0;
  cu_String* text = NULL;
  uint32_t result = cu_SearchPath_count(getConfigLocator(), &count);
  printf("cu_SearchPath_count: %u, %zu\n", (unsigned)result, count);
  cu_String_new(&text, 0);
  cu_Filename_getPath("/etc/plant.xml", text);
  printf("cu_Filename_getPath: %s\n", cu_String_get(text));
  cu_String_delete(&text);
  cu_Logger_setCallback(print, name);
  cu_Logger_log(CU_ERROR, "a message");
  printf("cu_GetErrorName: %s\n", cu_GetErrorName(CU_FILE_NOT_FOUND));
  return 0;
}
