// The registry is used from static initialisers and destructors of any library of the process, so
// its state is constant-initialised and never destroyed.
#include <pthread.h>

#include <array>
#include <mutex>

#include "Call.hpp"

namespace {

using cutil::Call;
using cutil::guarded;

constexpr const char* unit = "platform/cutil/ErrorRegistry";
constexpr std::uint32_t onlyLocalBits = 24;
constexpr std::uint32_t moduleCount = 256;

constexpr const char* unknownName = "UNKNOWN_ERROR_CODE";
constexpr const char* unknownDescription = "Unknown error code!";
constexpr const char* unknownModule = "unknown module";

struct GenericText {
  const char* name;
  const char* description;
};

// In the order of enum cu_GenericCode.
constexpr GenericText genericTexts[] = {
    {"OK", "No error."},
    {"MISSING_ARGUMENT", "An argument is missing or empty!"},
    {"OUT_OF_MEMORY", "Out of memory!"},
    {"FILE_NOT_FOUND", "A file was not found!"},
    {"SYSTEM_FAILURE", "An operating system call failed!"},
    {"INVALID_ARGUMENT", "An argument has a value that is not allowed!"},
    {"EXCEPTION", "A standard exception was caught!"},
    {"UNKNOWN_EXCEPTION", "An unknown exception was caught!"},
};

const char* genericName(std::uint32_t code) {
  return code < std::size(genericTexts) ? genericTexts[code].name : unknownName;
}

const char* genericDescription(std::uint32_t code) {
  return code < std::size(genericTexts) ? genericTexts[code].description : unknownDescription;
}

std::mutex mutex;
// Held during a fork, so that the child finds it free.
[[maybe_unused]] const int forkHandlers =
    ::pthread_atfork([] { mutex.lock(); }, [] { mutex.unlock(); }, [] { mutex.unlock(); });
// Guarded by mutex.
std::array<cu_Resolver, moduleCount> resolvers = {{{"cutil", genericName, genericDescription}}};

cu_Resolver resolverOf(std::uint32_t code) noexcept {
  const std::lock_guard lock(mutex);
  return resolvers[code >> onlyLocalBits];
}

// The resolver's function is called outside the lock, so that it may use the registry itself. One
// that breaks the rules, by throwing or by answering null, does no harm.
const char* lookUp(std::uint32_t code, cu_ErrorText cu_Resolver::*function,
                   const char* unknown) noexcept {
  try {
    const cu_ErrorText getText = resolverOf(code).*function;
    const char* text = getText == nullptr ? nullptr : getText(code);
    return text == nullptr ? unknown : text;
  } catch (...) {
    return unknown;
  }
}

}  // namespace

uint32_t cu_SetResolver(uint32_t module, cu_Resolver resolver, uint32_t localBits) {
  const Call call(unit, __func__);
  return guarded(call, [&] {
    if (module == 0 || module >= moduleCount) return call.invalid("module", module, "1 to 255");
    if (localBits != onlyLocalBits) return call.invalid("localBits", localBits, "24");
    if (resolver.moduleName == nullptr) return call.missing("resolver.moduleName");
    if (resolver.getName == nullptr) return call.missing("resolver.getName");
    if (resolver.getDescription == nullptr) return call.missing("resolver.getDescription");

    const std::lock_guard lock(mutex);
    resolvers[module] = resolver;
    return cutil::success;
  });
}

const char* cu_GetErrorName(uint32_t code) {
  return lookUp(code, &cu_Resolver::getName, unknownName);
}

const char* cu_GetErrorDescription(uint32_t code) {
  return lookUp(code, &cu_Resolver::getDescription, unknownDescription);
}

const char* cu_GetErrorModule(uint32_t code) {
  const char* name = resolverOf(code).moduleName;
  return name == nullptr ? unknownModule : name;
}
