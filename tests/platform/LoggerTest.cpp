#include <gtest/gtest.h>
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
      {"environment, too high", "5", -1, defaultOutput},
      {"environment, empty", "", -1, defaultOutput},
      {"environment, more than a number", "4x", -1, defaultOutput},
      {"call instead of the environment", "0", 4, allLevels},
      {"call with a bad level", nullptr, 5, defaultOutput},
  };
  for (const auto& row : rows) {
    const Outcome outcome = inChild([&] {
      ::unsetenv("ZU_LOG_LEVEL");
      if (row.environment != nullptr) ::setenv("ZU_LOG_LEVEL", row.environment, 1);
      if (row.threshold >= 0) cu_Logger_setThreshold(static_cast<std::uint32_t>(row.threshold));
      return logEachLevel();
    });
    EXPECT_EQ(outcome.status, 0) << row.name;
    EXPECT_EQ(outcome.errors, row.expected) << row.name;
  }
}

TEST(Logger, HandsMessagesToTheCallback) {
  Received received;
  const Outcome outcome = inChild([&] {
    cu_Logger_setThreshold(CU_INFO);
    cu_Logger_setCallback(Received::callback, &received);
    errno = ENOENT;
    const bool errnoKept = logEachLevel() && errno == ENOENT;
    cu_Logger_setCallback(nullptr, nullptr);
    return errnoKept && received.text == "0text;1text;2text;3text;" && log(CU_INFO, "back");
  });
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "info: back\n");
}

TEST(Logger, ReportsACallbackThatThrows) {
  const Outcome outcome = inChild([] {
    const auto throwing = [](std::uint32_t, const char*, void*) {
      throw std::runtime_error("oops");
    };
    cu_Logger_setCallback(throwing, nullptr);
    if (cu_Logger_log(CU_FATAL, "text") != CU_EXCEPTION) return false;
    cu_Logger_setCallback(nullptr, nullptr);
    return log(CU_FATAL, cu_Error_getDescription(cu_getErrorLocation()));
  });
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.errors, "fatal: oops\n");
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
  const Outcome outcome = inChild([&] {
    State state;
    cu_Logger_setCallback(slow, &state);
    std::thread logging([] { cu_Logger_log(CU_FATAL, "text"); });
    while (!state.started) std::this_thread::yield();
    cu_Logger_setCallback(nullptr, nullptr);
    const bool waited = state.finished;
    logging.join();
    return waited;
  });
  EXPECT_EQ(outcome.status, 0);
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

TEST(Logger, DropsWhatStandardErrorDoesNotTake) {
  const struct {
    const char* name;
    bool isClosed;         // otherwise its reader went away
    bool isSignalPending;  // the caller's own
  } rows[] = {{"closed", true, false}, {"no reader", false, false}, {"own signal", false, true}};
  for (const auto& row : rows) {
    const Outcome outcome = inChild([&] {
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
    EXPECT_EQ(outcome.status, 0) << row.name;
  }
}
