#include <atomic>
#include <thread>

#include "../TemporaryFolder.hpp"
#include "Support.hpp"

// What only one of them could do at a time is seen by the thread sanitizer, too.
TEST(Threads, UseASearchPathAndTheRegistryAtOnce) {
  const cu_ErrorText text = [](std::uint32_t) { return "TEXT"; };
  const cu_Resolver resolver = {"m", text, text};
  ASSERT_EQ(cu_SetResolver(220, resolver, 24), 0u);
  const TemporaryFolder temp;
  temp.write("file");
  const std::string expected = temp.path / "file";
  const Path path({temp.path});
  std::thread other([&] {
    for (int i = 0; i < 2000; ++i) {
      cu_SearchPath_prepend(path, "/a/directory/that/does/not/exist");
      removeFrom(path, "/a/directory/that/does/not/exist");
      cu_SetResolver(220, resolver, 24);
    }
  });
  int wrong = 0;
  const Text file;
  for (int i = 0; i < 2000; ++i) {
    bool found = false;
    cu_SearchPath_find(path, "file", &found, file);
    if (!found || file.str() != expected || cu_GetErrorName(220u << 24) != text(0)) ++wrong;
  }
  other.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(directoriesOf(path), "[" + temp.path.string() + "]");
}

// A child must not inherit a lock whose owner stayed in the parent. Both threads hold theirs most
// of the time.
TEST(Fork, LeavesNothingLockedInTheChild) {
  static std::atomic<bool> isInCallback{false};
  static std::atomic<bool> isOver{false};
  const cu_LogCallback slow = [](std::uint32_t, const char*, void*) {
    isInCallback = true;
    while (!isOver) std::this_thread::yield();
  };
  writtenInChild([&] {
    const Path path(std::vector<std::string>(2000, "/none"));
    cu_Logger_setCallback(slow, nullptr);
    std::thread logging([] { cu_Logger_log(CU_FATAL, "text"); });
    std::thread searching([&] {
      const Text file;
      for (bool found; !isOver;) cu_SearchPath_find(path, "file", &found, file);
    });
    while (!isInCallback) std::this_thread::yield();
    bool isSound = true;
    for (int i = 0; i < 10 && isSound; ++i) {
      const Outcome child = inChild([&] {
        ::alarm(10);
        cu_Logger_setCallback(nullptr, nullptr);
        return removeFrom(path, "/none") &&
               cu_Logger_log(CU_FATAL, cu_GetErrorName(CU_EXCEPTION)) == CU_OK;
      });
      isSound = child.status == 0 && child.errors == "fatal: EXCEPTION\n";
    }
    isOver = true;
    logging.join();
    searching.join();
    return isSound;
  });
}
