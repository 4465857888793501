// Lines of files, for showing what a message is about.
#ifndef TOOLS_ZUCONFIG_SHARED_SOURCETEXT_HPP
#define TOOLS_ZUCONFIG_SHARED_SOURCETEXT_HPP

#include <optional>
#include <string>
#include <vector>

#include "service/util/config/xml/Location.hpp"

namespace zuconfig {

using service::util::config::xml::Location;

class SourceText {
 public:
  // The line, counted from 1, without its line break; what is no UTF-8 in it is replaced. Nothing
  // for lines that there are not and for files that are not read.
  std::optional<std::string> line(const std::string& file, int number);

  // The first byte that is no UTF-8.
  std::optional<Location> firstInvalid(const std::string& file);

  // Where text stands for the last time.
  std::optional<Location> lastPlaceOf(const std::string& file, const std::string& text);

  // Whether the file begins with the mark of UTF-16; it has no lines then.
  bool isUtf16(const std::string& file);

 private:
  // Reads the file unless it is the one that was read last.
  void read(const std::string& file);
  void addInvalid();

  std::string path;
  std::vector<std::string> lines;
  std::optional<Location> invalid;
  bool hasUtf16Mark = false;
};

}  // namespace zuconfig

#endif
