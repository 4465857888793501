// A directory of XML documents that goes with the test, and the XML library initialised meanwhile.
#ifndef TESTS_TOOLKIT_XMLFILES_HPP
#define TESTS_TOOLKIT_XMLFILES_HPP

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <xercesc/util/PlatformUtils.hpp>

#include "placeholders.hpp"
#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"

class XmlFiles : public testing::Test {
 protected:
  XmlFiles() {
    std::string pattern = std::filesystem::temp_directory_path() / "zu-xml-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
    directory = pattern;
    xercesc::XMLPlatformUtils::Initialize();
  }
  ~XmlFiles() override {
    xercesc::XMLPlatformUtils::Terminate();
    std::filesystem::remove_all(directory);
  }

  // Writes the file and returns its full name.
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(directory / name, std::ios::binary) << text;
    return directory / name;
  }

  std::filesystem::path directory;
};

inline xerces::XmlString xmlName(const std::string& name) {
  return {name.begin(), name.end()};
}

// What step returns, or the text of what it throws.
template <class Step>
std::string resultOf(const Step& step) {
  try {
    return step();
  } catch (const xerces::Exception& e) {
    return e.what();
  }
}

// {FILE} in the place of the file, {POINTER} in that of an address.
inline std::string withPlaceholders(const std::string& message, const std::string& file) {
  return withoutPointers(replaceAll(message, file, "{FILE}"));
}

#endif
