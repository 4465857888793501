// Lines of files, for showing what a message is about.
#ifndef TOOLS_ZUCONFIG_SOURCETEXT_HPP
#define TOOLS_ZUCONFIG_SOURCETEXT_HPP

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zuconfig {

class SourceText {
 public:
  // The lines of the file; none when it cannot be read or is no UTF-8. It is kept until another
  // file is asked for.
  const std::vector<std::string>& lines(const std::string& file);

  // The line, counted from 1, without its line break.
  std::optional<std::string> line(const std::string& file, int number);

 private:
  std::string path;
  std::vector<std::string> text;
};

}  // namespace zuconfig

#endif
