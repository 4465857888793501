#include <cinttypes>
#include <cstdio>
#include <new>
#include <stdexcept>

#include "Call.hpp"

// File and function are static texts; only the description is composed. The whole is small, since a
// program that loads the library late has little room for what every thread has of it.
struct cu_ErrorLocation {
  int systemErrorCode = 0;
  int line = 0;
  const char* file = "";
  const char* function = "";
  char description[232] = "";
};

namespace {

thread_local cu_ErrorLocation record;

}  // namespace

namespace cutil {

std::uint32_t Call::fail(cu_GenericCode code, const char* description, int systemError,
                         int line) const noexcept {
  record.systemErrorCode = systemError;
  record.line = line;
  record.file = file;
  record.function = function;
  // With its size, so that the compiler knows that cutting is meant.
  std::snprintf(record.description, sizeof record.description, "%.*s",
                static_cast<int>(sizeof record.description) - 1, description);
  return code;
}

std::uint32_t Call::missing(const char* argument, int line) const noexcept {
  char description[128];
  std::snprintf(description, sizeof description, "Argument \"%s\" is missing!", argument);
  return fail(CU_MISSING_ARGUMENT, description, 0, line);
}

std::uint32_t Call::invalid(const char* argument, std::uint64_t value, const char* expectation,
                            int line) const noexcept {
  char description[256];
  std::snprintf(description, sizeof description, "Argument \"%s\" is %" PRIu64 ", but must be %s!",
                argument, value, expectation);
  return fail(CU_INVALID_ARGUMENT, description, 0, line);
}

std::uint32_t Call::failWithCurrentException(int line) const noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return fail(CU_OUT_OF_MEMORY, "Out of memory!", 0, line);
  } catch (const std::length_error&) {
    // A container was asked for more than any memory could hold.
    return fail(CU_OUT_OF_MEMORY, "Out of memory!", 0, line);
  } catch (const std::exception& e) {
    return fail(CU_EXCEPTION, e.what(), 0, line);
  } catch (...) {
    return fail(CU_UNKNOWN_EXCEPTION, "Unknown exception!", 0, line);
  }
}

}  // namespace cutil

const cu_ErrorLocation* cu_getErrorLocation() {
  return &record;
}

int cu_Error_getSystemErrorCode(const cu_ErrorLocation* location) {
  return location == nullptr ? 0 : location->systemErrorCode;
}

const char* cu_Error_getFileName(const cu_ErrorLocation* location) {
  return location == nullptr ? "" : location->file;
}

const char* cu_Error_getFunctionName(const cu_ErrorLocation* location) {
  return location == nullptr ? "" : location->function;
}

int cu_Error_getLineNumber(const cu_ErrorLocation* location) {
  return location == nullptr ? 0 : location->line;
}

const char* cu_Error_getDescription(const cu_ErrorLocation* location) {
  return location == nullptr ? "" : location->description;
}
