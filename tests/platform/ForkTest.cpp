#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "Support.hpp"

// A child must not inherit a lock whose owner stayed in the parent. Both threads hold theirs most
// of the time.
TEST(Fork, LeavesNothingLockedInTheChild) {
  struct State {
    std::atomic<bool> isInCallback{false};
    std::atomic<bool> isOver{false};
  };
  const auto slow = [](std::uint32_t, const char*, void* userData) {
    auto& state = *static_cast<State*>(userData);
    state.isInCallback = true;
    while (!state.isOver) std::this_thread::yield();
  };
  writtenInChild([&] {
    State state;
    const Path path(std::vector<std::string>(2000, "/none"));
    cu_Logger_setCallback(slow, &state);
    std::thread logging([] { cu_Logger_log(CU_FATAL, "text"); });
    std::thread searching([&] {
      const Text file;
      for (bool found; !state.isOver;) cu_SearchPath_find(path, "file", &found, file);
    });
    while (!state.isInCallback) std::this_thread::yield();
    bool isSound = true;
    for (int i = 0; i < 10 && isSound; ++i) {
      const Outcome child = inChild([&] {
        ::alarm(10);
        cu_Logger_setCallback(nullptr, nullptr);
        return directoriesOf(path).size() == 2000 &&
               cu_Logger_log(CU_FATAL, cu_GetErrorName(CU_EXCEPTION)) == CU_OK;
      });
      isSound = child.status == 0 && child.errors == "fatal: EXCEPTION\n";
    }
    state.isOver = true;
    logging.join();
    searching.join();
    return isSound;
  });
}
