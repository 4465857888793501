// The types that settings have: what a program names in its structs beside numbers and strings.
//
// A type of the program's own takes part when two functions are found beside it by
// argument-dependent look-up, parse and print:
//
//   std::optional<Address> parse(bind::Is<Address>, const std::string& text);
//   std::string print(const Address& address);
//
// parse answers with nothing, or throws a std::exception whose what() says why, when text is no
// such value. print is its inverse: parse(print(x)) is x. Values here belong to one thread at a
// time.
#ifndef SERVICE_UTIL_CONFIG_BIND_VALUES_HPP
#define SERVICE_UTIL_CONFIG_BIND_VALUES_HPP

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace service::util::config::bind {

// Names a type in the look-up of the functions that a program supplies for it: describe, names,
// parse.
template <class T>
struct Is {};

// A number of bytes. Its text has a unit: B, kB, MB, GB (powers of 1000), KiB, MiB or GiB (of
// 1024).
struct Bytes {
  std::uint64_t count = 0;  // of single bytes
};

// By their count.
inline bool operator==(Bytes a, Bytes b) {
  return a.count == b.count;
}
inline bool operator!=(Bytes a, Bytes b) {
  return a.count != b.count;
}
inline bool operator<(Bytes a, Bytes b) {
  return a.count < b.count;
}

// A text that no message, page or log shows. There is no stream insertion; whoever needs the text
// says so.
class Secret {
 public:
  Secret() = default;
  // text: any bytes, as they stand in the file.
  explicit Secret(std::string text) : text(std::move(text)) {}

  // The text itself, valid as long as the Secret and until it is assigned to.
  const std::string& reveal() const { return text; }

  // By their texts.
  friend bool operator==(const Secret& a, const Secret& b) { return a.text == b.text; }
  friend bool operator!=(const Secret& a, const Secret& b) { return a.text != b.text; }

 private:
  std::string text;
};

namespace internal {

using NameList = std::vector<std::pair<std::string, std::int64_t>>;

}  // namespace internal

// The names of an enumeration's values, which the program gives in a function that is found by
// argument-dependent look-up:
//
//   bind::Names<Level> names(bind::Is<Level>) { return {{"error", Level::ERROR}, ...}; }
//
// A value may have several names; the first is the one that is shown.
template <class Enumeration>
class Names {
 public:
  // Copies the names. A value of them is what the enumeration's underlying type holds.
  Names(std::initializer_list<std::pair<const char*, Enumeration>> names) {
    for (const auto& [name, value] : names) {
      list.emplace_back(name, static_cast<std::int64_t>(value));
    }
  }

  internal::NameList list;  // for the library: names and values, in the order given
};

}  // namespace service::util::config::bind

#endif
