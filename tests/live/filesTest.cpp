// What counts as a change of the files, however it is made, and when it is taken.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fstream>

#include "Follow.hpp"

static bool isInotifyUsedUp = false;

// In place of the system's: as it is when the user has no instance left.
extern "C" int inotify_init1(int flags) {
  if (!isInotifyUsedUp) return static_cast<int>(::syscall(SYS_inotify_init1, flags));
  errno = EMFILE;
  return -1;
}

namespace follow {

namespace {

using Plain = Live<IConfig>;

// Make a file, and one with a speed.
constexpr const char* functions =
    "f() { echo \"<config>$2</config>\" >$1; }; "
    "s() { f $1 \"<property name='speed'>$2</property>\"; }; ";
constexpr const char* base =
    "rm -rf * && mkdir site && s site/part.xml 1 && f site/main.xml '<include>part.xml</include>' "
    "&& ";

constexpr const char* changed = "CHANGED\nspeed: 1 (part.xml:1) -> 2 (part.xml:1)";

struct Move {
  const char* name;
  const char* move;  // what happens, by the shell
  const char* told = changed;
  const char* set = "true";       // what stands there before, by the shell
  const char* file = "main.xml";  // to follow
};

const Move moves[] = {
    {"an editor renames and saves",
     "mv site/part.xml site/part.xml~ && s site/part.xml 2 && rm site/part.xml~"},
    {"sed -i", "sed -i s/1/2/ site/part.xml"},
    {"equal in size and time of modification",
     "touch -r site/part.xml t && s site/part.xml 2 && touch -r t site/part.xml"},
    {"more signs than the kernel keeps",
     "i=0; while [ $i -lt 9000 ]; do : >site/a; : >site/b; i=$((i+1)); done; s site/part.xml 2"},
    {"written again, as it was", "s site/part.xml 1", "UNCHANGED"},
    {"another file beside it", "s site/other.xml 2", "UNCHANGED"},
    {"..data is swapped", "ln -s ..2 site/..new && mv -T site/..new site/..data", changed,
     "mkdir site/..1 site/..2 && mv site/*.xml site/..1 && cp site/..1/* site/..2 && "
     "s site/..2/part.xml 2 && ln -s ..1 site/..data && ln -s ..data/main.xml ..data/part.xml "
     "site"},
    {"a link above is swapped", "mv -T new current",
     "CHANGED\nspeed: 1 (current/part.xml:1) -> 2 (current/main.xml:1)",
     "ln -s site current && mkdir next && s next/main.xml 2 && ln -s next new", "current/main.xml"},
    {"the directory is removed and made again", "rm -r site && mkdir site && s site/main.xml 2",
     "CHANGED\nspeed: 1 (part.xml:1) -> 2 (main.xml:1)"},
    {"a directory further up is moved away and another one made",
     "mv deep old && cp -r old deep && s deep/er/part.xml 2",
     "CHANGED\nspeed: 1 (deep/er/part.xml:1) -> 2 (deep/er/part.xml:1)",
     "mkdir deep && mv site deep/er", "deep/er/main.xml"},
    {"a file appears earlier on the path", "mkdir early && s early/main.xml 2",
     "CHANGED\nspeed: 1 (part.xml:1) -> 2 (early/main.xml:1)"},
    {"a file earlier on the path disappears", "rm early/main.xml",
     "CHANGED\nspeed: 2 (early/main.xml:1) -> 1 (part.xml:1)", "mkdir early && s early/main.xml 2"},
    {"an include is found elsewhere", "mv site/part site/part.xml",
     "CHANGED\nspeed: 3 (early/part.xml:1) -> 1 (part.xml:1)",
     "mkdir early && mv site/part.xml site/part && s early/part.xml 3"},
    {"an entity", "echo 3 >site/e", "CHANGED\nspeed: 2\n (main.xml:2) -> 3\n (main.xml:2)",
     "echo 2 >site/e && s site/main.xml '&e;' && "
     "sed -i \"1i<!DOCTYPE config [<!ENTITY e SYSTEM 'e'>]>\" site/main.xml"},
    {"a file in the current directory", "s here 2", "CHANGED\nspeed: 1 (here:1) -> 2 (here:1)",
     "s here 1", "here"},
    {"all are gone", "rm -r site",
     "REFUSED\nmain.xml: no readable file \"main.xml\" in early, site,  [not-found]"},
};

class FilesTest : public LiveTest {
 protected:
  FilesTest() {
    setSpeed(1);
    age();
  }

  void setSpeed(int speed) const { put(property("speed", std::to_string(speed))); }
  static std::string told(int before, int now) {
    return "CHANGED\nspeed: " + std::to_string(before) + " (main.xml:2) -> " + std::to_string(now) +
           " (main.xml:2)";
  }
  Plain::Options rare() const { return options<Plain>().slowPoll(1h); }
};

// With a sign of the change, and where the kernel gives none: then with the slow poll alone.
TEST_F(FilesTest, EveryWayToChangeAFileIsSeenOnceAndByItself) {
  for (const Move& move : moves) {
    for (const bool hasSigns : {true, false}) {
      SCOPED_TRACE(move.name + std::string(hasSigns ? "" : ", without signs"));
      shell(functions + (base + std::string(move.set)));
      age();
      isInotifyUsedUp = !hasSigns;
      Plain live(move.file, {}, false, options<Plain>().slowPoll(5s));
      isInotifyUsedUp = false;
      shell(functions + std::string(move.move));
      EXPECT_EQ(next(live, hasSigns ? 200ms : 5s), move.told);
      EXPECT_EQ(next(live), "UNCHANGED");
      EXPECT_EQ(next(live, 5s), "UNCHANGED");
    }
  }
}

TEST_F(FilesTest, AFileThatIsWrittenInStepsIsTakenWhenItRests) {
  for (const bool hasSigns : {true, false}) {
    isInotifyUsedUp = !hasSigns;
    Plain live("main.xml", {}, false, options<Plain>().slowPoll(hasSigns ? 1h : 100ms));
    isInotifyUsedUp = false;
    std::ofstream file("site/main.xml", std::ios::trunc);
    for (const char* part :
         {"<config>\n", "<property name='speed'>", "2", "</property>", "</config>"}) {
      file << part << std::flush;
      EXPECT_EQ(shown(live.poll()), "UNCHANGED");
      clock->time += 199ms;
      EXPECT_EQ(shown(live.poll()), "UNCHANGED") << part;
    }
    clock->time += hasSigns ? 1ms : 200ms;
    put("site/other.xml", "");
    EXPECT_EQ(shown(live.poll()), told(1, 2)) << "whatever its neighbours do";

    for (int i = 20; i > 0; --i) {
      setSpeed(i);
      EXPECT_EQ(live.poll().outcome, Plain::UNCHANGED) << i;
      clock->time += hasSigns ? 100ms : 110ms;
    }
    EXPECT_EQ(shown(live.poll()), told(2, 1)) << "2 s are enough";
    age();
  }
}

// A write through a mapping changes neither size nor times, nor is there a sign of it: so does a
// write within one tick of the clock of many file systems.
TEST_F(FilesTest, WhatIsAsNewAsItsReadingIsReadAgain) {
  const int file = ::open("site/main.xml", O_RDWR);
  const auto size = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
  auto* text =
      static_cast<char*>(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
  *static_cast<volatile char*>(text) = '<';
  std::optional<Plain> live;
  std::chrono::steady_clock::time_point written;
  do {  // until the machine leaves time enough
    written = std::chrono::steady_clock::now();
    ::futimens(file, nullptr);
    live.emplace("main.xml", xml::SchemeList(), false, rare());
  } while (std::chrono::steady_clock::now() - written >= live::Places::newness);
  text[std::string(text, size).find(">1<") + 1] = '2';
  clock->time += 19ms;
  EXPECT_EQ(shown(live->poll()), "UNCHANGED");
  clock->time += 1ms;
  EXPECT_EQ(shown(live->poll()), told(1, 2));
  ::munmap(text, size);
  ::close(file);
}

TEST_F(FilesTest, TheDescriptorBecomesReadableForSignsAndForTheSlowPoll) {
  const auto isReadable = [](const Plain& live, int wait) {
    pollfd waited{live.fd(), POLLIN, 0};
    return ::poll(&waited, 1, wait) == 1;
  };
  Plain live("main.xml", {}, false, rare());
  // Other programs may do something in a directory on the way.
  for (int i = 0; i < 100 && isReadable(live, 0); ++i) {
    age();
    live.poll();
  }
  EXPECT_FALSE(isReadable(live, 0));
  setSpeed(2);
  EXPECT_TRUE(isReadable(live, 0));
  const Plain slow("main.xml", {}, false, Plain::Options().slowPoll(1ms));
  EXPECT_TRUE(isReadable(slow, 5000));
#ifndef __SANITIZE_ADDRESS__  // it looks at memory through a pipe
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none = {0, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
  const std::string thrown = failureOf([] { Plain("main.xml", {}, false); });
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(thrown,
            "SYSTEM_FAILURE: no descriptor for the files that are followed: Too many open files");
#endif
}

// The directory that is made again may have the number of the one before.
TEST_F(FilesTest, AnEmptyDirectoryThatIsMadeAgainIsWatched) {
  shell("mkdir early");
  Plain live("main.xml", {}, false, rare());
  shell("rmdir early && mkdir early");
  EXPECT_EQ(next(live), "UNCHANGED");
  put("early/main.xml", property("speed", "2"));
  EXPECT_EQ(next(live), "CHANGED\nspeed: 1 (main.xml:2) -> 2 (early/main.xml:2)");
}

TEST_F(FilesTest, AThousandChangesAreAThousand) {
  Plain live("main.xml", {}, false, rare());
  const auto used = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  for (int i = 2; i <= 1001; ++i) {
    put("site/new.xml", property("speed", std::to_string(i)));
    std::filesystem::rename("site/new.xml", "site/main.xml");
    live.poll();
    clock->time += 200ms;
    ASSERT_EQ(shown(live.poll()), told(i - 1, i));
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}), used);
}

}  // namespace

}  // namespace follow
