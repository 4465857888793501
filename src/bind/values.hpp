// Texts as values: what a text must be for a setting, and how a value is written as text. One
// implementation for programs, which have the type, and for descriptions that were exported, which
// know its kind.
#ifndef SRC_BIND_VALUES_HPP
#define SRC_BIND_VALUES_HPP

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bind/Number.hpp"
#include "service/util/config/bind/tables.hpp"

namespace service::util::config::bind::internal {

// A unit of durations, in seconds, or of sizes, in bytes: numerator / denominator of them.
struct Unit {
  std::string_view name;  // of a text that lasts
  std::int64_t numerator;
  std::int64_t denominator;
};

// What a setting accepts.
struct ValueRules {
  ValueRules() = default;
  explicit ValueRules(const Type& type);

  // Whether its values have an order: they can be in a range.
  bool isOrdered() const;
  // Whether its texts have a unit.
  bool hasUnit() const { return kind == Kind::DURATION || kind == Kind::BYTES; }

  Kind kind = Kind::TEXT;
  std::uint32_t bytes = 0;
  bool isSigned = false;
  bool isFloating = false;     // of floating kind, or a duration that counts so
  std::int64_t numerator = 1;  // the unit of a duration in seconds
  std::int64_t denominator = 1;
  NameList names;               // of an enumeration
  std::optional<Number> least;  // of a range; both or none
  std::optional<Number> greatest;
  std::optional<Unit> bareUnit;  // of numbers without a unit
  const Type* type = nullptr;    // null when the program is not at hand
};

// Why a text is refused: rule and message of a problem.
struct Fault {
  const char* rule;
  std::string message;
};

// Reads text as rules say. When it is right, stores it at value, unless that is null, which must be
// of rules.type. A kind that only the program can read is taken as right when rules.type is null.
std::optional<Fault> parse(const ValueRules& rules, const std::string& text, void* value);

// The one spelling of what text says, of the several that numbers and names have.
std::string canonical(const ValueRules& rules, const std::string& text);

// The value, of rules.type, as text that parse takes. An enumeration's value without a name is its
// number.
std::string print(const ValueRules& rules, const void* value);

// The number as a text of the kind, with its unit.
std::string print(const ValueRules& rules, const Number& number);

// The number at value, for a kind with an order.
Number load(const ValueRules& rules, const void* value);

// units as often as number says, as a number of the kind; nothing when that is none of its own, for
// it has a fraction or more than 64 bits.
std::optional<Number> inUnit(const ValueRules& rules, const Number& number, const Unit& unit);

// Whether that is for a fraction.
bool hasFraction(const ValueRules& rules, const Number& number, const Unit& unit);

// count of them as one, in lowest terms; nothing when that is beyond 64 bits. Count is positive.
std::optional<Unit> multiple(std::int64_t count, const Unit& unit);

// The unit as a text, 10ms say; nothing when it is no multiple of one that has a name.
std::optional<std::string> printUnit(const ValueRules& rules, const Unit& unit);
// The same back; nothing when text is none for a setting of the kind.
std::optional<Unit> parseUnit(const ValueRules& rules, const std::string& text);

// The units that texts of the kind may have, the smallest first: of a duration those that it holds
// exactly.
std::vector<Unit> unitsOf(const ValueRules& rules);

// The one of them that is called so.
std::optional<Unit> unitOf(const ValueRules& rules, std::string_view name);

// The least and the greatest value of the type, for kinds with an order.
std::pair<Number, Number> boundsOf(const ValueRules& rules);

}  // namespace service::util::config::bind::internal

#endif
