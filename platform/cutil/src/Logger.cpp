#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

#include "Call.hpp"

namespace {

using cutil::Call;
using cutil::guarded;

constexpr const char* unit = "platform/cutil/Logger";
constexpr const char* validLevels = "0 to 4";
constexpr const char* levelNames[] = {"fatal", "error", "warning", "info", "debug"};
constexpr std::uint32_t unset = ~0U;

// Constant-initialised: static initialisers of other libraries may log.
std::atomic<std::uint32_t> threshold{unset};
std::mutex mutex;
// Guarded by mutex, which is also held while a message is put out.
cu_LogCallback installedCallback = nullptr;
void* installedUserData = nullptr;

std::uint32_t thresholdFromEnvironment() noexcept {
  const char* value = std::getenv("ZU_LOG_LEVEL");
  const std::string_view text = value == nullptr ? "" : value;
  const bool valid = text.size() == 1 && text[0] >= '0' && text[0] <= '4';
  if (!valid) return CU_WARNING;
  return static_cast<std::uint32_t>(text[0] - '0');
}

std::uint32_t currentThreshold() noexcept {
  std::uint32_t value = threshold.load();
  if (value != unset) return value;
  const std::uint32_t initial = thresholdFromEnvironment();
  // A threshold that another thread has set meanwhile stays.
  return threshold.compare_exchange_strong(value, initial) ? initial : value;
}

// Returns 0 or the error number of the write that was given up.
int writeAll(std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// A reader of standard error that went away must not end the process: the signal of the broken pipe
// is held back on this thread and taken off again, unless one was already pending.
void writeLine(std::string_view line) noexcept {
  sigset_t pipeSignal;
  sigset_t pending;
  sigset_t previous;
  sigemptyset(&pipeSignal);
  sigaddset(&pipeSignal, SIGPIPE);
  sigpending(&pending);
  pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
  if (writeAll(line) == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
    const timespec noWait{};
    while (sigtimedwait(&pipeSignal, nullptr, &noWait) == -1 && errno == EINTR) {
    }
  }
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

void putOut(std::uint32_t level, const char* message) {
  const std::lock_guard lock(mutex);
  if (installedCallback != nullptr) {
    installedCallback(level, message, installedUserData);
    return;
  }
  std::string line = levelNames[level];
  line += ": ";
  line += message;
  line += '\n';
  writeLine(line);
}

}  // namespace

uint32_t cu_Logger_log(uint32_t level, const char* message) {
  const int callersErrno = errno;
  const Call call(unit, __func__);
  const std::uint32_t code = guarded(call, [&] {
    if (level > CU_DEBUG) return call.invalid("level", level, validLevels);
    if (message == nullptr) return call.missing("message");
    if (level <= currentThreshold()) putOut(level, message);
    return cutil::success;
  });
  errno = callersErrno;
  return code;
}

uint32_t cu_Logger_setThreshold(uint32_t level) {
  const Call call(unit, __func__);
  if (level > CU_DEBUG) return call.invalid("level", level, validLevels);
  threshold = level;
  return cutil::success;
}

uint32_t cu_Logger_getThreshold() {
  return currentThreshold();
}

uint32_t cu_Logger_setCallback(cu_LogCallback callback, void* userData) {
  return guarded(Call(unit, __func__), [&] {
    const std::lock_guard lock(mutex);
    installedCallback = callback;
    installedUserData = userData;
    return cutil::success;
  });
}
