#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/time.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <map>
#include <sstream>
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
  const auto append = [](std::uint32_t level, const char* message, void* received) {
    *static_cast<std::string*>(received) += std::to_string(level) + message + ";";
  };
  const std::string written = writtenInChild([&] {
    std::string received;
    cu_Logger_setThreshold(CU_INFO);
    cu_Logger_setCallback(append, &received);
    const bool isLogged = logEachLevel();
    cu_Logger_setCallback(nullptr, nullptr);
    return isLogged && received == "0text;1text;2text;3text;" && log(CU_INFO, "back");
  });
  EXPECT_EQ(written, "info: back\n");
}

TEST(Logger, ReportsWhatACallbackMustNotDo) {
  const auto misbehave = [](std::uint32_t, const char*, void* userData) {
    auto& failures = *static_cast<std::string*>(userData);
    failures += failed(cu_Logger_log(CU_FATAL, "inner"));
    failures += "; " + failed(cu_Logger_setCallback(nullptr, nullptr));
    throw std::runtime_error("oops");
  };
  const std::string written = writtenInChild([&] {
    ::alarm(10);
    std::string failures;
    cu_Logger_setCallback(misbehave, &failures);
    failures += "; " + failed(cu_Logger_log(CU_FATAL, "text"));
    cu_Logger_setCallback(nullptr, nullptr);
    return log(CU_FATAL, failures);  // it goes on
  });
  const std::string where = " platform/cutil/Logger cu_Logger_";
  const std::string inCallback = ": Called by the log callback itself! (35); ";
  EXPECT_EQ(written, "fatal: 4" + where + "log" + inCallback + "4" + where + "setCallback" +
                         inCallback + "6" + where + "log: oops (0)\n");
}

TEST(Logger, ShowsWhatWouldCommandATerminal) {
  const std::pair<std::string, std::string> rows[] = {
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x01\x1b[2J\x7f \\", "\\x01\\x1b[2J\\x7f \\"},
      {"\xc2\x80\xc2\x9b\xc2\xa0", "\\u0080\\u009b\xc2\xa0"},
      {"\xd8\x9c\xe2\x80\x8e\xe2\x80\xae\xe2\x81\xa6\xe2\x81\xa9",
       "\\u061c\\u200e\\u202e\\u2066\\u2069"},
      {"\xc3\x9b\xe2\x82\xac\xf0\x9f\x9a\x80", "\xc3\x9b\xe2\x82\xac\xf0\x9f\x9a\x80"},
      {"no UTF-8: \xc2\x1b", "no UTF-8: \xc2\\x1b"},
      {"no UTF-8: \x9b \xe9 \xe2\x80", "no UTF-8: \\x9b \xe9 \xe2\\x80"},
  };
  for (const auto& [message, expected] : rows) {
    const auto write = [&, &message = message] { return log(CU_FATAL, message); };
    EXPECT_EQ(writtenInChild(write), "fatal: " + expected + "\n");
  }
}

// The cancellation takes effect after the message.
TEST(Logger, IsNotCancelled) {
  const auto cancelled = [](void*) -> void* {
    ::pthread_cancel(::pthread_self());
    cu_Logger_log(CU_FATAL, "text");
    ::pthread_testcancel();
    return nullptr;
  };
  writtenInChild([&] {
    cu_Logger_setCallback([](auto...) { ::pthread_testcancel(); }, nullptr);
    pthread_t thread;
    void* result = nullptr;
    ::pthread_create(&thread, nullptr, cancelled, nullptr);
    ::pthread_join(thread, &result);
    return result == PTHREAD_CANCELED;
  });
}

TEST(Logger, WaitsForTheCallbackThatItReplaces) {
  static std::atomic<bool> started{false};
  static std::atomic<bool> finished{false};
  const auto slow = [](std::uint32_t, const char*, void*) {
    started = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    finished = true;
  };
  writtenInChild([&] {
    cu_Logger_setCallback(slow, nullptr);
    std::thread logging([] { cu_Logger_log(CU_FATAL, "text"); });
    while (!started) std::this_thread::yield();
    cu_Logger_setCallback(nullptr, nullptr);
    const bool waited = finished;
    logging.join();
    return waited;
  });
}

// Longer than a pipe takes at once, so that a line that is not guarded is torn, and so that signals
// end a write early, or before it has begun.
TEST(Logger, WritesWholeLinesFromTwoThreadsInSpiteOfSignals) {
  constexpr std::size_t size = 500000;
  const std::string written = writtenInChild([] {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 50}, {0, 50}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    const auto logMany = [](char letter) {
      for (int i = 0; i < 20; ++i) log(CU_FATAL, std::string(size, letter));
    };
    std::thread other(logMany, 'b');
    logMany('a');
    other.join();
    return true;
  });
  std::map<std::string, int> counts;
  std::istringstream lines(written);
  for (std::string line; std::getline(lines, line);) ++counts[line];
  const std::map<std::string, int> expected = {{"fatal: " + std::string(size, 'a'), 20},
                                               {"fatal: " + std::string(size, 'b'), 20}};
  EXPECT_TRUE(counts == expected) << written.size();
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
  for (const bool isSignalPending : {false, true}) {  // the caller's own
    writtenInChild([=] {
      sigset_t pipeSignal, pending, mask;
      ::sigemptyset(&pipeSignal);
      ::sigaddset(&pipeSignal, SIGPIPE);
      ::signal(SIGPIPE, SIG_DFL);
      int ends[2];
      if (::pipe(ends) != 0) return false;
      ::dup2(ends[1], STDERR_FILENO);
      ::close(ends[0]);
      if (isSignalPending) {
        ::pthread_sigmask(SIG_BLOCK, &pipeSignal, nullptr);
        ::raise(SIGPIPE);
      }
      errno = EXDEV;
      if (!log(CU_FATAL, "no reader") || errno != EXDEV) return false;
      // Neither is a signal left over, nor is one held back that was not.
      ::sigpending(&pending);
      ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
      ::close(STDERR_FILENO);
      return ::sigismember(&pending, SIGPIPE) == isSignalPending &&
             ::sigismember(&mask, SIGPIPE) == isSignalPending && log(CU_FATAL, "closed");
    });
  }
}
