// What observers, origins and checks tell about folders of real files, through the installed face
// of the library.
//
// Each folder below data holds a file `case` (see Case.hpp) and a file `expected`: the calls of a
// load, every value and section with its origin, and what a check finds. {CASE} stands for the
// folder. Files that a load includes without end are told of up to a limit.

#include <gtest/gtest.h>

#include <clocale>
#include <sstream>
#include <stdexcept>

#include "Case.hpp"
#include "cppUtil/err/Exception.hpp"
#include "loader/LoaderState.hpp"
#include "placeholders.hpp"
#include "service/util/config/visit.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/check.hpp"

namespace {

namespace fs = std::filesystem;
namespace xml = service::util::config::xml;
using cppUtil::err::Exception;
using service::util::config::IConfigPtr;
using service::util::config::Visited;
using xml::Location;

std::ostream& operator<<(std::ostream& out, const Location& location) {
  return out << location.file << ":" << location.line << ":" << location.column;
}

std::string element(const std::string& name, std::uint32_t index) {
  return "\"" + name + "\"[" + std::to_string(index) + "]";
}

// Writes a line for each call, and keeps the origins.
class Events : public xml::Origins {
 public:
  explicit Events(std::ostream& out) : out(out) {}

  void fileEntered(const File& file) override {
    if (getFiles().size() == 12) throw std::length_error("that are enough files");
    out << indent << "file '" << file.name << "': " << file.path << " from '" << file.directory
        << "'";
    for (const auto& match : file.shadowed) {
      out << ", not " << match.file << " from '" << match.directory << "'";
    }
    if (file.includer != nullptr) {
      out << ", included at " << file.include << " by '" << file.includer->name << "'";
    }
    out << "\n";
    indent += "  ";
    Origins::fileEntered(file);
  }
  void sectionAdded(const IConfigPtr& parent, const std::string& name, std::uint32_t index,
                    const IConfigPtr& section, const Location& location) override {
    EXPECT_EQ(parent->getSection(name, index), section);
    out << indent << "section " << element(name, index) << " at " << location << "\n";
    Origins::sectionAdded(parent, name, index, section, location);
  }
  void propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                     const Location& location) override {
    EXPECT_EQ(config->getPropertyCount(name), index + 1);
    out << indent << "property " << element(name, index) << " at " << location << "\n";
    Origins::propertyAdded(config, name, index, location);
  }
  void fileLeft(const File& file) override {
    indent.resize(indent.size() - 2);
    out << indent << "end of '" << file.name << "'\n";
    Origins::fileLeft(file);
  }

 private:
  std::ostream& out;
  std::string indent;
};

// Writes a line for each value and section, with its origin.
class Tree : public service::util::config::Visitor {
 public:
  Tree(const xml::Origins& origins, std::ostream& out) : origins(origins), out(out) {}

  void property(const Visited& visited, const std::string& value) override {
    out << visited.path << (visited.selectable ? "" : " (not selectable)") << " = '" << value
        << "'";
    tell(origins.of(visited.parent, visited.name, visited.index));
  }
  bool enterSection(const Visited& visited, const IConfigPtr&) override {
    out << visited.path << (visited.selectable ? "" : " (not selectable)");
    tell(origins.ofSection(visited.parent, visited.name, visited.index));
    return true;
  }

 private:
  void tell(const xml::Origins::Origin& origin) {
    ASSERT_NE(origin.file, nullptr);
    out << " at " << Location{origin.file->path, origin.line, origin.column};
    for (const auto* file = origin.file; file->includer != nullptr; file = file->includer) {
      out << " <- " << file->include;
    }
    out << "\n";
  }

  const xml::Origins& origins;
  std::ostream& out;
};

void load(const Case& test, std::ostream& out) {
  out << "load:\n";
  Events events(out);
  try {
    const auto config = xml::create(test.file, test.schemes, test.validate, events);
    out << "origins:\n";
    Tree tree(events, out);
    visit(config, tree);
  } catch (const Exception& e) {
    out << "fails with code " << e.getCode() << ": " << e.getMessage() << "\n";
  }
}

void check(const Case& test, std::ostream& out) {
  out << "check:\n";
  Events events(out);
  for (const xml::Problem& problem : xml::check(test.file, test.schemes, test.validate, events)) {
    out << problem.location << ": "
        << (problem.severity == xml::Severity::ERROR ? "error: " : "warning: ") << problem.message
        << " [" << problem.rule << "]";
    for (const Location& include : problem.includes) out << " <- " << include;
    out << "\n";
  }
}

class ObserveData : public testing::TestWithParam<fs::path> {
 protected:
  static void SetUpTestSuite() { ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr); }
};

TEST_P(ObserveData, GivesWhatIsExpected) {
  const Case test = readCase(GetParam());
  setSearchPath(test.path);
  std::ostringstream out;
  load(test, out);
  check(test, out);
  EXPECT_EQ(replaceAll(out.str(), GetParam(), "{CASE}"), contentOf(GetParam() / "expected"));
  EXPECT_EQ(getSearchPath(), test.path);
  EXPECT_FALSE(isXmlLibraryInitialised());
}

INSTANTIATE_TEST_SUITE_P(Folders, ObserveData, testing::ValuesIn(foldersIn(ZU_OBSERVE_DATA_DIR)),
                         nameOf);

// A check finds an error exactly where a load fails; that holds for the cases of the loader, too.
TEST(CheckTest, AgreesWithTheLoad) {
  for (const fs::path& folder : foldersIn(ZU_TEST_DATA_DIR)) {
    const Case test = readCase(folder);
    setSearchPath(test.path);
    std::string failure;
    try {
      xml::create(test.file, test.schemes, test.validate);
    } catch (const Exception& e) {
      failure = std::to_string(e.getCode()) + " " + e.getMessage();
    }
    std::string errors;
    for (const xml::Problem& problem : xml::check(test.file, test.schemes, test.validate)) {
      if (problem.severity == xml::Severity::ERROR) errors += problem.message + "\n";
    }
    EXPECT_EQ(failure.empty(), errors.empty()) << folder << "\n" << failure << "\n" << errors;
  }
}

}  // namespace
