// Eight threads that read one finished configuration in all ways at once.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "../loader/LoaderState.hpp"
#include "../printed.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/xml/Origins.hpp"

namespace {

namespace config = service::util::config;

TEST(Readers, AreToldTheSameOnEightThreads) {
  setSearchPath({ZU_TEST_DATA_DIR "/include-in-section"});
  config::xml::Origins origins;
  const auto root = config::xml::create("main.xml", {}, true, origins);
  const config::Select select("outer.inner.s.leaf");
  const auto readAll = [&] {
    std::string told = printed(root), value;
    root->getProperty(select, value);
    const auto section = root->getSection("outer", 0)->getSection("inner", 0);
    const auto origin = origins.of(section, "p", 0);
    told += value + " " + origin.file->name + ":" + std::to_string(origin.line) + "\n";
    try {
      section->getSection("s", 7);
    } catch (const cppUtil::err::Exception& e) {
      told += std::string(e.what()) + ": " + e.getMessage();
    }
    return told;
  };
  const std::string expected =
      "\"outer\"[0]:\n  \"inner\"[0]:\n    \"p\"[0] = \"x\"\n    \"s\"[0]:\n"
      "      \"leaf\"[0] = \"y\"\ny part.xml:3\n"
      "NOT_FOUND: util::config: section index 7 for section \"s\" out of bounds";

  // Nothing was read before, so that whatever is set up at the first use is set up by all.
  std::atomic<int> different{0};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < 200; ++i) {
        if (readAll() != expected) ++different;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(different, 0);
  EXPECT_EQ(readAll(), expected);
}

}  // namespace
