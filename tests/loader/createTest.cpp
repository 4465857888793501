// What callers of the shared library see besides the configuration.

#include <fstream>
#include <iterator>

#include "LoaderState.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/xml/internal/XmlConfigParser.hpp"
#include "xerces/Exception.hpp"

namespace {

// The class behind create does not translate; its exception keeps its type on the way out of the
// shared library.
TEST(CreateTest, TheClassBehindItDoesNotTranslateFailedParses) {
  setSearchPath({ZU_TEST_DATA_DIR "/malformed"});
  try {
    service::util::config::xml::internal::XmlConfigParser parser("main.xml", {}, false);
    FAIL();
  } catch (const xerces::Exception& e) {
    EXPECT_STREQ(e.what(),
                 "XML Parser reported the following errors:\n\tFATAL  in \"" ZU_TEST_DATA_DIR
                 "/malformed/main.xml\"(line=5, column=3): expected end of tag 'section'\n");
  }
  EXPECT_FALSE(isXmlLibraryInitialised());
}

TEST(GrammarTest, IsTheFileByteForByte) {
  std::ifstream file(ZU_GRAMMAR_FILE, std::ios::binary);
  const std::vector<char> expected{std::istreambuf_iterator<char>(file), {}};
  ASSERT_FALSE(expected.empty());
  service::util::config::grammar::getGrammar().front() = '?';
  EXPECT_EQ(service::util::config::grammar::getGrammar(), expected);
}

}  // namespace
