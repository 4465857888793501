// A load that is told by its code, for tests of what it leaves behind.
#ifndef TESTS_LOADER_LOAD_HPP
#define TESTS_LOADER_LOAD_HPP

#include "LoaderState.hpp"
#include "cppUtil/err/Exception.hpp"
#include "service/util/config/xml/create.hpp"

// Loads main.xml of a folder of the test data and checks that the search path is put back; answers
// with the code of the failure, 0 when there is none.
inline std::uint32_t load(const std::string& folder, bool validate) {
  const std::vector<std::string> path = {std::string(ZU_TEST_DATA_DIR "/") + folder};
  setSearchPath(path);
  std::uint32_t code = 0;
  try {
    EXPECT_NE(service::util::config::xml::create("main.xml", {}, validate), nullptr);
  } catch (const cppUtil::err::Exception& e) {
    code = e.getCode();
  }
  EXPECT_EQ(getSearchPath(), path);
  return code;
}

#endif
