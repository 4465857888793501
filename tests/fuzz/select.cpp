// Selector strings against the grammar, written down a second time:
//
//   selector = section *( "." section ) "." [ part ]      section = part
//   part     = name [ "[" digits "]" ]                    name    = 1*( ALPHA / DIGIT )

#include "service/util/config/Select.hpp"

#include <algorithm>
#include <string_view>

#include "cppUtil/err/Exception.hpp"
#include "harness.hpp"

namespace {

using service::util::config::Select;
using Part = std::pair<std::string, std::uint32_t>;

constexpr std::string_view digits = "0123456789";
constexpr std::string_view nameCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// The parts of a selector, or the line that its failure is reported with.
struct Expected {
  int line = 0;
  std::vector<Part> parts;  // the last one is the property
};

// Takes the longest start of text that consists of the characters.
std::string_view take(std::string_view& text, std::string_view characters) {
  const auto length = std::min(text.find_first_not_of(characters), text.size());
  const std::string_view taken = text.substr(0, length);
  text.remove_prefix(length);
  return taken;
}

std::uint32_t moduloOf(std::string_view number) {
  std::uint64_t value = 0;
  for (const char digit : number) {
    value = (value * 10 + static_cast<std::uint64_t>(digit - '0')) % (std::uint64_t{1} << 32);
  }
  return static_cast<std::uint32_t>(value);
}

Expected expectedOf(std::string_view text) {
  Expected expected;
  while (!text.empty()) {
    const std::string name(take(text, nameCharacters));
    if (name.empty()) return {71, {}};
    std::uint32_t index = 0;
    if (!text.empty() && text[0] == '[') {
      text.remove_prefix(1);
      const std::string_view number = take(text, digits);
      if (text.empty()) return {159, {}};
      if (number.empty()) return {114, {}};
      if (text[0] != ']') return {133, {}};
      text.remove_prefix(1);
      if (!text.empty() && text[0] != '.') return {150, {}};
      index = moduloOf(number);
    }
    expected.parts.emplace_back(name, index);
    if (text.empty()) return expected.parts.size() == 1 ? Expected{163, {}} : expected;
    if (text[0] != '.') return {99, {}};
    text.remove_prefix(1);
  }
  if (expected.parts.empty()) return {163, {}};
  expected.parts.emplace_back("", 0);  // after the last dot
  return expected;
}

template <class Text>
void check(const Text& text, const Expected& expected) {
  try {
    const Select select(text);
    fuzz::require(expected.line == 0, "accepted");
    std::vector<Part> parts = select.getSection();
    parts.push_back(select.getProperty());
    fuzz::require(parts == expected.parts, "parsed into other parts");
  } catch (const cppUtil::err::Exception& e) {
    fuzz::require(e.getCode() == 0x3000000 && e.getLine() == expected.line,
                  "refused at line " + std::to_string(e.getLine()) + ", expected " +
                      std::to_string(expected.line));
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  check(text, expectedOf(text));
  check(text.c_str(), expectedOf(text.c_str()));
  return 0;
}
