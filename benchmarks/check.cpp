// Checks of files that have much wrong with them: four times as much of it must not cost more for
// each.

#include <functional>

#include "Folder.hpp"
#include "registration.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/format.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace benchmarks {

namespace {

namespace xml = service::util::config::xml;
using service::util::locator::ConfigLocator;

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

// Files that include the next one, each called by its number, in a directory of its own if
// directory says how these begin. last: what the last one holds.
void writeChain(const Folder& folder, std::size_t length, const std::string& directory,
                const std::string& last) {
  const auto nameOf = [&](std::size_t i) {
    const std::string number = std::to_string(i);
    return (directory.empty() ? "" : directory + number + "/") + number + ".xml";
  };
  const std::string up = directory.empty() ? "" : "../";
  for (std::size_t i = 0; i < length; ++i) {
    folder.write(nameOf(i), "<include>" + up + nameOf(i + 1) + "</include>");
  }
  folder.write(nameOf(length), last);
  folder.write("main.xml", "<include>" + nameOf(0) + "</include>");
}

void check(const Folder& folder, bool validate, std::size_t problems) {
  const auto found = xml::check(folder.main(), {}, validate);
  if (found.size() < problems) throw std::runtime_error("the check found too little");
  benchmark::DoNotOptimize(xml::format(found));
}

struct Growth {
  const char* what;
  std::size_t count;  // in the smaller of the two
  std::function<void(const Folder&, std::size_t)> write;
  std::function<void(const Folder&, std::size_t)> run;
};

const Growth growths[] = {
    {"check, per finding on one line", 2000,
     [](const Folder& folder, std::size_t count) {
       folder.write("main.xml", repeated("<property name='p'/>", count));
     },
     [](const Folder& folder, std::size_t count) { check(folder, false, count); }},
    {"check, per finding of an included file", 2000,
     [](const Folder& folder, std::size_t count) {
       folder.write("main.xml", "\n<include>part.xml</include>\n");
       folder.write("part.xml", repeated("\n<property name='p'/>", count));
     },
     [](const Folder& folder, std::size_t count) { check(folder, false, count); }},
    {"check, per section that is invalid", 2000,
     [](const Folder& folder, std::size_t count) {
       folder.write("main.xml", repeated("<section></section>\n", count));
     },
     [](const Folder& folder, std::size_t count) { check(folder, true, count); }},
    {"check, per missing include", 500,
     [](const Folder& folder, std::size_t count) {
       std::string includes;
       for (std::size_t i = 0; i < count; ++i) {
         includes += "<include>none" + std::to_string(i) + "</include>\n";
       }
       folder.write("main.xml", includes);
     },
     [](const Folder& folder, std::size_t count) { check(folder, false, count); }},
    {"check with missing includes, per path entry", 1000,
     [](const Folder& folder, std::size_t) {
       folder.write("main.xml", repeated("<include>none</include>\n", 50));
     },
     [](const Folder& folder, std::size_t count) {
       for (std::size_t i = 0; i < count; ++i) {
         ConfigLocator::prepend(folder.path / std::to_string(i));
       }
       check(folder, false, 50);
       for (std::size_t i = 0; i < count; ++i) {
         ConfigLocator::remove(folder.path / std::to_string(i));
       }
     }},
    {"check, per file of a chain", 500,
     [](const Folder& folder, std::size_t count) {
       writeChain(folder, count, "", "<property name='p'/>");
     },
     [](const Folder& folder, std::size_t) { check(folder, false, 1); }},
    {"load with origins, per match of files in many directories", 80,
     [](const Folder& folder, std::size_t count) { writeChain(folder, count, "d", ""); },
     [](const Folder& folder, std::size_t) {
       xml::Origins origins;
       xml::create(folder.main(), {}, false, origins);
     }},
};

}  // namespace

void addChecks(const Extent& extent) {
  for (const Growth& growth : growths) {
    for (const std::size_t factor : {1, 4}) {
      const std::size_t count = growth.count * factor / (extent.smallOnly ? 20 : 1);
      // Every one of the directories has a match for each of the files.
      const bool isSquare = std::string(growth.what).find("match") != std::string::npos;
      add(std::string("growth: ") + growth.what, factor == 1 ? "1x" : "ours, 4x",
          [&growth, count, isSquare](benchmark::State& state) {
            const Folder folder;
            growth.write(folder, count);
            for (auto _ : state) growth.run(folder, count);
            setUnits(state, isSquare ? count * count : count);
          });
    }
  }
}

}  // namespace benchmarks
