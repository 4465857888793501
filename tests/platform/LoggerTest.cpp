#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "Support.hpp"

namespace {

bool log(std::uint32_t level, const std::string& message) {
  return cu_Logger_log(level, message.c_str()) == CU_OK;
}

bool logEachLevel() {
  bool success = true;
  for (std::uint32_t level = CU_FATAL; level <= CU_DEBUG; ++level) {
    success = log(level, "text") && success;
  }
  return success;
}

struct Received {
  std::string text;

  static void callback(std::uint32_t level, const char* message, void* userData) {
    static_cast<Received*>(userData)->text += std::to_string(level) + message + ";";
    errno = EIO;
  }
};

}  // namespace

TEST(Logger, WritesWhatPassesTheThreshold) {
  const char* const defaultOutput = "fatal: text\nerror: text\nwarning: text\n";
  const char* const allLevels =
      "fatal: text\nerror: text\nwarning: text\ninfo: text\ndebug: text\n";
  const struct {
    const char* name;
    const char* environment;
    int threshold;  // -1: no call
    const char* expected;
  } rows[] = {
      {"default", nullptr, -1, defaultOutput},
      {"environment, highest", "4", -1, allLevels},
      {"environment, more than a number", "4x", -1, defaultOutput},
      {"call instead of the environment", "0", 4, allLevels},
      {"call with a bad level", nullptr, 5, defaultOutput},
  };
  for (const auto& row : rows) {
    const std::string written = writtenInChild([&] {
      ::unsetenv("ZU_LOG_LEVEL");
      if (row.environment != nullptr) ::setenv("ZU_LOG_LEVEL", row.environment, 1);
      if (row.threshold >= 0) cu_Logger_setThreshold(static_cast<std::uint32_t>(row.threshold));
      return logEachLevel();
    });
    EXPECT_EQ(written, row.expected) << row.name;
  }
}

TEST(Logger, HandsMessagesToTheCallback) {
  Received received;
  const std::string written = writtenInChild([&] {
    cu_Logger_setThreshold(CU_INFO);
    cu_Logger_setCallback(Received::callback, &received);
    errno = ENOENT;
    const bool errnoKept = logEachLevel() && errno == ENOENT;
    cu_Logger_setCallback(nullptr, nullptr);
    return errnoKept && received.text == "0text;1text;2text;3text;" && log(CU_INFO, "back");
  });
  EXPECT_EQ(written, "info: back\n");
}

// Each returns true when the message arrived; "back" shows that the logger goes on.
TEST(Logger, ReportsWhatACallbackMustNotDo) {
  const struct {
    const char* name;
    cu_LogCallback callback;
    std::uint32_t code;  // of the message
    const char* expected;
  } rows[] = {
      {"throws", [](std::uint32_t, const char*, void*) { throw std::runtime_error("oops"); },
       CU_EXCEPTION, "fatal: oops 0\n"},
      {"logs",
       [](std::uint32_t, const char*, void*) {
         if (cu_Logger_log(CU_FATAL, "inner") != CU_SYSTEM_FAILURE) ::_exit(2);
       },
       CU_OK, "fatal: Called by the log callback itself! 35\n"},
      {"installs another one",
       [](std::uint32_t, const char*, void*) {
         if (cu_Logger_setCallback(nullptr, nullptr) != CU_SYSTEM_FAILURE) ::_exit(2);
       },
       CU_OK, "fatal: Called by the log callback itself! 35\n"},
  };
  for (const auto& row : rows) {
    const std::string written = writtenInChild([&] {
      ::alarm(10);
      cu_Logger_setCallback(row.callback, nullptr);
      const bool asExpected = cu_Logger_log(CU_FATAL, "text") == row.code;
      cu_Logger_setCallback(nullptr, nullptr);
      const cu_ErrorLocation* record = cu_getErrorLocation();
      return log(CU_FATAL, std::string(cu_Error_getDescription(record)) + " " +
                               std::to_string(cu_Error_getSystemErrorCode(record))) &&
             asExpected;
    });
    EXPECT_EQ(written, row.expected) << row.name;
  }
}

TEST(Logger, ShowsWhatWouldCommandATerminal) {
  const struct {
    const char* message;
    const char* expected;
  } rows[] = {
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x01\x1b[2J\x7f \\", "\\x01\\x1b[2J\\x7f \\"},
      {"\xc2\x80\xc2\x9b\xc2\xa0", "\\u0080\\u009b\xc2\xa0"},
      {"\xd8\x9c\xe2\x80\x8e\xe2\x80\xae\xe2\x81\xa6\xe2\x81\xa9",
       "\\u061c\\u200e\\u202e\\u2066\\u2069"},
      {"\xc3\x9b\xe2\x82\xac\xf0\x9f\x9a\x80", "\xc3\x9b\xe2\x82\xac\xf0\x9f\x9a\x80"},
      {"no UTF-8: \xc2\x1b", "no UTF-8: \xc2\\x1b"},
      {"no UTF-8: \x9b \xe9 \xe2\x80", "no UTF-8: \\x9b \xe9 \xe2\\x80"},
  };
  for (const auto& row : rows) {
    const Outcome outcome = inChild([&] { return log(CU_FATAL, row.message); });
    EXPECT_EQ(outcome.errors, "fatal: " + std::string(row.expected) + "\n");
  }
}

// The cancellation takes effect after the message.
TEST(Logger, IsNotCancelled) {
  const auto cancelled = [](void* callback) -> void* {
    cu_Logger_setCallback(reinterpret_cast<cu_LogCallback>(callback), nullptr);
    ::pthread_cancel(::pthread_self());
    cu_Logger_log(CU_FATAL, "text");
    ::pthread_testcancel();
    return nullptr;
  };
  const cu_LogCallback callback = [](std::uint32_t, const char*, void*) { ::pthread_testcancel(); };
  for (const cu_LogCallback each : {cu_LogCallback(nullptr), callback}) {
    const std::string written = writtenInChild([&] {
      pthread_t thread;
      void* result = nullptr;
      ::pthread_create(&thread, nullptr, cancelled, reinterpret_cast<void*>(each));
      ::pthread_join(thread, &result);
      return result == PTHREAD_CANCELED;
    });
    EXPECT_EQ(written, each == nullptr ? "fatal: text\n" : "");
  }
}

TEST(Logger, WaitsForTheCallbackThatItReplaces) {
  struct State {
    std::atomic<bool> started{false};
    std::atomic<bool> finished{false};
  };
  const auto slow = [](std::uint32_t, const char*, void* userData) {
    auto& state = *static_cast<State*>(userData);
    state.started = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    state.finished = true;
  };
  writtenInChild([&] {
    State state;
    cu_Logger_setCallback(slow, &state);
    std::thread logging([] { cu_Logger_log(CU_FATAL, "text"); });
    while (!state.started) std::this_thread::yield();
    cu_Logger_setCallback(nullptr, nullptr);
    const bool waited = state.finished;
    logging.join();
    return waited;
  });
}

// Longer than a pipe takes at once, so that a line that is not guarded is torn.
TEST(Logger, WritesWholeLinesFromTwoThreads) {
  constexpr int levelCount = 20;
  const Outcome outcome = inChild([] {
    const auto logMany = [](char letter) {
      for (int i = 0; i < levelCount; ++i) log(CU_FATAL, std::string(100000, letter));
    };
    std::thread other(logMany, 'b');
    logMany('a');
    other.join();
    return true;
  });
  EXPECT_EQ(outcome.status, 0);
  int count[2] = {0, 0};
  std::istringstream lines(outcome.errors);
  for (std::string line; std::getline(lines, line);) {
    if (line == "fatal: " + std::string(100000, 'a')) ++count[0];
    if (line == "fatal: " + std::string(100000, 'b')) ++count[1];
  }
  EXPECT_EQ(count[0], levelCount);
  EXPECT_EQ(count[1], levelCount);
}

// A signal that arrives while the pipe is full ends a write early, or before it has begun.
TEST(Logger, WritesTheWholeLineInSpiteOfSignals) {
  const std::string message(4000000, 'm');
  const Outcome outcome = inChild([&] {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 200}, {0, 200}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    return log(CU_FATAL, message);
  });
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.errors == "fatal: " + message + "\n") << outcome.errors.size();
}

// Lines longer than what a pipe takes at once or not at all.
TEST(Logger, WritesWholeLinesWhereStandardErrorNeverWaits) {
  writtenInChild([] {
    int ends[2];
    if (::pipe2(ends, O_NONBLOCK) != 0) return false;
    ::dup2(ends[1], STDERR_FILENO);
    std::string lines;
    const auto drain = [&] {
      char buffer[4096];
      for (ssize_t size; (size = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        lines.append(buffer, static_cast<std::size_t>(size));
    };
    for (char letter = 'a'; letter <= 'z'; ++letter) log(CU_FATAL, std::string(10000, letter));
    drain();
    const bool isTorn = lines.back() != '\n';
    log(CU_FATAL, "end");
    drain();
    std::string expected;
    for (char letter = 'a'; expected.size() + 20 < lines.size(); ++letter)
      expected += "fatal: " + std::string(10000, letter) + "\n";
    return isTorn && lines == expected + "fatal: end\n";
  });
}

TEST(Logger, DropsWhatStandardErrorDoesNotTake) {
  const struct {
    const char* name;
    bool isClosed;         // otherwise its reader went away
    bool isSignalPending;  // the caller's own
  } rows[] = {{"closed", true, false}, {"no reader", false, false}, {"own signal", false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    writtenInChild([&] {
      sigset_t pipeSignal, pending, mask;
      ::sigemptyset(&pipeSignal);
      ::sigaddset(&pipeSignal, SIGPIPE);
      ::signal(SIGPIPE, SIG_DFL);
      int ends[2];
      if (::pipe(ends) != 0) return false;
      ::dup2(ends[1], STDERR_FILENO);
      ::close(ends[0]);
      if (row.isClosed) ::close(STDERR_FILENO);
      if (row.isSignalPending) {
        ::pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
        ::raise(SIGPIPE);
      }
      errno = EXDEV;
      if (!log(CU_FATAL, "text") || errno != EXDEV) return false;
      // Neither is a signal left over, nor is one held back that was not.
      ::sigpending(&pending);
      ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
      return ::sigismember(&pending, SIGPIPE) == row.isSignalPending &&
             ::sigismember(&mask, SIGPIPE) == row.isSignalPending;
    });
  }
}
