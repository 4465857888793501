// Text as part of an HTML or SVG document. Whatever comes from files passes through here.
#ifndef TOOLS_ZUCONFIG_PAGE_HTML_HPP
#define TOOLS_ZUCONFIG_PAGE_HTML_HPP

#include <ostream>
#include <string>

namespace zuconfig {

// text as content or as the value of an attribute in double quotes. It must be safe to show.
std::string inHtml(const std::string& text);

// The value of href for the element of the page whose id is this.
std::string linkTo(const std::string& id);

// The frame of a page: what stands before its header, and behind its main part. Its policy lets
// nothing in but the style and the script that are written here.
void startPage(std::ostream& out, const std::string& title);
void endPage(std::ostream& out);

}  // namespace zuconfig

#endif
