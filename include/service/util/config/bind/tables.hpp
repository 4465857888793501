// The tables through which the library reaches into the types of a program: what kind of value a
// type is, and how a member holds values. Filled at compile time, one for each type that occurs,
// not for each field; everything else about settings is in the library.
//
// Not for programs. A table begins with its size, by which a later library knows the tables of
// programs that were built before it; entries are only added at the end.
#ifndef SERVICE_UTIL_CONFIG_BIND_TABLES_HPP
#define SERVICE_UTIL_CONFIG_BIND_TABLES_HPP

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "service/util/config/bind/values.hpp"

namespace service::util::config::bind {

class Fields;

namespace internal {

enum class Kind : std::uint32_t {
  BOOLEAN,
  INTEGER,
  FLOATING,
  TEXT,
  PATH,
  ENUMERATION,
  DURATION,
  BYTES,
  SECRET,
  CUSTOM,  // of the program, with its parse and print
};

// The type of a single value.
struct Type {
  std::uint32_t size;
  Kind kind;
  std::uint32_t bytes;  // of a number: of an enumeration's and of a duration's, too
  bool isSigned;
  bool isFloating;         // the number of a duration
  std::int64_t numerator;  // the unit of a duration in seconds
  std::int64_t denominator;
  NameList (*names)();                                  // ENUMERATION
  bool (*parse)(const std::string& text, void* value);  // PATH, CUSTOM
  std::string (*print)(const void* value);              // PATH, CUSTOM
};

// Fills the next element of a container and answers with its key, if it is for a map.
class Filler {
 public:
  virtual const void* fill(void* element) = 0;

 protected:
  ~Filler() = default;
};

// Sees the elements of a container.
class Viewer {
 public:
  virtual void view(const void* element) = 0;

 protected:
  ~Viewer() = default;
};

// A struct of the program.
struct Struct {
  std::uint32_t size;
  const std::type_info* type;
  const Fields& (*fields)();  // its description, made on first use
};

// How a member of a struct holds a setting, a section, or several of either.
struct Holder {
  enum Form : std::uint32_t { SETTING, LIST, SECTION, SECTIONS };
  enum Shape : std::uint32_t { PLAIN, OPTIONAL, SEQUENCE, MAP };

  std::uint32_t size;
  Form form;
  Shape shape;
  const Type* type;                                  // of settings, otherwise null
  const Struct* structure;                           // of sections, otherwise null
  const std::type_info* key;                         // MAP
  void (*assign)(void* to, const void* from);        // SETTING, LIST
  void* (*engage)(void* member);                     // OPTIONAL: makes its value anew
  const void* (*value)(const void* member);          // OPTIONAL: null when it is empty
  void (*clear)(void* member);                       // OPTIONAL, SEQUENCE, MAP
  bool (*append)(void* member, Filler& filler);      // SEQUENCE, MAP: false when the key is there
  void (*each)(const void* member, Viewer& viewer);  // SEQUENCE, MAP
  void (*viewDefault)(Viewer& viewer);  // of sections, unless PLAIN: shows the struct in them
};

// Durations and paths are known by what they have, which spares programs that have none of them the
// headers.
template <class T, class = void>
struct IsDuration : std::false_type {};
template <class T>
struct IsDuration<T, std::void_t<typename T::rep, decltype(T::period::num)>> : std::true_type {};

template <class T, class = void>
struct IsPath : std::false_type {};
template <class T>
struct IsPath<T, std::void_t<decltype(T::preferred_separator)>> : std::true_type {};

template <class T, class = void>
struct HasParse : std::false_type {};
template <class T>
struct HasParse<T, std::void_t<decltype(parse(Is<T>(), std::declval<const std::string&>()))>>
    : std::true_type {};

template <class T>
constexpr Kind kindOf() {
  if constexpr (std::is_same_v<T, bool>) {
    return Kind::BOOLEAN;
  } else if constexpr (std::is_integral_v<T>) {
    static_assert(!std::is_same_v<T, char> && !std::is_same_v<T, wchar_t> &&
                      !std::is_same_v<T, char16_t> && !std::is_same_v<T, char32_t>,
                  "a character is no setting: use std::string, or std::int8_t for a number");
    return Kind::INTEGER;
  } else if constexpr (std::is_floating_point_v<T>) {
    return Kind::FLOATING;
  } else if constexpr (std::is_same_v<T, std::string>) {
    return Kind::TEXT;
  } else if constexpr (IsPath<T>::value) {
    return Kind::PATH;
  } else if constexpr (std::is_same_v<T, Bytes>) {
    return Kind::BYTES;
  } else if constexpr (std::is_same_v<T, Secret>) {
    return Kind::SECRET;
  } else if constexpr (IsDuration<T>::value) {
    return Kind::DURATION;
  } else if constexpr (std::is_enum_v<T> && !HasParse<T>::value) {
    return Kind::ENUMERATION;
  } else {
    static_assert(HasParse<T>::value,
                  "not a type of settings: it needs parse and print, see bind/values.hpp");
    return Kind::CUSTOM;
  }
}

template <class T>
NameList namesOf() {
  return names(Is<T>()).list;
}

template <class T>
bool parseValue(const std::string& text, void* value) {
  std::optional<T> parsed = parse(Is<T>(), text);
  if (parsed) *static_cast<T*>(value) = std::move(*parsed);
  return parsed.has_value();
}

template <class T>
std::string printValue(const void* value) {
  return print(*static_cast<const T*>(value));
}

template <class T>
bool parsePath(const std::string& text, void* value) {
  *static_cast<T*>(value) = text;
  return true;
}

template <class T>
std::string printPath(const void* value) {
  return static_cast<const T*>(value)->string();
}

template <class T>
constexpr Type makeType() {
  Type type = {sizeof(Type), kindOf<T>(), sizeof(T), std::is_signed_v<T>, false, 1, 1,
               nullptr,      nullptr,     nullptr};
  if constexpr (kindOf<T>() == Kind::ENUMERATION) {
    type.isSigned = std::is_signed_v<std::underlying_type_t<T>>;
    type.names = namesOf<T>;
  } else if constexpr (kindOf<T>() == Kind::DURATION) {
    type.isSigned = std::is_signed_v<typename T::rep>;
    type.isFloating = std::is_floating_point_v<typename T::rep>;
    type.numerator = T::period::num;
    type.denominator = T::period::den;
  } else if constexpr (kindOf<T>() == Kind::PATH) {
    type.parse = parsePath<T>;
    type.print = printPath<T>;
  } else if constexpr (kindOf<T>() == Kind::CUSTOM) {
    type.parse = parseValue<T>;
    type.print = printValue<T>;
  }
  return type;
}

template <class T>
inline constexpr Type typeOf = makeType<T>();

template <class S>
const Fields& fieldsOf() {
  static const auto fields = describe(Is<S>());
  return fields;
}

template <class S>
void viewDefault(Viewer& viewer) {
  const S object = S();
  viewer.view(&object);
}

template <class S>
inline constexpr Struct structOf = {sizeof(Struct), &typeid(S), fieldsOf<S>};

template <class M>
void assign(void* to, const void* from) {
  *static_cast<M*>(to) = *static_cast<const M*>(from);
}

template <class M>
void* engage(void* member) {
  return &static_cast<M*>(member)->emplace();
}

template <class M>
const void* valueOf(const void* member) {
  const auto& optional = *static_cast<const M*>(member);
  return optional ? &*optional : nullptr;
}

template <class M>
void clear(void* member) {
  static_cast<M*>(member)->clear();
}

template <class M>
void reset(void* member) {
  static_cast<M*>(member)->reset();
}

template <class M>
bool append(void* member, Filler& filler) {
  auto& container = *static_cast<M*>(member);
  typename M::value_type element = typename M::value_type();
  filler.fill(&element);
  container.insert(container.end(), std::move(element));
  return true;
}

template <class M>
bool appendKeyed(void* member, Filler& filler) {
  typename M::mapped_type element = typename M::mapped_type();
  const void* key = filler.fill(&element);
  typename M::key_type copy = *static_cast<const typename M::key_type*>(key);
  return static_cast<M*>(member)->emplace(std::move(copy), std::move(element)).second;
}

template <class M>
void each(const void* member, Viewer& viewer) {
  for (const auto& element : *static_cast<const M*>(member)) {
    const typename M::value_type& value = element;  // a copy where the container has proxies
    viewer.view(&value);
  }
}

template <class M>
void eachMapped(const void* member, Viewer& viewer) {
  for (const auto& [key, value] : *static_cast<const M*>(member)) viewer.view(&value);
}

template <class T>
struct Unwrapped {
  using Value = T;
  static constexpr bool isOptional = false;
};
template <class T>
struct Unwrapped<std::optional<T>> {
  using Value = T;
  static constexpr bool isOptional = true;
};

template <class M, class = void>
struct Contained {
  using Value = typename M::value_type;
  static constexpr bool isMap = false;
};
template <class M>
struct Contained<M, std::void_t<typename M::mapped_type>> {
  using Value = typename M::mapped_type;
  static constexpr bool isMap = true;
};

// What Holder needs besides the type of its values.
template <class M>
constexpr Holder makeHolder(Holder::Shape shape, const Type* type, const Struct* structure) {
  Holder holder = {sizeof(Holder), Holder::SETTING, shape,   type,    structure, nullptr, nullptr,
                   nullptr,        nullptr,         nullptr, nullptr, nullptr,   nullptr};
  return holder;
}

// The form is told, not taken from the pointers: with the sanitizers, GCC does not compare these in
// a constant.
template <class M, auto form>
constexpr Holder makeSingle(const Type* type, const Struct* structure) {
  Holder holder = makeHolder<M>(Holder::PLAIN, type, structure);
  holder.form = form;
  if constexpr (Unwrapped<M>::isOptional) {
    holder.shape = Holder::OPTIONAL;
    holder.engage = engage<M>;
    holder.value = valueOf<M>;
    holder.clear = reset<M>;
    if constexpr (form == Holder::SECTION) {
      holder.viewDefault = viewDefault<typename Unwrapped<M>::Value>;
    }
  }
  return holder;
}

template <class M, auto form>
constexpr Holder makeSeveral(const Type* type, const Struct* structure) {
  Holder holder = makeHolder<M>(Holder::SEQUENCE, type, structure);
  holder.form = form;
  holder.clear = clear<M>;
  if constexpr (form == Holder::SECTIONS) {
    holder.viewDefault = viewDefault<typename Contained<M>::Value>;
  }
  if constexpr (Contained<M>::isMap) {
    holder.shape = Holder::MAP;
    holder.key = &typeid(typename M::key_type);
    holder.append = appendKeyed<M>;
    holder.each = eachMapped<M>;
  } else {
    holder.append = append<M>;
    holder.each = each<M>;
  }
  return holder;
}

template <class M>
constexpr Holder withAssign(Holder holder) {
  holder.assign = assign<M>;
  return holder;
}

template <class M>
inline constexpr Holder settingHolder =
    withAssign<M>(makeSingle<M, Holder::SETTING>(&typeOf<typename Unwrapped<M>::Value>, nullptr));
template <class M>
inline constexpr Holder listHolder =
    withAssign<M>(makeSeveral<M, Holder::LIST>(&typeOf<typename Contained<M>::Value>, nullptr));
template <class M>
inline constexpr Holder sectionHolder =
    makeSingle<M, Holder::SECTION>(nullptr, &structOf<typename Unwrapped<M>::Value>);
template <class M>
inline constexpr Holder sectionsHolder =
    makeSeveral<M, Holder::SECTIONS>(nullptr, &structOf<typename Contained<M>::Value>);

// A pointer to a member, taken apart.
template <class Pointer>
struct Member;
template <class M, class S>
struct Member<M S::*> {
  using Type = M;
  using Struct = S;
};

// Where the member stands in its struct. By the C++ ABI of both platforms, that number is what a
// pointer to a data member holds.
template <class M, class S>
[[gnu::always_inline]] inline std::uint32_t offsetOf(M S::*member) {
  static_assert(sizeof member == sizeof(std::ptrdiff_t));
  std::ptrdiff_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return static_cast<std::uint32_t>(offset);
}

}  // namespace internal

}  // namespace service::util::config::bind

#endif
