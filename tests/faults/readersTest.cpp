// Eight threads that read one finished configuration in all ways at once.

#include <gtest/gtest.h>

#include <thread>

#include "../loader/LoaderState.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/Origins.hpp"

namespace {

namespace config = service::util::config;
using cppUtil::err::Exception;

class Lister : public config::Visitor {
 public:
  void property(const config::Visited& visited, const std::string& value) override {
    texts.push_back(visited.path + "=" + value);
  }

  std::vector<std::string> texts;
};

// All that a reader is told.
std::vector<std::string> readAll(const config::IConfigPtr& root, const config::Select& select,
                                 const config::xml::Origins& origins) {
  Lister all;
  visit(root, all);
  std::vector<std::string> told = all.texts;
  std::string value;
  root->getProperty(select, value);
  told.push_back(value);
  config::IConfigPtr section = root->getSection("outer", 0)->getSection("inner", 0);
  section->getProperty("p", value, 0);
  told.push_back(value);
  for (const auto count : {section->getPropertyCount("p"), section->getSectionCount("t")}) {
    told.push_back(std::to_string(count));
  }
  const auto origin = origins.of(section, "p", 0);
  told.push_back(origin.file->name + ":" + std::to_string(origin.line));
  try {
    section->getSection("s", 7);
  } catch (const Exception& e) {
    told.push_back(std::string(e.what()) + ": " + e.getMessage());
  }
  return told;
}

TEST(Readers, AreToldTheSameOnEightThreads) {
  setSearchPath({ZU_TEST_DATA_DIR "/include-in-section"});
  config::xml::Origins origins;
  const auto root = config::xml::create("main.xml", {}, true, origins);
  const config::Select select("outer.inner.s.leaf");
  const std::vector<std::string> expected = {
      "outer.inner.p=x",
      "outer.inner.s.leaf=y",
      "y",
      "x",
      "1",
      "0",
      "part.xml:3",
      "NOT_FOUND: util::config: section index 7 for section \"s\" out of bounds"};

  // Nothing was read before, so that whatever is set up at the first use is set up by all.
  std::vector<std::vector<std::string>> different(8);
  std::vector<std::thread> threads;
  for (auto& mine : different) {
    threads.emplace_back([&, copy = root] {
      for (int i = 0; i < 200 && mine.empty(); ++i) {
        auto told = readAll(copy, select, origins);
        if (told != expected) mine = std::move(told);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const auto& each : different) EXPECT_EQ(each, std::vector<std::string>());
}

}  // namespace
