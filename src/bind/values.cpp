#include "bind/values.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using cppUtil::internal::quoted;

constexpr std::array<std::string_view, 6> truths = {"true", "false", "yes", "no", "on", "off"};

template <class List, class NameOf>
std::string listOf(const List& list, const NameOf& nameOf) {
  std::string text;
  for (const auto& entry : list) {
    if (!text.empty()) text += ", ";
    text += nameOf(entry);
  }
  return text;
}

std::string expectedNames(const ValueRules& rules) {
  return "one of " + listOf(rules.names, [](const auto& name) { return name.first; });
}

std::string expectedMeasure(const ValueRules& rules) {
  std::string text = rules.kind == Kind::DURATION ? "a time" : "a size";
  text += " with its unit: " + listOf(unitsOf(rules), [](const Unit& unit) { return unit.name; });
  if (const auto& bare = rules.bareUnit) {
    text += ", or in " + *printUnit(rules, *bare) + " without one";
  }
  return text;
}

std::string expectation(const ValueRules& rules) {
  if (rules.hasUnit()) return expectedMeasure(rules);
  switch (rules.kind) {
    case Kind::BOOLEAN:
      return "one of " + listOf(truths, [](std::string_view name) { return name; });
    case Kind::ENUMERATION:
      return expectedNames(rules);
    case Kind::FLOATING:
      return "a number";
    case Kind::INTEGER:
      return "a whole number";
    default:
      return "accepted";
  }
}

enum class Outcome { FINE, WRONG, TOO_LARGE, FRACTION };

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

template <class Parsed>
Outcome readDigits(std::string_view digits, Parsed& parsed) {
  const char* end = digits.data() + digits.size();
  const auto [stopped, error] = std::from_chars(digits.data(), end, parsed);
  if (stopped != end || error == std::errc::invalid_argument) return Outcome::WRONG;
  return error == std::errc() ? Outcome::FINE : Outcome::TOO_LARGE;
}

template <class Floating>
Outcome readFloating(std::string_view digits, Number& number) {
  const auto isWord = [](char c) { return isLetter(c) && c != 'e' && c != 'E'; };
  if (std::any_of(digits.begin(), digits.end(), isWord)) return Outcome::WRONG;  // inf, nan
  Floating parsed = 0;
  const Outcome outcome = readDigits(digits, parsed);
  number = Number::floatingOf(parsed);
  return outcome;
}

Outcome readNumber(const ValueRules& rules, std::string_view digits, Number& number) {
  if (rules.isFloating) {
    if (rules.bytes == sizeof(float)) return readFloating<float>(digits, number);
    if (rules.bytes == sizeof(double)) return readFloating<double>(digits, number);
    return readFloating<long double>(digits, number);
  }
  const bool isNegative = !digits.empty() && digits.front() == '-';
  std::uint64_t magnitude = 0;
  const Outcome outcome = readDigits(digits.substr(isNegative ? 1 : 0), magnitude);
  number = Number::whole(isNegative, magnitude);
  return outcome;
}

// A number with its unit: 5s, 1MiB.
Outcome readMeasure(const ValueRules& rules, std::string_view text, Number& number) {
  std::size_t end = text.size();
  while (end > 0 && isLetter(text[end - 1])) --end;
  const std::string_view name = text.substr(end);
  const std::optional<Unit> unit = name.empty() ? rules.bareUnit : unitOf(rules, name);
  const Outcome outcome = readNumber(rules, text.substr(0, end), number);
  if (!unit || outcome == Outcome::WRONG) return Outcome::WRONG;
  const auto measure = inUnit(rules, number, *unit);
  if (!measure && outcome == Outcome::FINE && hasFraction(rules, number, *unit)) {
    return Outcome::FRACTION;
  }
  if (measure) number = *measure;
  return measure ? outcome : Outcome::TOO_LARGE;
}

// Copies bytes, since a type of the program may be any of that size.
template <class Stored, class From>
void storeAs(From number, void* value) {
  const auto stored = static_cast<Stored>(number);
  std::memcpy(value, &stored, sizeof stored);
}

template <class Stored>
Number loadAs(const void* value) {
  Stored stored;
  std::memcpy(&stored, value, sizeof stored);
  if constexpr (std::is_floating_point_v<Stored>) {
    return Number::floatingOf(stored);
  } else if constexpr (std::is_signed_v<Stored>) {
    return Number::of(stored);
  } else {
    return Number::whole(false, stored);
  }
}

void store(const ValueRules& rules, const Number& number, void* value) {
  if (rules.isFloating) {
    if (rules.bytes == sizeof(float)) return storeAs<float>(number.floating, value);
    if (rules.bytes == sizeof(double)) return storeAs<double>(number.floating, value);
    return storeAs<long double>(number.floating, value);
  }
  switch (rules.bytes) {
    case 1:
      return storeAs<std::uint8_t>(number.bits(), value);
    case 2:
      return storeAs<std::uint16_t>(number.bits(), value);
    case 4:
      return storeAs<std::uint32_t>(number.bits(), value);
    default:
      return storeAs<std::uint64_t>(number.bits(), value);
  }
}

std::pair<Number, Number> rangeOf(const ValueRules& rules) {
  return rules.least ? std::make_pair(*rules.least, *rules.greatest) : boundsOf(rules);
}

bool isInRange(const ValueRules& rules, const Number& number) {
  if (rules.least) return !(number < *rules.least || *rules.greatest < number);
  if (rules.kind == Kind::FLOATING) return true;  // or it would not have been read
  const auto [least, greatest] = boundsOf(rules);
  return !(number < least || greatest < number);
}

std::optional<Fault> parseNumber(const ValueRules& rules, const std::string& text, void* value) {
  Number number;
  const Outcome outcome =
      rules.hasUnit() ? readMeasure(rules, text, number) : readNumber(rules, text, number);
  if (outcome == Outcome::WRONG) {
    return Fault{"bad-value", quoted(text) + " is not " + expectation(rules)};
  }
  if (outcome == Outcome::FRACTION) {
    return Fault{"out-of-range", text + " is not a multiple of " + print(rules, Number::of(1))};
  }
  if (outcome == Outcome::TOO_LARGE && rules.isFloating) {
    return Fault{"out-of-range", text + " is beyond what its type holds"};
  }
  if (outcome == Outcome::TOO_LARGE || !isInRange(rules, number)) {
    const auto [least, greatest] = rangeOf(rules);
    return Fault{"out-of-range",
                 text + " is not in " + print(rules, least) + " to " + print(rules, greatest)};
  }
  if (value != nullptr) store(rules, number, value);
  return std::nullopt;
}

std::optional<Fault> parseName(const ValueRules& rules, const std::string& text, void* value) {
  if (rules.kind == Kind::BOOLEAN) {
    const auto* const found = std::find(truths.begin(), truths.end(), text);
    if (found != truths.end()) {
      if (value != nullptr) *static_cast<bool*>(value) = (found - truths.begin()) % 2 == 0;
      return std::nullopt;
    }
  } else {
    const auto found = std::find_if(rules.names.begin(), rules.names.end(),
                                    [&](const auto& name) { return name.first == text; });
    if (found != rules.names.end()) {
      if (value != nullptr) store(rules, Number::of(found->second), value);
      return std::nullopt;
    }
  }
  return Fault{"bad-value", quoted(text) + " is not " + expectation(rules)};
}

std::optional<Fault> parseCustom(const ValueRules& rules, const std::string& text, void* value) {
  if (rules.type == nullptr || value == nullptr) return std::nullopt;
  std::string reason;
  try {
    if (rules.type->parse(text, value)) return std::nullopt;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const cppUtil::err::Exception& e) {
    reason = e.getMessage();
  } catch (const std::exception& e) {
    reason = e.what();
  }
  if (!reason.empty()) reason = ": " + cppUtil::internal::printable(reason);
  return Fault{"bad-value", quoted(text) + " is not accepted" + reason};
}

template <class Floating>
std::string printFloating(long double value) {
  std::array<char, 64> digits{};
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<Floating>(value));
  return {digits.data(), end.ptr};
}

std::string printDigits(const ValueRules& rules, const Number& number) {
  if (!number.isFloating) return (number.isNegative ? "-" : "") + std::to_string(number.magnitude);
  if (rules.bytes == sizeof(float)) return printFloating<float>(number.floating);
  if (rules.bytes == sizeof(double)) return printFloating<double>(number.floating);
  return printFloating<long double>(number.floating);
}

// number in unit, if it is a multiple: inUnit the other way round.
std::optional<Number> countOf(const ValueRules& rules, const Number& number, const Unit& unit) {
  ValueRules inverse = rules;
  inverse.numerator = unit.numerator;
  inverse.denominator = unit.denominator;
  return inUnit(inverse, number, {"", rules.numerator, rules.denominator});
}

// A whole number in the unit that makes it smallest, a floating one in seconds.
std::string printMeasure(const ValueRules& rules, const Number& number) {
  std::string_view name;
  Number shown;
  for (const Unit& unit : unitsOf(rules)) {
    const auto count = countOf(rules, number, unit);
    const bool isBetter =
        rules.isFloating ? unit.name == "s" : count && count->magnitude < shown.magnitude;
    if (!count || !(name.empty() || isBetter)) continue;
    shown = *count;
    name = unit.name;
  }
  return printDigits(rules, shown).append(name);
}

}  // namespace

ValueRules::ValueRules(const Type& type)
    : kind(type.kind),
      bytes(type.bytes),
      isSigned(type.isSigned),
      isFloating(type.isFloating || type.kind == Kind::FLOATING),
      numerator(type.numerator),
      denominator(type.denominator),
      names(type.names == nullptr ? NameList() : type.names()),
      type(&type) {}

bool ValueRules::isOrdered() const {
  return hasUnit() || kind == Kind::INTEGER || kind == Kind::FLOATING;
}

std::optional<Fault> parse(const ValueRules& rules, const std::string& text, void* value) {
  switch (rules.kind) {
    case Kind::BOOLEAN:
    case Kind::ENUMERATION:
      return parseName(rules, text, value);
    case Kind::PATH:
    case Kind::CUSTOM:
      return parseCustom(rules, text, value);
    case Kind::TEXT:
      if (value != nullptr) *static_cast<std::string*>(value) = text;
      return std::nullopt;
    case Kind::SECRET:
      if (value != nullptr) *static_cast<Secret*>(value) = Secret(text);
      return std::nullopt;
    default:
      return parseNumber(rules, text, value);
  }
}

std::string canonical(const ValueRules& rules, const std::string& text) {
  const bool isNamed = rules.kind == Kind::BOOLEAN || rules.kind == Kind::ENUMERATION;
  alignas(std::max_align_t) std::array<unsigned char, sizeof(std::max_align_t)> value{};
  if (!(rules.isOrdered() || isNamed) || parse(rules, text, value.data())) return text;
  return print(rules, value.data());
}

std::string print(const ValueRules& rules, const void* value) {
  if (rules.isOrdered()) return print(rules, load(rules, value));
  switch (rules.kind) {
    case Kind::BOOLEAN:
      return std::string(truths[*static_cast<const bool*>(value) ? 0 : 1]);
    case Kind::TEXT:
      return *static_cast<const std::string*>(value);
    case Kind::SECRET:
      return static_cast<const Secret*>(value)->reveal();
    case Kind::PATH:
    case Kind::CUSTOM:
      return rules.type->print(value);
    default:
      break;
  }
  const Number number = load(rules, value);
  for (const auto& [name, named] : rules.names) {
    if (Number::of(named).bits() == number.bits()) return name;
  }
  return printDigits(rules, number);
}

std::string print(const ValueRules& rules, const Number& number) {
  return rules.hasUnit() ? printMeasure(rules, number) : printDigits(rules, number);
}

Number load(const ValueRules& rules, const void* value) {
  if (rules.isFloating) {
    if (rules.bytes == sizeof(float)) return loadAs<float>(value);
    if (rules.bytes == sizeof(double)) return loadAs<double>(value);
    return loadAs<long double>(value);
  }
  switch (rules.bytes) {
    case 1:
      return rules.isSigned ? loadAs<std::int8_t>(value) : loadAs<std::uint8_t>(value);
    case 2:
      return rules.isSigned ? loadAs<std::int16_t>(value) : loadAs<std::uint16_t>(value);
    case 4:
      return rules.isSigned ? loadAs<std::int32_t>(value) : loadAs<std::uint32_t>(value);
    default:
      return rules.isSigned ? loadAs<std::int64_t>(value) : loadAs<std::uint64_t>(value);
  }
}

std::pair<Number, Number> boundsOf(const ValueRules& rules) {
  if (rules.isFloating) {
    long double greatest = std::numeric_limits<long double>::max();
    if (rules.bytes == sizeof(float)) greatest = std::numeric_limits<float>::max();
    if (rules.bytes == sizeof(double)) greatest = std::numeric_limits<double>::max();
    return {Number::floatingOf(-greatest), Number::floatingOf(greatest)};
  }
  const std::uint64_t greatest = ~std::uint64_t(0) >> (64 - 8 * rules.bytes);
  if (!rules.isSigned) return {Number::whole(false, 0), Number::whole(false, greatest)};
  return {Number::whole(true, greatest / 2 + 1), Number::whole(false, greatest / 2)};
}

}  // namespace service::util::config::bind::internal
