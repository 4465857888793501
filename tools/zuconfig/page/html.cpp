#include "page/html.hpp"

#include "shared/text.hpp"

namespace zuconfig {

std::string inHtml(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string linkTo(const std::string& id) {
  const std::string asTheyAre = "-._~[]";
  std::string link = "#";
  for (const char c : id) {
    const bool isPlain = isAlphanumeric(c) || asTheyAre.find(c) != asTheyAre.npos;
    link += isPlain ? std::string(1, c) : "%" + inHexadecimal(c);
  }
  return link;
}

}  // namespace zuconfig
