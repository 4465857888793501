#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "Call.hpp"
#include "visible.hpp"

namespace {

using cutil::Call;
using cutil::guarded;

constexpr const char* unit = "platform/cutil/Logger";
constexpr const char* validLevels = "0 to 4";
constexpr const char* levelNames[] = {"fatal", "error", "warning", "info", "debug"};
constexpr std::uint32_t unset = ~0U;

// All of it is constant-initialised and never destroyed: static initialisers and destructors of
// other libraries may log.
std::atomic<std::uint32_t> threshold{unset};
// Held while a message is put out. It knows its owner, so that a callback that logs is told.
pthread_mutex_t mutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
// Guarded by mutex.
cu_LogCallback installedCallback = nullptr;
void* installedUserData = nullptr;
// What is left of a line that a standard error that never waits took the beginning of. It goes out
// before the next line.
std::string* rest = nullptr;

class Lock {
 public:
  Lock() : error(pthread_mutex_lock(&mutex)) {}
  ~Lock() {
    if (error == 0) pthread_mutex_unlock(&mutex);
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  const int error;  // EDEADLK when this thread is in a callback
};

// A cancellation while a message is put out would have to unwind a function that lets nothing out,
// which ends the process.
class WithoutCancellation {
 public:
  WithoutCancellation() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous); }
  ~WithoutCancellation() { pthread_setcancelstate(previous, nullptr); }
  WithoutCancellation(const WithoutCancellation&) = delete;
  WithoutCancellation& operator=(const WithoutCancellation&) = delete;

 private:
  int previous = 0;
};

// A fork does not wait for callbacks. Its child has a free mutex, and leaves to its parent what
// that has begun to write.
[[maybe_unused]] const int forkHandler = pthread_atfork(nullptr, nullptr, [] {
  mutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
  rest = nullptr;
});

std::uint32_t failInCallback(const Call& call, int error, int line = __builtin_LINE()) {
  return call.fail(CU_SYSTEM_FAILURE, "Called by the log callback itself!", error, line);
}

std::uint32_t thresholdFromEnvironment() noexcept {
  const char* value = ::secure_getenv("ZU_LOG_LEVEL");
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

// Takes off text what standard error takes. Returns 0 or the error number of the write that was
// given up.
int writeFrom(std::string& text) noexcept {
  std::size_t done = 0;
  int error = 0;
  while (done < text.size() && error == 0) {
    const ssize_t written = ::write(STDERR_FILENO, text.data() + done, text.size() - done);
    if (written >= 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno != EINTR) {
      error = errno;
    }
  }
  text.erase(0, done);
  return error;
}

// A reader of standard error that went away must not end the process: the signal of the broken pipe
// is held back on this thread and taken off again, unless one was already pending.
int writeQuietlyFrom(std::string& text) noexcept {
  sigset_t pipeSignal;
  sigset_t pending;
  sigset_t previous;
  sigemptyset(&pipeSignal);
  sigaddset(&pipeSignal, SIGPIPE);
  sigpending(&pending);
  pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
  const int error = writeFrom(text);
  if (error == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
    const timespec noWait{};
    while (sigtimedwait(&pipeSignal, nullptr, &noWait) == -1 && errno == EINTR) {
    }
  }
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  return error;
}

// Whole lines or none: one that is not taken at all is dropped.
void writeLine(std::unique_ptr<std::string> line) noexcept {
  if (rest != nullptr) {
    if (writeQuietlyFrom(*rest) == EAGAIN) return;
    delete rest;
    rest = nullptr;
  }
  const std::size_t size = line->size();
  if (writeQuietlyFrom(*line) == EAGAIN && line->size() < size) rest = line.release();
}

void putOut(std::uint32_t level, const char* message) {
  if (installedCallback != nullptr) {
    installedCallback(level, message, installedUserData);
    return;
  }
  auto line = std::make_unique<std::string>(levelNames[level]);
  *line += ": ";
  cutil::appendVisible(*line, message);
  *line += '\n';
  writeLine(std::move(line));
}

}  // namespace

uint32_t cu_Logger_log(uint32_t level, const char* message) {
  const int callersErrno = errno;
  const WithoutCancellation withoutCancellation;
  const Call call(unit, __func__);
  const std::uint32_t code = guarded(call, [&] {
    if (level > CU_DEBUG) return call.invalid("level", level, validLevels);
    if (message == nullptr) return call.missing("message");
    if (level > currentThreshold()) return cutil::success;
    const Lock lock;
    if (lock.error != 0) return failInCallback(call, lock.error);
    putOut(level, message);
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
  const Call call(unit, __func__);
  return guarded(call, [&] {
    const Lock lock;
    if (lock.error != 0) return failInCallback(call, lock.error);
    installedCallback = callback;
    installedUserData = userData;
    return cutil::success;
  });
}
