#include "shared/SourceText.hpp"

#include <fstream>
#include <sstream>

#include "shared/text.hpp"

namespace zuconfig {

// Lines end as in XML: with LF, CR LF or CR.
void SourceText::read(const std::string& file) {
  if (path == file) return;
  std::ostringstream stream;
  stream << std::ifstream(file, std::ios::binary).rdbuf();
  const std::string text = stream.str();
  path = file;
  lines.clear();
  invalid.reset();
  hasUtf16Mark = startsWith(text, "\xFE\xFF") || startsWith(text, "\xFF\xFE");
  if (hasUtf16Mark || text.empty()) return;

  lines.emplace_back();
  for (std::size_t at = 0; at < text.size();) {
    const Character c(text.data() + at, text.size() - at);
    if (c.code == '\r' || c.code == '\n') {
      if (c.code == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
      lines.emplace_back();
    } else if (c.length == 0) {
      addInvalid();
    } else {
      lines.back().append(text, at, c.length);
    }
    at += c.length == 0 ? 1 : c.length;
  }
}

void SourceText::addInvalid() {
  if (!invalid) {
    invalid = Location{path, static_cast<int>(lines.size()),
                       static_cast<int>(utf16Units(lines.back())) + 1};
  }
  lines.back() += replacementCharacter;
}

std::optional<std::string> SourceText::line(const std::string& file, int number) {
  if (number < 1) return std::nullopt;  // also of what is no file to read
  read(file);
  if (static_cast<std::size_t>(number) > lines.size()) return std::nullopt;
  return lines[static_cast<std::size_t>(number) - 1];
}

std::optional<Location> SourceText::firstInvalid(const std::string& file) {
  read(file);
  return invalid;
}

std::optional<Location> SourceText::lastPlaceOf(const std::string& file, const std::string& text) {
  read(file);
  for (std::size_t number = lines.size(); number > 0; --number) {
    const std::string& line = lines[number - 1];
    if (const std::size_t at = line.rfind(text); at != line.npos) {
      return Location{path, static_cast<int>(number),
                      static_cast<int>(utf16Units(line.substr(0, at))) + 1};
    }
  }
  return std::nullopt;
}

bool SourceText::isUtf16(const std::string& file) {
  read(file);
  return hasUtf16Mark;
}

}  // namespace zuconfig
