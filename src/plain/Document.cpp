#include "plain/Document.hpp"

#include "plain/characters.hpp"

namespace service::util::config::plain {

Document::Position Document::positionOf(std::size_t element) const {
  if (!positions.empty()) return positions[element];
  positions.reserve(elements.size());
  const std::string_view text = view();
  std::size_t lineBegin = text.size() - withoutByteOrderMark(text).size();
  std::size_t lineEnd = text.find('\n');
  int line = 1;
  for (const Element& next : elements) {
    if (next.tagEnd == 0) {
      positions.emplace_back();
      continue;
    }
    for (; lineEnd < next.tagEnd; lineEnd = text.find('\n', lineBegin)) {
      lineBegin = lineEnd + 1;
      ++line;
    }
    const std::string_view before = text.substr(lineBegin, next.tagEnd - lineBegin);
    positions.push_back(
        {line, 1 + static_cast<int>(isAscii ? before.size() : utf16Length(before))});
  }
  return positions[element];
}

}  // namespace service::util::config::plain
