// What counts as a change of the files, however it is made, and when it is taken.
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "Follow.hpp"

namespace {

bool isInotifyUsedUp = false;

}  // namespace

// In place of the system's: as it is when the user has no instance left.
extern "C" int inotify_init1(int flags) {
  if (!isInotifyUsedUp) return static_cast<int>(::syscall(SYS_inotify_init1, flags));
  errno = EMFILE;
  return -1;
}

namespace follow {

namespace {

using Plain = Live<IConfig>;

struct Move {
  const char* name;
  const char* file;  // to follow
  const char* set;   // what stands there first, by the shell
  const char* move;  // what happens, by the shell
  const char* told;
};

constexpr const char* base =
    "mkdir site && f() { echo \"<config>$2</config>\" >$1; } && p() { echo \"<property "
    "name='$1'>$2</property>\"; } && f site/part.xml \"$(p speed 1)\" && "
    "f site/main.xml '<include>part.xml</include>' && ";

const Move moves[] = {
    {"an editor renames and saves", "main.xml", "true",
     "mv site/part.xml site/part.xml~ && f site/part.xml \"$(p speed 2)\" && rm site/part.xml~",
     "CHANGED\nspeed: 1 (site/part.xml:1) -> 2 (site/part.xml:1)"},
    {"sed -i", "main.xml", "true", "sed -i s/1/2/ site/part.xml",
     "CHANGED\nspeed: 1 (site/part.xml:1) -> 2 (site/part.xml:1)"},
    {"written again, as it was", "main.xml", "true", "f site/part.xml \"$(p speed 1)\"",
     "UNCHANGED"},
    {"another file beside it", "main.xml", "true", "f site/other.xml ''", "UNCHANGED"},
    {"..data is swapped", "main.xml",
     "mkdir site/..1 site/..2 && mv site/*.xml site/..1 && cp site/..1/* site/..2 && "
     "sed -i s/1/2/ site/..2/part.xml && ln -s ..1 site/..data && "
     "ln -s ..data/main.xml ..data/part.xml site",
     "ln -s ..2 site/..new && mv -T site/..new site/..data",
     "CHANGED\nspeed: 1 (site/part.xml:1) -> 2 (site/part.xml:1)"},
    {"a link above is swapped", "current/main.xml",
     "ln -s site current && mkdir next && f next/main.xml \"$(p speed 2)\" && ln -s $PWD/next new",
     "mv -T new current", "CHANGED\nspeed: 1 (current/part.xml:1) -> 2 (current/main.xml:1)"},
    {"the directory is removed and made again", "main.xml", "true",
     "rm -r site && mkdir site && f site/main.xml \"$(p speed 2)\"",
     "CHANGED\nspeed: 1 (site/part.xml:1) -> 2 (site/main.xml:1)"},
    {"a directory further up is moved away and another one made", "deep/er/main.xml",
     "mkdir deep && mv site deep/er", "mv deep old && cp -r old deep && sed -i s/1/2/ deep/*/*",
     "CHANGED\nspeed: 1 (deep/er/part.xml:1) -> 2 (deep/er/part.xml:1)"},
    {"a file appears earlier on the path", "main.xml", "true",
     "mkdir early && f early/main.xml \"$(p speed 2)\"",
     "CHANGED\nspeed: 1 (site/part.xml:1) -> 2 (early/main.xml:1)"},
    {"a file earlier on the path disappears", "main.xml",
     "mkdir early && f early/main.xml \"$(p speed 2)\"", "rm early/main.xml",
     "CHANGED\nspeed: 2 (early/main.xml:1) -> 1 (site/part.xml:1)"},
    {"an include is found elsewhere", "main.xml",
     "mkdir early && mv site/part.xml site/part && f early/part.xml \"$(p speed 3)\"",
     "mv site/part site/part.xml", "CHANGED\nspeed: 3 (early/part.xml:1) -> 1 (site/part.xml:1)"},
    {"an entity", "main.xml",
     "echo 2 >site/e && echo \"<!DOCTYPE config [<!ENTITY e SYSTEM 'e'>]><config>$(p speed '&e;')"
     "</config>\" >site/main.xml",
     "echo 3 >site/e", "CHANGED\nspeed: 2\n (site/main.xml:1) -> 3\n (site/main.xml:1)"},
    {"all are gone", "main.xml", "true", "rm -r site",
     "REFUSED\nmain.xml: no readable file \"main.xml\" in @/early, @/site [not-found]"},
};

class FilesTest : public LiveTest {
 protected:
  std::string asShown(std::string told) const {
    for (std::size_t at = 0; (at = told.find('@')) != told.npos;) {
      told.replace(at, 1, folder.path);
    }
    return told;
  }
};

// With a sign of the change, and where the kernel gives none: then with the slow poll alone.
TEST_F(FilesTest, EveryWayToChangeAFileIsSeenOnceAndByItself) {
  for (const Move& move : moves) {
    for (const bool hasSigns : {true, false}) {
      const std::string name = move.name + std::string(hasSigns ? "" : ", without signs");
      folder.shell("rm -rf * && " + (base + std::string(move.set)));
      const std::string file = std::string(move.file).find('/') == std::string::npos
                                   ? move.file
                                   : folder.path / move.file;
      isInotifyUsedUp = !hasSigns;
      Plain live(file, {}, false, drivenBy<Plain>(clock).slowPoll(5s));
      isInotifyUsedUp = false;
      next(live);  // what is new
      folder.shell(
          "f() { echo \"<config>$2</config>\" >$1; }; p() { echo \"<property "
          "name='$1'>$2</property>\"; }; " +
          std::string(move.move));
      EXPECT_EQ(next(live, hasSigns ? 200ms : 5s), asShown(move.told)) << name;
      EXPECT_EQ(next(live), "UNCHANGED") << name;
      EXPECT_EQ(next(live, 5s), "UNCHANGED") << name;
    }
  }
}

TEST_F(FilesTest, AFileThatIsWrittenInStepsIsTakenWhenItRests) {
  folder.put("site/main.xml", property("speed", "1"));
  Plain live("main.xml", {}, false, drivenBy<Plain>(clock).slowPoll(1h));
  next(live);
  std::ofstream file(folder.path / "site/main.xml", std::ios::trunc);
  for (const char* part :
       {"<config>", "<property name='speed'>", "2", "</property>", "</config>"}) {
    file << part << std::flush;
    EXPECT_EQ(folder.shown(live.poll()), "UNCHANGED");
    clock->time += 199ms;
    EXPECT_EQ(folder.shown(live.poll()), "UNCHANGED") << part;
  }
  clock->time += 1ms;
  EXPECT_EQ(folder.shown(live.poll()),
            "CHANGED\nspeed: 1 (site/main.xml:2) -> 2 (site/main.xml:1)");

  for (int i = 0; i < 20; ++i) {
    folder.put("site/main.xml", property("speed", std::to_string(i)));
    EXPECT_EQ(live.poll().outcome, Plain::UNCHANGED) << i;
    clock->time += 100ms;
  }
  EXPECT_EQ(folder.shown(live.poll()),
            "CHANGED\nspeed: 2 (site/main.xml:1) -> 19 (site/main.xml:2)")
      << "2 s are enough";
}

// A write through a mapping changes neither size nor times, nor is there a sign of it: so does a
// write within one tick of the clock of many file systems.
TEST_F(FilesTest, WhatIsAsNewAsItsReadingIsReadAgain) {
  folder.put("site/main.xml", property("speed", "1"));
  const int file = ::open((folder.path / "site/main.xml").c_str(), O_RDWR);
  const auto size = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
  auto* text =
      static_cast<char*>(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
  *static_cast<volatile char*>(text) = '<';
  Plain live("main.xml", {}, false, drivenBy<Plain>(clock));
  text[std::string(text, size).find(">1<") + 1] = '2';
  clock->time += 19ms;
  EXPECT_EQ(folder.shown(live.poll()), "UNCHANGED");
  clock->time += 1ms;
  EXPECT_EQ(folder.shown(live.poll()),
            "CHANGED\nspeed: 1 (site/main.xml:2) -> 2 (site/main.xml:2)");
  ::munmap(text, size);
  ::close(file);
}

TEST_F(FilesTest, TheDescriptorBecomesReadableForAChangeAndForTheTimes) {
  folder.put("site/main.xml", property("speed", "1"));
  const auto isReadable = [](const Plain& live, int wait) {
    pollfd waited{live.fd(), POLLIN, 0};
    return ::poll(&waited, 1, wait) == 1;
  };
  Plain live("main.xml", {}, false, Plain::Options().slowPoll(1h));
  EXPECT_TRUE(isReadable(live, 5000)) << "what was new";
  while (isReadable(live, 50)) live.poll();
  folder.put("site/main.xml", property("speed", "2"));
  EXPECT_TRUE(isReadable(live, 0));
  Plain::Result result;
  while (result.outcome == Plain::UNCHANGED && isReadable(live, 5000)) result = live.poll();
  EXPECT_EQ(folder.shown(result), "CHANGED\nspeed: 1 (site/main.xml:2) -> 2 (site/main.xml:2)");

  while (isReadable(live, 50)) live.poll();
  Plain slow("main.xml", {}, false, Plain::Options().slowPoll(1ms));
  EXPECT_TRUE(isReadable(slow, 5000));
#ifndef __SANITIZE_ADDRESS__  // it looks at memory through a pipe
  const FewDescriptors few(1);
  EXPECT_THROW(Plain("main.xml", {}, false), cppUtil::err::Exception);
#endif
}

TEST_F(FilesTest, AFileInTheCurrentDirectoryIsFollowedThere) {
  folder.put("site/main.xml", property("speed", "1"));
  setSearchPath({""});
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path / "site");
  Plain live("main.xml", {}, false, drivenBy<Plain>(clock));
  folder.put("site/main.xml", property("speed", "2"));
  EXPECT_EQ(next(live), "CHANGED\nspeed: 1 (site/main.xml:2) -> 2 (site/main.xml:2)");
  std::filesystem::current_path(before);
}

TEST_F(FilesTest, AThousandChangesAreAThousand) {
  folder.put("site/main.xml", property("speed", "0"));
  Plain live("main.xml", {}, false, drivenBy<Plain>(clock));
  const auto used = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  for (int i = 1; i <= 1000; ++i) {
    folder.put("site/new.xml", property("speed", std::to_string(i)));
    std::filesystem::rename(folder.path / "site/new.xml", folder.path / "site/main.xml");
    live.poll();
    clock->time += 200ms;
    ASSERT_EQ(folder.shown(live.poll()), "CHANGED\nspeed: " + std::to_string(i - 1) +
                                             " (site/main.xml:2) -> " + std::to_string(i) +
                                             " (site/main.xml:2)");
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}), used);
}

}  // namespace

}  // namespace follow
