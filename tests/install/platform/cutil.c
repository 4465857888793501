/* A C utility library with exactly the functions that the configuration library cannot do without.
 * It has one search path, which no handle is needed for, and which starts as the current directory.
 */
#include <cutil/cutil.h>
#include <libgen.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct cu_String {
  char text[8192];
};

static cu_Resolver resolver;
static char path[100][4096] = {"."};
static size_t count = 1;
static const char* description = "";

static uint32_t fail(uint32_t code, const char* reason) {
  description = reason;
  return code;
}

uint32_t cu_SetResolver(uint32_t module, cu_Resolver given, uint32_t localBits) {
  if (module != 3 || localBits != 24) return fail(CU_INVALID_ARGUMENT, "unknown module");
  resolver = given;
  return CU_OK;
}
const char* cu_GetErrorName(uint32_t code) {
  static const char* const names[] = {"OK", "MISSING_ARGUMENT", "OUT_OF_MEMORY", "FILE_NOT_FOUND"};
  return code >> 24 == 3 ? resolver.getName(code) : code < 4 ? names[code] : "OTHER";
}

const cu_ErrorLocation* cu_getErrorLocation(void) {
  return NULL;
}
int cu_Error_getSystemErrorCode(const cu_ErrorLocation* location) {
  return location != NULL;
}
const char* cu_Error_getFileName(const cu_ErrorLocation* location) {
  return location == NULL ? "file" : "";
}
const char* cu_Error_getFunctionName(const cu_ErrorLocation* location) {
  return location == NULL ? "function" : "";
}
int cu_Error_getLineNumber(const cu_ErrorLocation* location) {
  return location == NULL;
}
const char* cu_Error_getDescription(const cu_ErrorLocation* location) {
  return location == NULL ? description : "";
}

uint32_t cu_String_new(cu_String** text, size_t capacity) {
  *text = calloc(1, sizeof **text + capacity);
  return *text == NULL ? fail(CU_OUT_OF_MEMORY, "no memory") : CU_OK;
}
const char* cu_String_get(const cu_String* text) {
  return text->text;
}
uint32_t cu_String_delete(cu_String** text) {
  free(*text);
  *text = NULL;
  return CU_OK;
}

uint32_t cu_Filename_getPath(const char* fileName, cu_String* directory) {
  char scratch[sizeof directory->text];
  snprintf(scratch, sizeof scratch, "%s", fileName);
  snprintf(directory->text, sizeof directory->text, "%s", dirname(scratch));
  return CU_OK;
}

uint32_t cu_SearchPath_find(cu_SearchPath* handle, const char* name, bool* found, cu_String* file) {
  char candidate[sizeof file->text] = "";
  *found = handle == NULL && name[0] == '/' && access(name, R_OK) == 0;
  if (*found) snprintf(candidate, sizeof candidate, "%s", name);
  for (size_t i = count; i-- > 0 && name[0] != '/' && !*found;) {
    snprintf(candidate, sizeof candidate, "%s/%s", path[i], name);
    *found = access(candidate, R_OK) == 0;
  }
  if (*found) memcpy(file->text, candidate, sizeof candidate);
  return CU_OK;
}
uint32_t cu_SearchPath_prepend(cu_SearchPath* handle, const char* directory) {
  if (handle != NULL || count == sizeof path / sizeof *path) return fail(0x5000001, "path is full");
  snprintf(path[count++], sizeof *path, "%s", directory);
  return CU_OK;
}
uint32_t cu_SearchPath_remove(cu_SearchPath* handle, const char* directory, bool* removed) {
  size_t i = count;
  while (i > 0 && strcmp(path[i - 1], directory) != 0) --i;
  *removed = handle == NULL && i > 0;
  if (!*removed) return CU_OK;
  memmove(path[i - 1], path[i], (count - i) * sizeof *path);
  --count;
  return CU_OK;
}

uint32_t cu_Logger_log(uint32_t level, const char* message) {
  if (level <= CU_ERROR) fprintf(stderr, "error: %s\n", message);
  return CU_OK;
}
