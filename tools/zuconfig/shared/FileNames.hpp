// How files are called in what the command prints: relative when they are below the current
// directory.
#ifndef TOOLS_ZUCONFIG_SHARED_FILENAMES_HPP
#define TOOLS_ZUCONFIG_SHARED_FILENAMES_HPP

#include <string>

#include "service/util/config/xml/Origins.hpp"

namespace zuconfig {

using service::util::config::xml::Location;
using service::util::config::xml::Origins;

class FileNames {
 public:
  // For the current directory as it is now.
  FileNames();

  // path is where standard input was put.
  void setStandardInput(const std::string& path) { standardInput = path; }

  // Ends in a slash; empty when it has no name.
  const std::string& getCurrentDirectory() const { return currentDirectory; }

  // A file for other programs: relative when it is below the current directory.
  std::string nameOf(const std::string& path) const;
  // A file for the eye.
  std::string shown(const std::string& path) const;
  // "file:line:column", or what of it is known.
  std::string shown(const Location& location) const;
  std::string shown(const Origins::Origin& origin) const;
  // A text of the library's, with standard input called by its name, and without the directory in
  // lists of directories that its copy is in.
  std::string shownText(const std::string& text) const;
  // text with the files in it relative when they are below the current directory.
  std::string shortened(const std::string& text) const;

 private:
  std::string currentDirectory;
  std::string standardInput;  // empty when it was not read
};

// path without "." and ".." in it, unless links make that another file.
std::string normalised(const std::string& path);

// For the eye: a file as the user wrote it.
std::string shownArgument(const std::string& file);

}  // namespace zuconfig

#endif
