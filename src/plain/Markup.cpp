#include "plain/Markup.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "plain/characters.hpp"

namespace service::util::config::plain {

namespace {

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  const auto equals = [](char a, char b) {
    return a == b || (a >= 'A' && a <= 'Z' && a + 32 == b);
  };
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(), equals);
}

std::uint32_t digitOf(char byte) {
  if (byte >= '0' && byte <= '9') return static_cast<std::uint32_t>(byte - '0');
  if (byte >= 'a' && byte <= 'f') return static_cast<std::uint32_t>(byte - 'a' + 10);
  if (byte >= 'A' && byte <= 'F') return static_cast<std::uint32_t>(byte - 'A' + 10);
  return std::numeric_limits<std::uint32_t>::max();
}

}  // namespace

Markup::Markup(Document& document)
    : Cursor(document.view(), withoutByteOrderMark(document.view()).data()), document(document) {}

void Markup::readDeclaration() {
  if (!skip("<?xml ")) return;
  if (readPseudoAttribute("version") != "1.0") giveUp();
  if (const auto encoding = readPseudoAttribute("encoding")) {
    const bool isForAscii =
        equalsIgnoringCase(*encoding, "us-ascii") || equalsIgnoringCase(*encoding, "iso-8859-1");
    if (!equalsIgnoringCase(*encoding, "utf-8") && !(isForAscii && document.isAscii)) giveUp();
  }
  if (const auto standalone = readPseudoAttribute("standalone")) {
    if (*standalone != "yes" && *standalone != "no") giveUp();
  }
  skipBlanks();
  expect("?>");
}

void Markup::skipBlanks() {
  while (*at == ' ') ++at;
}

// The value of the attribute, if it comes next.
std::optional<std::string_view> Markup::readPseudoAttribute(std::string_view name) {
  skipBlanks();
  if (at[-1] != ' ' || !skip(name)) return std::nullopt;
  expect('=');
  const char* quote = at;
  if (!skip('"') && !skip('\'')) giveUp();
  return readUpTo({quote, 1});
}

void Markup::readMiscellaneous() {
  while (true) {
    skipSpaces();
    if (skip("<!--")) {
      readComment();
    } else if (skip("<?")) {
      readInstruction();
    } else {
      return;
    }
  }
}

void Markup::readComment() {
  readUpTo("--");
  expect('>');
}

void Markup::readInstruction() {
  if (equalsIgnoringCase(readName(), "xml")) giveUp();
  if (skip("?>")) return;
  if (!skipSpaces()) giveUp();
  readUpTo("?>");
}

void Markup::readCdata(Text& text) {
  std::string_view rest = readUpTo("]]>");
  for (std::size_t i; (i = rest.find('\r')) != rest.npos; rest.remove_prefix(i + 1)) {
    addBytes(rest.substr(0, i), text);
  }
  addBytes(rest, text);
}

void Markup::addResolved(std::string_view characters, Text& text) {
  const auto firstResolved = static_cast<std::uint32_t>(end - begin);
  if (text.begin < firstResolved) {
    const std::string_view before = document.view(text);
    text.begin = firstResolved + static_cast<std::uint32_t>(document.resolved.size());
    document.resolved += before;
  }
  document.resolved += characters;
  text.size += static_cast<std::uint32_t>(characters.size());
}

void Markup::readReference(Text& text) {
  expect('&');
  if (skip('#')) return readCharacterReference(text);
  constexpr std::pair<std::string_view, std::string_view> entities[] = {
      {"amp;", "&"}, {"lt;", "<"}, {"gt;", ">"}, {"quot;", "\""}, {"apos;", "'"}};
  for (const auto& [name, character] : entities) {
    if (skip(name)) return addResolved(character, text);
  }
  giveUp();
}

void Markup::readCharacterReference(Text& text) {
  const std::uint32_t base = skip('x') ? 16 : 10;
  std::uint32_t character = 0;
  do {
    const std::uint32_t digit = digitOf(*at++);
    if (digit >= base) giveUp();
    character = character * base + digit;
    if (character > 0x10FFFF) giveUp();
  } while (!skip(';'));
  if (!isXmlCharacter(character)) giveUp();
  if (character >= 0x80) document.isAscii = false;
  std::string characters;
  appendUtf8(character, characters);
  addResolved(characters, text);
}

}  // namespace service::util::config::plain
