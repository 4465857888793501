#include "bind/Path.hpp"

#include <charconv>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/errorModule.hpp"
#include "service/util/config/visit.hpp"

namespace service::util::config::bind::internal {

namespace {

class PathReader {
 public:
  explicit PathReader(const std::string& text) : text(text) {}

  Path read() {
    Path path;
    for (;;) {
      path.push_back(readPart());
      if (at == text.size()) return path;
      if (!take('.')) fail("expected \".\" or \"[\" or the end");
    }
  }

 private:
  PathPart readPart() {
    PathPart part;
    if (take('"')) {
      while (!take('"')) part.name += readCharacter();
    } else {
      while (at < text.size() && isSelectable({text[at]})) part.name += text[at++];
    }
    if (part.name.empty()) fail("expected a name; one of other characters needs quotes");
    if (take('[')) {
      part.index = readIndex();
      if (!take(']')) fail("expected \"]\"");
    }
    return part;
  }

  std::string readCharacter() {
    if (at == text.size()) fail("a quote is not closed");
    if (!take('\\')) return {text[at++]};
    static const std::string marks = "\"\\/bfnrt";
    static const std::string meanings = "\"\\/\b\f\n\r\t";
    const std::size_t mark = at < text.size() ? marks.find(text[at]) : marks.npos;
    if (mark != marks.npos) {
      ++at;
      return {meanings[mark]};
    }
    if (!take('u')) fail("no escape of JSON");
    std::uint32_t code = readUnit();
    if (code >= 0xD800 && code < 0xDC00) {
      if (!take('\\') || !take('u')) fail("half a character");
      const std::uint32_t low = readUnit();
      if (low < 0xDC00 || low > 0xDFFF) fail("half a character");
      code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
    }
    return inUtf8(code);
  }

  std::uint32_t readUnit() {
    std::uint32_t unit = 0;
    const char* start = text.data() + at;
    const char* end = start + std::min<std::size_t>(4, text.size() - at);
    if (std::from_chars(start, end, unit, 16).ptr != start + 4) {
      fail("expected four hexadecimal digits");
    }
    at += 4;
    return unit;
  }

  static std::string inUtf8(std::uint32_t code) {
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800) return {static_cast<char>(0xC0 | (code >> 6)), tail(0)};
    if (code < 0x10000) return {static_cast<char>(0xE0 | (code >> 12)), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | (code >> 18)), tail(12), tail(6), tail(0)};
  }

  std::uint32_t readIndex() {
    std::uint32_t index = 0;
    const char* start = text.data() + at;
    const auto [end, error] = std::from_chars(start, text.data() + text.size(), index);
    if (error == std::errc::invalid_argument) fail("expected an index");
    if (error != std::errc()) fail("no index is that large");
    at += static_cast<std::size_t>(end - start);
    return index;
  }

  bool take(char c) {
    if (at == text.size() || text[at] != c) return false;
    ++at;
    return true;
  }

  [[noreturn]] void fail(const char* reason) const {
    throw cppUtil::err::Exception(INVALID_SELECT, 0, "src/bind",
                                  "Path service::util::config::bind::internal::parsePath(const "
                                  "std::string&)",
                                  __LINE__, "")
        << "path " << cppUtil::internal::quoted(text) << ", character " << at + 1 << ": " << reason;
  }

  const std::string& text;
  std::size_t at = 0;
};

}  // namespace

Path parsePath(const std::string& text) {
  return PathReader(text).read();
}

std::string extended(const std::string& path, const std::string& name) {
  return (path.empty() ? "" : path + ".") + spellName(name);
}

std::string extended(const std::string& path, const std::string& name, std::uint32_t index,
                     std::uint32_t count) {
  return extended(path, name) + (count > 1 ? "[" + std::to_string(index) + "]" : "");
}

}  // namespace service::util::config::bind::internal
