// Numbers of every type that a setting has, so that parsing, ranges and units are written once: a
// whole number of up to 64 bits with its sign, or a floating one.
#ifndef SRC_BIND_NUMBER_HPP
#define SRC_BIND_NUMBER_HPP

#include <cstdint>

namespace service::util::config::bind::internal {

struct Number {
  static Number whole(bool isNegative, std::uint64_t magnitude) {
    return {false, isNegative && magnitude > 0, magnitude, 0};
  }
  static Number of(std::int64_t value) {
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? whole(true, 0 - bits) : whole(false, bits);
  }
  static Number floatingOf(long double value) { return {true, false, 0, value}; }

  // As whole numbers in the program have it; a negative one in two's complement.
  std::uint64_t bits() const { return isNegative ? 0 - magnitude : magnitude; }

  bool isFloating = false;
  bool isNegative = false;  // of a whole number, which is then not 0
  std::uint64_t magnitude = 0;
  long double floating = 0;
};

// Both must be whole, or both floating.
inline bool operator<(const Number& a, const Number& b) {
  if (a.isFloating) return a.floating < b.floating;
  if (a.isNegative != b.isNegative) return a.isNegative;
  return a.isNegative ? b.magnitude < a.magnitude : a.magnitude < b.magnitude;
}

}  // namespace service::util::config::bind::internal

#endif
