// The include graph as a picture: an SVG document, or a part of a page.
#ifndef TOOLS_ZUCONFIG_PAGE_PICTURE_HPP
#define TOOLS_ZUCONFIG_PAGE_PICTURE_HPP

#include <ostream>
#include <string>
#include <vector>

#include "shared/IncludeGraph.hpp"

namespace zuconfig {

// A document of its own. files: not empty.
void writePicture(std::ostream& out, const std::vector<ListedFile>& files);

// For a page whose element for a file has the id prefix with the number of the file.
void writePicture(std::ostream& out, const std::vector<ListedFile>& files,
                  const std::string& prefix);

}  // namespace zuconfig

#endif
