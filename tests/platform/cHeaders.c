/* The platform headers from plain C; called by TextTest.cpp. */
#include <cutil/cutil.h>
#include <locator/locator.h>
#include <string.h>

static const char* textOf(uint32_t code) {
  (void)code;
  return "FROM_C";
}

/* The first step that went wrong, or null. */
const char* usePlatformFromC(void) {
  cu_Resolver resolver = {"fromC", textOf, textOf};
  cu_String* text = NULL;
  bool found = true;
  bool right;

  if (cu_SetResolver(240, resolver, 24) != CU_OK) return "cu_SetResolver";
  if (strcmp(cu_GetErrorName((240u << 24) | 7), "FROM_C") != 0) return "cu_GetErrorName";
  if (cu_String_new(&text, 0) != CU_OK) return "cu_String_new";
  if (cu_SearchPath_find(getConfigLocator(), "", &found, text) != CU_OK || found) {
    return "cu_SearchPath_find";
  }
  right = cu_Filename_getPath("a/b", text) == CU_OK && strcmp(cu_String_get(text), "a") == 0;
  if (cu_String_delete(&text) != CU_OK || text != NULL) return "cu_String_delete";
  return right ? NULL : "cu_Filename_getPath";
}
