#include "report/SourceText.hpp"

#include <sys/stat.h>

#include <algorithm>

#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::report {

namespace {

using cppUtil::internal::Character;
using cppUtil::internal::printable;

// How many characters of a long line are shown, and how many of those before the place.
constexpr std::size_t widest = 160;
constexpr std::size_t before = 60;
constexpr std::size_t mostBytes = widest * 4;

// How far the start of a tag is looked for, at first and at most.
constexpr std::size_t usualTag = 1024;
constexpr std::size_t longestTag = 64UL * 1024;

constexpr std::size_t mostFiles = 200;

std::optional<Location> locationOf(const std::string& file, const std::optional<Position>& at) {
  if (!at) return std::nullopt;
  return Location{file, static_cast<int>(at->line), static_cast<int>(at->column)};
}

}  // namespace

std::string Excerpt::text() const {
  std::string text;
  for (const Shown& character : characters) text += character.text;
  return text;
}

void SourceText::expect(const std::string& file) {
  struct stat status = {};  // of no file there is, unless there is one
  ::stat(file.c_str(), &status);
  expected.try_emplace(file, status);
}

SourceFile& SourceText::open(const std::string& file) {
  if (files.size() >= mostFiles && files.count(file) == 0) files.clear();
  const auto state = expected.find(file);
  return files
      .try_emplace(file, file,
                   state == expected.end() ? std::nullopt : std::optional(state->second))
      .first->second;
}

Range SourceText::rangeOf(const Location& location) {
  Range range = {location.file, location.line, location.column, location.line, location.column};
  if (location.line < 1) return range;
  SourceFile& source = open(location.file);
  const auto end = source.find(location.line, location.column);
  if (!end || end->column != location.column) return range;
  for (std::size_t size = usualTag; size <= longestTag; size *= 8) {
    const off_t offset = std::max<off_t>(0, end->offset - static_cast<off_t>(size));
    const std::string text = source.read(offset, static_cast<std::size_t>(end->offset - offset));
    if (text.empty() || text.back() != '>') return range;
    // No "<" stands inside a tag, not even in its attributes.
    if (const std::size_t start = text.rfind('<'); start != text.npos) {
      const Position begin = source.positionOf(offset + static_cast<off_t>(start));
      range.line = static_cast<int>(begin.line);
      range.column = static_cast<int>(begin.column);
      return range;
    }
  }
  return range;
}

Excerpt SourceText::excerpt(const Location& location) {
  Excerpt excerpt;
  if (location.line < 1 || (isQuotable && !isQuotable(location))) return excerpt;
  SourceFile& source = open(location.file);
  const auto place = source.find(location.line, location.column);
  if (!place) return excerpt;
  const off_t first = std::max(place->lineStart, place->offset - static_cast<off_t>(mostBytes));
  Position at = source.positionOf(first);
  const std::string text = source.read(at.offset, 2 * mostBytes);
  std::size_t placed = 0;  // characters before the place
  for (std::size_t i = 0; i < text.size() && excerpt.characters.size() < placed + widest;) {
    const Character character(text.data() + i, text.size() - i);
    if (character.code == '\n' || character.code == '\r') break;
    if (at.column < place->column) ++placed;
    const std::string bytes = text.substr(i, character.step());
    excerpt.characters.push_back({bytes == "\t" ? bytes : printable(bytes), at.column});
    at.column += character.units();
    i += character.step();
  }
  if (excerpt.characters.size() <= widest) return excerpt;
  const auto begin = excerpt.characters.begin();
  excerpt.characters.erase(begin,
                           begin + static_cast<std::ptrdiff_t>(placed - std::min(placed, before)));
  if (excerpt.characters.size() > widest) excerpt.characters.resize(widest);
  return excerpt;
}

std::optional<Location> SourceText::firstInvalid(const std::string& file) {
  return locationOf(file, open(file).findInvalid());
}

std::optional<Location> SourceText::lastPlaceOf(const std::string& file, const std::string& text) {
  return locationOf(file, open(file).findLast(text));
}

}  // namespace service::util::config::report
