// Loader cases as folders of real files, run through the installed face of the library.
//
// Each folder below tests/data holds a file `case` and a file `expected`. The lines of `case`:
//
//   file NAME            what to load; main.xml when there is no such line
//   validate             load with validation
//   scheme URI LOCATION  an entry of the scheme list, in order
//   path DIRECTORY       an entry of the search path, in order, relative to the folder; the folder
//                        itself when there is no such line
//
// `expected` is the whole configuration, as dump() writes it, or the whole failure, as report()
// does. {CASE} stands for the folder, {POINTER} for an address.

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "LoaderState.hpp"
#include "cppUtil/err/Exception.hpp"
#include "placeholders.hpp"
#include "service/util/config/internal/Config.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

namespace fs = std::filesystem;
using service::util::config::IConfig;
using service::util::config::internal::Config;
using service::util::config::xml::SchemeList;

struct Case {
  std::string file = "main.xml";
  bool validate = false;
  SchemeList schemes;
  std::vector<std::string> path;
};

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

Case readCase(const fs::path& folder) {
  Case result;
  std::istringstream lines(contentOf(folder / "case"));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string keyword, first, second;
    words >> keyword >> first >> second;
    if (keyword == "file") {
      result.file = first;
    } else if (keyword == "validate") {
      result.validate = true;
    } else if (keyword == "scheme") {
      result.schemes.emplace_back(first, second);
    } else if (keyword == "path") {
      result.path.push_back((folder / first).lexically_normal());
    } else {
      throw std::runtime_error("unknown keyword in a case: " + line);
    }
  }
  if (result.path.empty()) result.path.push_back(folder);
  return result;
}

std::string escaped(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (c == '"' || c == '\\') {
      result += {'\\', c};
    } else {
      result += c;
    }
  }
  return result + "\"";
}

// One line for each value and section; names in byte order, occurrences in the order of their
// index, the content of a section below it.
void dump(const IConfig& node, const std::string& indent, std::ostream& out) {
  const auto& config = dynamic_cast<const Config&>(node);
  for (const std::string& name : config.getPropertyNames()) {
    for (std::uint32_t i = 0; i < config.getPropertyCount(name); ++i) {
      std::string value;
      EXPECT_TRUE(config.getProperty(name, value, i)) << name << i;
      out << indent << escaped(name) << "[" << i << "] = " << escaped(value) << "\n";
    }
  }
  for (const std::string& name : config.getSectionNames()) {
    for (std::uint32_t i = 0; i < config.getSectionCount(name); ++i) {
      out << indent << escaped(name) << "[" << i << "]:\n";
      dump(*config.getSection(name, i), indent + "  ", out);
    }
  }
}

void report(const cppUtil::err::Exception& e, std::ostream& out) {
  out << "code " << e.getCode() << "\nsystem error " << e.getSystemErrorCode() << "\nfile "
      << e.getFile() << "\nfunction " << e.getFunction() << "\n"
      << (e.getLine() > 0 ? "line known" : "no line") << "\nmessage:\n"
      << e.getMessage() << ":end\n";
}

std::string outcomeOf(const Case& test, const fs::path& folder) {
  std::ostringstream out;
  try {
    const auto config = service::util::config::xml::create(test.file, test.schemes, test.validate);
    dump(*config, "", out);
  } catch (const cppUtil::err::Exception& e) {
    report(e, out);
  }
  return withoutPointers(replaceAll(out.str(), folder, "{CASE}"));
}

std::vector<fs::path> folders() {
  std::vector<fs::path> result;
  for (const auto& entry : fs::directory_iterator(ZU_TEST_DATA_DIR)) {
    if (entry.is_directory()) result.push_back(entry.path());
  }
  if (result.empty()) throw std::runtime_error("no loader cases in " ZU_TEST_DATA_DIR);
  std::sort(result.begin(), result.end());
  return result;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& info) {
  std::string name = info.param.filename();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

class LoaderData : public testing::TestWithParam<fs::path> {
 protected:
  // Values leave the loader in the code page of the locale.
  static void SetUpTestSuite() { ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr); }
};

TEST_P(LoaderData, GivesWhatIsExpected) {
  const Case test = readCase(GetParam());
  setSearchPath(test.path);
  EXPECT_EQ(outcomeOf(test, GetParam()), contentOf(GetParam() / "expected"));
  EXPECT_EQ(getSearchPath(), test.path);
  EXPECT_FALSE(isXmlLibraryInitialised());
}

INSTANTIATE_TEST_SUITE_P(Folders, LoaderData, testing::ValuesIn(folders()), nameOf);

}  // namespace
