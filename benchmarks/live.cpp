// Settings that follow their files: to read them, to look whether the files changed, and to take a
// changed file.

#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "Folder.hpp"
#include "live/Choices.hpp"
#include "live/Trigger.hpp"
#include "registration.hpp"
#include "service/util/config/Live.hpp"

namespace benchmarks {

namespace {

using namespace service::util::config;
using namespace std::chrono_literals;

struct Site {
  std::string name;
  int speed = 0;
};

bind::Fields describe(bind::Is<Site> /*site*/) {
  return bind::Fields{bind::field<&Site::name>("name"), bind::field<&Site::speed>("speed")}.open();
}

// Waits take no time: they are counted in a time that the benchmark drives.
struct DrivenClock : live::Clock {
  std::chrono::nanoseconds now() const override { return time; }
  std::chrono::nanoseconds time{0};
};

class Following {
 public:
  // So many files are included.
  explicit Following(std::size_t files) {
    std::string includes;
    for (std::size_t i = 0; i < files; ++i) {
      const std::string name = std::to_string(i) + ".xml";
      folder.write(name, "");
      names.push_back(folder.path / name);
      includes += "<include>" + name + "</include>";
    }
    folder.write("main.xml", contentOf(0) + includes);
    Live<Site>::Options options;
    options.get().get().clock = clock;
    live = std::make_unique<Live<Site>>(folder.main(), xml::SchemeList(), false, options);
    pass(live::Trigger::quiet);  // for what is new
    names.push_back(folder.main());
  }

  static std::string contentOf(int speed) {
    return "<property name='name'>hall</property><property name='speed'>" + std::to_string(speed) +
           "</property>";
  }

  Live<Site>::Outcome pass(std::chrono::nanoseconds time) const {
    clock->time += time;
    return live->poll().outcome;
  }

  Folder folder;
  std::vector<std::string> names;  // of all files
  std::shared_ptr<DrivenClock> clock = std::make_shared<DrivenClock>();
  std::unique_ptr<Live<Site>> live;
};

// makeRead: gets what reads a setting of a Live.
template <class MakeRead>
void addReading(const std::string& who, const MakeRead& makeRead) {
  for (const int threads : {1, 2}) {
    add("live: read, threads: " + std::to_string(threads), who,
        [makeRead](benchmark::State& state) {
          std::thread([] {}).join();  // before there was one, locks cost less
          static const Following following(0);
          auto read = makeRead(*following.live);
          for (auto _ : state) benchmark::DoNotOptimize(read());
        })
        ->Threads(threads);
  }
}

void addReadings() {
  addReading("ours, get", [](const Live<Site>& live) { return [&] { return live.get()->speed; }; });
  addReading("ours, Reader", [](const Live<Site>& live) {
    return [reader = Live<Site>::Reader(live)]() mutable { return reader.get()->speed; };
  });
  addReading("std::atomic_load of a std::shared_ptr", [](const Live<Site>& live) {
    static std::shared_ptr<const Site> shared = live.get();
    return [] { return std::atomic_load(&shared)->speed; };
  });
}

// What a program does that looks at its files itself.
bool look(const std::vector<std::string>& names) {
  bool isThere = true;
  for (const std::string& name : names) {
    struct stat status;
    isThere &= ::stat(name.c_str(), &status) == 0;
    benchmark::DoNotOptimize(status);
  }
  return isThere;
}

void addPolls(std::size_t files) {
  const std::string figure = "live: look at " + std::to_string(files) + " files, each";
  add(figure, ours, [files](benchmark::State& state) {
    const Following following(files);
    for (auto _ : state) {
      if (following.pass(5s) != Live<Site>::UNCHANGED) return state.SkipWithError("a change");
    }
    setUnits(state, files);
  });
  add(figure, "stat", [files](benchmark::State& state) {
    const Following following(files);
    for (auto _ : state) {
      if (!look(following.names)) return state.SkipWithError("a file is missing");
    }
    setUnits(state, files);
  });
}

// From the rename to the swap, without the quiet time.
void addSwap() {
  const auto renew = [](benchmark::State& state, const Following& following, const auto& take) {
    int speed = 0;
    for (auto _ : state) {
      state.PauseTiming();
      following.folder.write("new.xml", Following::contentOf(++speed));
      state.ResumeTiming();
      std::filesystem::rename(following.folder.path / "new.xml", following.folder.main());
      if (take() != speed) return state.SkipWithError("an old value");
    }
  };
  add("live: take a changed file", ours, [renew](benchmark::State& state) {
    const Following following(0);
    renew(state, following, [&] {
      following.pass(0s);
      following.pass(live::Trigger::quiet);
      return following.live->get()->speed;
    });
  });
  add("live: take a changed file", "create and bind::read", [renew](benchmark::State& state) {
    const Following following(0);
    renew(state, following,
          [&] { return bind::read<Site>(xml::create(following.folder.main(), {}, false)).speed; });
  });
}

}  // namespace

void addLive(const Extent& extent) {
  addReadings();
  for (const std::size_t files : {10, 1000}) addPolls(extent.smallOnly ? files / 10 : files);
  addSwap();
}

}  // namespace benchmarks
