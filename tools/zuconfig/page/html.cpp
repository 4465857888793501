#include "page/html.hpp"

#include "page/embedded.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

// A hash as a policy has it: in base 64.
std::string hashOf(const embedded::File& file) {
  const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string hash = "'sha256-";
  unsigned bits = 0;
  int count = 0;
  for (const char* digit = file.sha256; *digit != '\0'; ++digit) {
    bits = bits << 4 | static_cast<unsigned>(isDigit(*digit) ? *digit - '0' : *digit - 'a' + 10);
    for (count += 4; count >= 6; count -= 6) hash += digits[bits >> (count - 6) & 63];
  }
  return hash + digits[bits << (6 - count) & 63] + "='";  // 256 bits end so
}

}  // namespace

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

void startPage(std::ostream& out, const std::string& title) {
  out << "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      << "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
      << hashOf(embedded::pageStyle) << " " << hashOf(embedded::graphStyle) << "; script-src "
      << hashOf(embedded::pageScript) << "; base-uri 'none'; form-action 'none'\">\n"
      << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      << "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" << inHtml(title)
      << "</title>\n<style>" << embedded::graphStyle.text << "</style>\n<style>"
      << embedded::pageStyle.text << "</style>\n</head>\n<body>\n";
}

void endPage(std::ostream& out) {
  out << "<footer><p>Made by zuconfig " ZUCONFIG_VERSION "</p></footer>\n<script>"
      << embedded::pageScript.text << "</script>\n</body>\n</html>\n";
}

}  // namespace zuconfig
