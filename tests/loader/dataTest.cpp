// Loader cases as folders of real files, run through the installed face of the library.
//
// Each folder below tests/data holds a file `case` and a file `expected`, which is the whole
// configuration, as printed() writes it, or the whole failure, as report() does. {CASE} stands for
// the folder, {POINTER} for an address.

#include <gtest/gtest.h>

#include <clocale>
#include <sstream>

#include "Case.hpp"
#include "LoaderState.hpp"
#include "cppUtil/err/Exception.hpp"
#include "placeholders.hpp"
#include "printed.hpp"
#include "service/util/config/xml/create.hpp"

namespace {

namespace fs = std::filesystem;

void report(const cppUtil::err::Exception& e, std::ostream& out) {
  out << "code " << e.getCode() << "\nsystem error " << e.getSystemErrorCode() << "\nfile "
      << e.getFile() << "\nfunction " << e.getFunction() << "\n"
      << (e.getLine() > 0 ? "line known" : "no line") << "\nmessage:\n"
      << e.getMessage() << ":end\n";
}

std::string outcomeOf(const Case& test, const fs::path& folder) {
  std::ostringstream out;
  try {
    out << printed(service::util::config::xml::create(test.file, test.schemes, test.validate));
  } catch (const cppUtil::err::Exception& e) {
    report(e, out);
  }
  return withoutPointers(replaceAll(out.str(), folder, "{CASE}"));
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

INSTANTIATE_TEST_SUITE_P(Folders, LoaderData, testing::ValuesIn(foldersIn(ZU_TEST_DATA_DIR)),
                         nameOf);

}  // namespace
