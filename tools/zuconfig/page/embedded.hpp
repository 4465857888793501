// The style and the script of pages, which CMake puts in from the files beside this one.
#ifndef TOOLS_ZUCONFIG_PAGE_EMBEDDED_HPP
#define TOOLS_ZUCONFIG_PAGE_EMBEDDED_HPP

namespace zuconfig::embedded {

struct File {
  const char* text;
  const char* sha256;  // of text, in hexadecimal
};

extern const File graphStyle;
extern const File pageStyle;
extern const File pageScript;

}  // namespace zuconfig::embedded

#endif
