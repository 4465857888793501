// What a load does to the process around it, through the shared library.

#include "service/util/config/xml/create.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "load.hpp"
#include "service/util/config/Select.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/xml/internal/XmlConfigParser.hpp"
#include "xerces/Exception.hpp"

namespace {

using service::util::config::xml::create;

const std::string data = ZU_TEST_DATA_DIR "/";

class LogLines {
 public:
  LogLines() : threshold(cu_Logger_getThreshold()) {
    cu_Logger_setThreshold(CU_DEBUG);
    cu_Logger_setCallback(
        [](std::uint32_t level, const char* message, void* lines) {
          static_cast<std::vector<std::string>*>(lines)->push_back(std::to_string(level) + " " +
                                                                   message);
        },
        &lines);
  }
  ~LogLines() {
    cu_Logger_setCallback(nullptr, nullptr);
    cu_Logger_setThreshold(threshold);
  }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;

  std::vector<std::string> lines;

 private:
  std::uint32_t threshold;
};

TEST(CreateTest, LogsEachFileOnceBeforeItIsRead) {
  const auto line = [](const std::string& file) {
    return "3 Parsing configuration file '" + data + file + "'";
  };
  struct Row {
    const char* folder;
    std::vector<std::string> expected;
  };
  const Row rows[] = {
      {"include-in-section",
       {line("include-in-section/main.xml"), line("include-in-section/part.xml"),
        line("include-in-section/leaf.xml")}},
      {"include-twice",
       {line("include-twice/main.xml"), line("include-twice/part.xml"),
        line("include-twice/part.xml")}},
      {"malformed-included",
       {line("malformed-included/main.xml"), line("malformed-included/parts/part.xml")}},
      {"not-found", {}},
  };
  for (const Row& row : rows) {
    LogLines log;
    load(row.folder, false);
    EXPECT_EQ(log.lines, row.expected) << row.folder;
  }
}

TEST(CreateTest, FailedLoadsLeaveNoTrace) {
  for (const bool validate : {false, true}) {
    EXPECT_EQ(load("malformed-included", validate), 6u);
    EXPECT_EQ(load("include-missing", validate), 3u);
    EXPECT_EQ(load("not-found", validate), 1u);
    EXPECT_FALSE(isXmlLibraryInitialised());
    EXPECT_EQ(load("include-in-section", validate), 0u);
  }
}

TEST(CreateTest, ConfigurationOutlivesTheXmlLibrary) {
  setSearchPath({data + "include-in-section"});
  const auto config = create("main.xml", {}, true);
  ASSERT_FALSE(isXmlLibraryInitialised());
  std::string value;
  EXPECT_TRUE(config->getProperty("outer.inner.s.leaf", value));
  EXPECT_EQ(value, "y");
}

// The class behind create does not translate; its exception keeps its type on the way out of the
// shared library.
TEST(CreateTest, TheClassBehindItDoesNotTranslateFailedParses) {
  setSearchPath({data + "malformed"});
  try {
    service::util::config::xml::internal::XmlConfigParser parser("main.xml", {}, false);
    FAIL();
  } catch (const xerces::Exception& e) {
    EXPECT_EQ(std::string(e.what()), "XML Parser reported the following errors:\n\tFATAL  in \"" +
                                         data +
                                         "malformed/main.xml\"(line=5, column=3): expected end of "
                                         "tag 'section'\n");
  }
  EXPECT_FALSE(isXmlLibraryInitialised());
}

TEST(GrammarTest, IsTheFileByteForByte) {
  std::ifstream file(ZU_GRAMMAR_FILE, std::ios::binary);
  ASSERT_TRUE(file);
  const std::vector<char> expected{std::istreambuf_iterator<char>(file), {}};
  std::vector<char> first = service::util::config::grammar::getGrammar();
  EXPECT_EQ(first, expected);
  ASSERT_FALSE(first.empty());
  EXPECT_EQ(first.back(), '>');
  first.front() = '?';
  EXPECT_EQ(service::util::config::grammar::getGrammar(), expected);
}

}  // namespace
