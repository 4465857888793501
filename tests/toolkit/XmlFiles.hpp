// A directory of XML documents that goes with the test, and the XML library initialised meanwhile.
#ifndef TESTS_TOOLKIT_XMLFILES_HPP
#define TESTS_TOOLKIT_XMLFILES_HPP

#include <gtest/gtest.h>

#include <string>
#include <xercesc/util/PlatformUtils.hpp>

#include "TemporaryFolder.hpp"
#include "placeholders.hpp"
#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"

class XmlFiles : public testing::Test {
 protected:
  XmlFiles() { xercesc::XMLPlatformUtils::Initialize(); }
  ~XmlFiles() override { xercesc::XMLPlatformUtils::Terminate(); }

  // Writes the file and returns its full name.
  std::string write(const std::string& name, const std::string& text) const {
    folder.write(name, text);
    return directory / name;
  }

  const TemporaryFolder folder;
  const std::filesystem::path& directory = folder.path;
};

// What step returns, or the text of what it throws: {FILE} in the place of the file, {POINTER} in
// that of an address.
template <class Step>
std::string resultOf(const std::string& file, const Step& step) {
  std::string text;
  try {
    text = step();
  } catch (const xerces::Exception& e) {
    text = e.what();
  }
  return withoutPointers(replaceAll(text, file, "{FILE}"));
}

#endif
