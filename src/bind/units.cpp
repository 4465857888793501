#include <charconv>
#include <numeric>
#include <string_view>

#include "bind/values.hpp"

namespace service::util::config::bind::internal {

namespace {

const std::vector<Unit>& times() {
  static const std::vector<Unit> units = {{"ns", 1, 1'000'000'000}, {"us", 1, 1'000'000},
                                          {"ms", 1, 1000},          {"s", 1, 1},
                                          {"min", 60, 1},           {"h", 3600, 1}};
  return units;
}

const std::vector<Unit>& sizes() {
  static const std::vector<Unit> units = {
      {"B", 1, 1},           {"kB", 1000, 1},       {"MB", 1'000'000, 1}, {"GB", 1'000'000'000, 1},
      {"KiB", 1LL << 10, 1}, {"MiB", 1LL << 20, 1}, {"GiB", 1LL << 30, 1}};
  return units;
}

// The product, unless it has more than 64 bits.
std::optional<std::uint64_t> product(std::uint64_t a, std::uint64_t b) {
  std::uint64_t result = 0;
  if (__builtin_mul_overflow(a, b, &result)) return std::nullopt;
  return result;
}

// A whole number of a unit, as one of the type's: times factor, by divisor.
struct Scale {
  std::uint64_t factor;
  std::uint64_t divisor;
};

// Nothing when it is beyond 64 bits.
std::optional<Scale> scaleOf(const ValueRules& rules, const Unit& unit) {
  if (unit.numerator == rules.numerator && unit.denominator == rules.denominator) {
    return Scale{1, 1};  // mostly, and much faster
  }
  const auto numerator = static_cast<std::uint64_t>(unit.numerator);
  const auto denominator = static_cast<std::uint64_t>(unit.denominator);
  // The unit in that of the type is (numerator / of) * (per / denominator), both in lowest terms.
  const auto of = static_cast<std::uint64_t>(rules.numerator);
  const auto per = static_cast<std::uint64_t>(rules.denominator);
  const auto factor =
      product(numerator / std::gcd(numerator, of), per / std::gcd(per, denominator));
  const auto divisor =
      product(denominator / std::gcd(per, denominator), of / std::gcd(numerator, of));
  if (!factor || !divisor) return std::nullopt;
  return Scale{*factor, *divisor};
}

}  // namespace

std::optional<Number> inUnit(const ValueRules& rules, const Number& number, const Unit& unit) {
  if (rules.isFloating) {
    return Number::floatingOf(number.floating * static_cast<long double>(unit.numerator) /
                              static_cast<long double>(unit.denominator) *
                              static_cast<long double>(rules.denominator) /
                              static_cast<long double>(rules.numerator));
  }
  const auto scale = scaleOf(rules, unit);
  if (!scale || number.magnitude % scale->divisor != 0) return std::nullopt;
  const auto magnitude = product(number.magnitude / scale->divisor, scale->factor);
  if (!magnitude) return std::nullopt;
  return Number::whole(number.isNegative, *magnitude);
}

bool hasFraction(const ValueRules& rules, const Number& number, const Unit& unit) {
  const auto scale = rules.isFloating ? std::nullopt : scaleOf(rules, unit);
  return scale && number.magnitude % scale->divisor != 0;
}

std::optional<std::string> printUnit(const ValueRules& rules, const Unit& unit) {
  std::optional<std::string> text;
  ValueRules whole;  // that counts in the named unit
  for (const Unit& named : rules.kind == Kind::BYTES ? sizes() : times()) {
    whole.numerator = named.numerator;
    whole.denominator = named.denominator;
    const auto count = inUnit(whole, Number::of(1), unit);
    if (count) text = std::to_string(count->magnitude).append(named.name);
  }
  return text;
}

std::optional<Unit> parseUnit(const ValueRules& rules, const std::string& text) {
  std::int32_t count = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, count);
  if (!rules.hasUnit() || error != std::errc() || count < 1) return std::nullopt;
  for (const Unit& named : rules.kind == Kind::BYTES ? sizes() : times()) {
    if (named.name == std::string_view(stopped, static_cast<std::size_t>(end - stopped))) {
      return multiple(count, named);
    }
  }
  return std::nullopt;
}

std::optional<Unit> multiple(std::int64_t count, const Unit& unit) {
  const std::int64_t divisor = std::gcd(count, unit.denominator);
  Unit result = {"", 0, unit.denominator / divisor};
  if (__builtin_mul_overflow(count / divisor, unit.numerator, &result.numerator)) {
    return std::nullopt;
  }
  return result;
}

std::vector<Unit> unitsOf(const ValueRules& rules) {
  std::vector<Unit> units;
  for (const Unit& unit : rules.kind == Kind::BYTES ? sizes() : times()) {
    if (unitOf(rules, unit.name)) units.push_back(unit);
  }
  return units;
}

std::optional<Unit> unitOf(const ValueRules& rules, std::string_view name) {
  const bool isTime = rules.kind != Kind::BYTES;
  for (const Unit& unit : isTime ? times() : sizes()) {
    if (unit.name != name) continue;
    // Hours without an exact one: of days, say, as many as make some.
    const bool isHeld = !isTime || rules.isFloating || &unit == &times().back() ||
                        inUnit(rules, Number::of(1), unit);
    return isHeld ? std::make_optional(unit) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace service::util::config::bind::internal
