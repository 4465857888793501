// Text as part of an HTML or SVG document. Whatever comes from files passes through here.
#ifndef TOOLS_ZUCONFIG_PAGE_HTML_HPP
#define TOOLS_ZUCONFIG_PAGE_HTML_HPP

#include <string>

namespace zuconfig {

// text as content or as the value of an attribute in double quotes. It must be safe to show.
std::string inHtml(const std::string& text);

// The value of href for the element of the page whose id is this.
std::string linkTo(const std::string& id);

}  // namespace zuconfig

#endif
