// Selector strings: one pass of a state machine over the bytes of the text.
//
//   selector = section *( "." section ) "." [ part ]      section = part
//   part     = name [ "[" digits "]" ]                    name    = 1*( ALPHA / DIGIT )

#include "service/util/config/Select.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/errorModule.hpp"

namespace service::util::config {

namespace {

using cppUtil::err::Exception;
using cppUtil::internal::isAlphanumeric;
using cppUtil::internal::isDigit;

// Each cause has a line number of its own, by which callers tell them apart. The numbers are fixed;
// they do not follow the source.
enum Cause : int {
  NULL_TEXT = 18,
  BAD_NAME_START = 71,
  BAD_NAME_CHARACTER = 99,
  BAD_INDEX_START = 114,
  BAD_INDEX_CHARACTER = 133,
  BAD_AFTER_INDEX = 150,
  UNCLOSED_INDEX = 159,
  NO_SECTION = 163,
};

[[noreturn]] void fail(Cause cause) {
  throw Exception(INVALID_SELECT, 0, "src/select",
                  "void service::util::config::Select::parse(const string&)", cause, "");
}

std::string checkedText(const char* text) {
  if (text != nullptr) return text;
  throw Exception(CU_MISSING_ARGUMENT, 0, "src/select",
                  "service::util::config::Select::Select(const char*)", NULL_TEXT, "");
}

constexpr std::uint32_t appendDigit(std::uint32_t index, char digit) {
  return index * 10 + static_cast<std::uint32_t>(digit - '0');  // wraps
}

}  // namespace

Select::Select(const char* text) : Select(checkedText(text)) {}

Select::Select(const std::string& text) {
  parse(text);
}

std::pair<std::string, std::uint32_t> Select::getProperty() const {
  return {propertyName, propertyIndex};
}

std::vector<std::pair<std::string, std::uint32_t>> Select::getSection() const {
  return sectionPath;
}

void Select::parse(const std::string& text) {
  enum class State { NameStart, InName, IndexStart, InIndex, AfterIndex };
  State state = State::NameStart;
  propertyIndex = 0;

  for (const char c : text) {
    switch (state) {
      case State::NameStart:
        if (!isAlphanumeric(c)) fail(BAD_NAME_START);
        propertyName += c;
        state = State::InName;
        break;
      case State::InName:
        if (isAlphanumeric(c)) {
          propertyName += c;
        } else if (c == '.') {
          pushPart();
          state = State::NameStart;
        } else if (c == '[') {
          propertyIndex = 0;
          state = State::IndexStart;
        } else {
          fail(BAD_NAME_CHARACTER);
        }
        break;
      case State::IndexStart:
        if (!isDigit(c)) fail(BAD_INDEX_START);
        propertyIndex = appendDigit(propertyIndex, c);
        state = State::InIndex;
        break;
      case State::InIndex:
        if (isDigit(c)) {
          propertyIndex = appendDigit(propertyIndex, c);
        } else if (c == ']') {
          state = State::AfterIndex;
        } else {
          fail(BAD_INDEX_CHARACTER);
        }
        break;
      case State::AfterIndex:
        if (c != '.') fail(BAD_AFTER_INDEX);
        pushPart();
        state = State::NameStart;
        break;
    }
  }

  if (state == State::IndexStart || state == State::InIndex) fail(UNCLOSED_INDEX);
  if (sectionPath.empty()) fail(NO_SECTION);
}

void Select::pushPart() {
  sectionPath.emplace_back(std::move(propertyName), propertyIndex);
  propertyName.clear();
  propertyIndex = 0;
}

}  // namespace service::util::config
