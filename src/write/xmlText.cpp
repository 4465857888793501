#include "write/xmlText.hpp"

#include <stdexcept>

#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::write {

namespace {

using cppUtil::internal::Character;

bool needsReference(char32_t c, XmlPlace place) {
  if (c == '\n' || c == '\t') return place == XmlPlace::ATTRIBUTE;
  return !cppUtil::internal::isSafe(c);
}

std::string characterInXml(const Character& c, const char* bytes, XmlPlace place) {
  if (c.code == '&') return "&amp;";
  if (c.code == '<') return "&lt;";
  if (c.code == '>') return "&gt;";
  if (c.code == '"' && place == XmlPlace::ATTRIBUTE) return "&quot;";
  if (needsReference(c.code, place)) {
    return "&#" + std::to_string(static_cast<std::uint32_t>(c.code)) + ";";
  }
  return {bytes, c.length};
}

}  // namespace

std::string inXml(const std::string& text, XmlPlace place) {
  std::string escaped;
  for (std::size_t at = 0; at < text.size();) {
    const Character c(text.data() + at, text.size() - at);
    if (c.length == 0 || c.code == 0 || c.code == 0xFFFE || c.code == 0xFFFF) {
      throw std::runtime_error("XML cannot hold the text " + cppUtil::internal::quoted(text));
    }
    escaped += characterInXml(c, text.data() + at, place);
    at += c.length;
  }
  return escaped;
}

}  // namespace service::util::config::write
