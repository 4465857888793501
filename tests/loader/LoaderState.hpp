// The process-wide state that a load changes while it runs, for tests that check it is put back.
#ifndef TESTS_LOADER_LOADERSTATE_HPP
#define TESTS_LOADER_LOADERSTATE_HPP

#include <cutil/cutil.h>
#include <gtest/gtest.h>
#include <locator/locator.h>

#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

inline void setSearchPath(const std::vector<std::string>& directories) {
  ASSERT_EQ(cu_SearchPath_clear(getConfigLocator()), 0u);
  for (const std::string& directory : directories) {
    ASSERT_EQ(cu_SearchPath_append(getConfigLocator(), directory.c_str()), 0u);
  }
}

inline std::vector<std::string> getSearchPath() {
  std::vector<std::string> directories;
  std::size_t count = 0;
  EXPECT_EQ(cu_SearchPath_count(getConfigLocator(), &count), 0u);
  cu_String* text = nullptr;
  EXPECT_EQ(cu_String_new(&text, 0), 0u);
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_EQ(cu_SearchPath_get(getConfigLocator(), i, text), 0u);
    directories.emplace_back(cu_String_get(text));
  }
  EXPECT_EQ(cu_String_delete(&text), 0u);
  return directories;
}

// The XML library forgets its memory manager with the last Terminate.
inline bool isXmlLibraryInitialised() {
  return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

#endif
