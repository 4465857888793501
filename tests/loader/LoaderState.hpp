// The process-wide state that a load changes while it runs, for tests that check it is put back.
#ifndef TESTS_LOADER_LOADERSTATE_HPP
#define TESTS_LOADER_LOADERSTATE_HPP

#include <cutil/cutil.h>
#include <gtest/gtest.h>
#include <locator/locator.h>

#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "service/util/locator/ConfigLocator.hpp"

inline void setSearchPath(const std::vector<std::string>& directories) {
  ASSERT_EQ(cu_SearchPath_clear(getConfigLocator()), 0u);
  for (const std::string& directory : directories) {
    ASSERT_EQ(cu_SearchPath_append(getConfigLocator(), directory.c_str()), 0u);
  }
}

inline std::vector<std::string> getSearchPath() {
  return service::util::locator::ConfigLocator::getEntries();
}

// The XML library forgets its memory manager with the last Terminate.
inline bool isXmlLibraryInitialised() {
  return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

#endif
