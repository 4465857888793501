#include "SourceText.hpp"

#include <fstream>
#include <sstream>

#include "text.hpp"

namespace zuconfig {

namespace {

bool isUtf8(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const Character c(text.data() + at, text.size() - at);
    if (c.length == 0 || c.code == 0) return false;
    at += c.length;
  }
  return true;
}

// With the line ends of XML: LF, CR LF or CR.
std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> lines(1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n' && at > 0 && text[at - 1] == '\r') continue;
    if (text[at] == '\n' || text[at] == '\r') {
      lines.emplace_back();
    } else {
      lines.back() += text[at];
    }
  }
  return lines;
}

}  // namespace

const std::vector<std::string>& SourceText::lines(const std::string& file) {
  if (path == file) return text;
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  path = file;
  text.clear();
  if (isUtf8(content.str())) text = split(content.str());
  return text;
}

std::optional<std::string> SourceText::line(const std::string& file, int number) {
  const std::vector<std::string>& all = lines(file);
  if (number < 1 || static_cast<std::size_t>(number) > all.size()) return std::nullopt;
  return all[static_cast<std::size_t>(number) - 1];
}

}  // namespace zuconfig
