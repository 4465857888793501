// Other threads read while one follows the files.
#include <atomic>
#include <thread>

#include "Follow.hpp"

namespace follow {

namespace {

struct Pair {
  int first = 0;
  int second = 0;
};
bind::Fields describe(bind::Is<Pair> /*type*/) {
  return {bind::field<&Pair::first>("first"), bind::field<&Pair::second>("second")};
}

TEST_F(LiveTest, EightReadersSeeWholeSnapshotsAndTheLastOne) {
  using Followed = Live<Pair>;
  put("");
  auto live = std::make_unique<Followed>("main.xml", xml::SchemeList(), false, options<Followed>());
  constexpr int last = 50;
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i, reader = Followed::Reader(*live)]() mutable {
      ++ready;
      for (int seen = 0; seen != last;) {
        const auto settings = i % 2 == 0 ? reader.get() : live->get();
        EXPECT_EQ(settings->first, settings->second);
        EXPECT_GE(settings->first, seen);
        seen = settings->first;
      }
    });
  }
  while (ready < 8) std::this_thread::yield();
  for (int i = 1; i <= last; ++i) {
    put(property("first", std::to_string(i)) + property("second", std::to_string(i)));
    ASSERT_EQ(next(*live).substr(0, 7), "CHANGED");
  }
  for (std::thread& thread : threads) thread.join();
  Followed::Reader reader(*live);
  live.reset();
  EXPECT_EQ(reader.get()->first, last) << "after the end";
}

}  // namespace

}  // namespace follow
