// The description of a struct: which of its members are settings, under which names, with which
// rules. A program gives it in a function that is found by argument-dependent look-up:
//
//   bind::Fields describe(bind::Is<Broker>) {
//     using bind::field;
//     return {field<&Broker::host>("host").required().about("name or address of the broker"),
//             field<&Broker::port>("port").range(1, 65535)};
//   }
//
// The function is called once, when the struct is first read. What is wrong with a description
// itself (two fields of a name, a default out of its range) is told then, as one
// cppUtil::err::Exception with code 5. Descriptions are made on any thread and never change after
// that.
#ifndef SERVICE_UTIL_CONFIG_BIND_FIELDS_HPP
#define SERVICE_UTIL_CONFIG_BIND_FIELDS_HPP

#include <initializer_list>
#include <memory>
#include <string>

#include "cppUtil/export.hpp"
#include "service/util/config/bind/tables.hpp"

namespace service::util::config::bind {

namespace internal {

struct Description;
struct Reported;

// A bound of a range, or the unit of a bare number.
struct Limit {
  enum Unit : std::uint32_t { NONE, TIME, SIZE };

  template <class Number>
  static constexpr Limit of(Number value) {
    if constexpr (IsDuration<Number>::value) {
      Limit limit = of(value.count());
      limit.unit = TIME;
      limit.numerator = Number::period::num;
      limit.denominator = Number::period::den;
      return limit;
    } else if constexpr (std::is_same_v<Number, Bytes>) {
      return {SIZE, false, false, value.count, 0, 1, 1};
    } else if constexpr (std::is_floating_point_v<Number>) {
      return {NONE, true, false, 0, static_cast<double>(value), 1, 1};
    } else {
      static_assert(std::is_integral_v<Number>, "a bound is a number, a duration or Bytes");
      const bool isNegative = value < 0;
      const auto bits = static_cast<std::uint64_t>(value);
      return {NONE, false, isNegative, isNegative ? 0 - bits : bits, 0, 1, 1};
    }
  }

  Unit unit;
  bool isFloating;
  bool isNegative;
  std::uint64_t magnitude;
  double floating;
  std::int64_t numerator;  // of the unit in seconds
  std::int64_t denominator;
};

// The first argument of something that can be called with (const S&, Report&).
template <class Callable>
struct CheckedStruct : CheckedStruct<decltype(&Callable::operator())> {};
template <class Result, class S, class... Others>
struct CheckedStruct<Result (*)(const S&, Others...)> {
  using Struct = S;
};
template <class Result, class Callable, class S, class... Others>
struct CheckedStruct<Result (Callable::*)(const S&, Others...) const> {
  using Struct = S;
};

}  // namespace internal

// One setting, list or section of a description: made by field and its like, completed and put into
// Fields in the same expression. Each operation answers with the field itself. Texts are copied.
class ZU_EXPORT Field {
 public:
  // It must be given, whatever the member's initial value.
  Field& required();

  // One line on what it is for; shown where it is missing, and in everything made from the
  // description.
  Field& about(const char* text);

  // The least and the greatest value that is accepted. In the units of the member: durations for a
  // duration, Bytes for Bytes.
  template <class Least, class Greatest>
  Field& range(Least least, Greatest greatest) {
    return limits(internal::Limit::of(least), internal::Limit::of(greatest));
  }
  Field& range(int least, int greatest);

  // A name that it had before, still read, with a warning. There may be several.
  Field& formerly(const char* name);

  // A change takes effect only when the program starts again.
  Field& needsRestart();

  // The environment variable that overrides it.
  Field& env(const char* variable);

  // What a number without a unit counts, 1ms for example, for files that must be kept. Otherwise
  // durations and Bytes need their unit.
  template <class Unit>
  Field& bareUnit(Unit unit) {
    return bare(internal::Limit::of(unit));
  }

  // A value to show where one is needed and there is no default.
  Field& example(const char* text);

  // How many values or sections there may be, of a list or of sections.
  Field& count(std::uint32_t least, std::uint32_t most);

  // For sections: the setting that tells them apart, by its member. Sections of equal keys are one
  // when they stand in different files, and a problem within one file.
  template <auto Key>
  Field& keyedBy() {
    using Member = internal::Member<decltype(Key)>;
    return keyed(internal::offsetOf(Key), typeid(typename Member::Type),
                 typeid(typename Member::Struct));
  }

  // For a section: what its description does not name is left alone.
  Field& open();

  // How field and its like make one, which belongs to the Fields that it is put into.
  static Field& make(const char* name, std::uint32_t offset, const internal::Holder& holder,
                     const std::type_info& owner);

  Field(const Field&) = delete;
  Field& operator=(const Field&) = delete;

 protected:
  Field() = default;
  ~Field() = default;

 private:
  Field& limits(const internal::Limit& least, const internal::Limit& greatest);
  Field& bare(const internal::Limit& unit);
  Field& keyed(std::uint32_t offset, const std::type_info& type, const std::type_info& owner);
};

namespace internal {

// A Field on its way into Fields.
struct FieldHandle {
  FieldHandle(Field& field) : field(&field) {}
  Field* field;
};

template <class Struct, class M>
[[gnu::always_inline]] inline Field& makeField(const char* name, M Struct::*member,
                                               const Holder& holder) {
  return Field::make(name, offsetOf(member), holder, typeid(Struct));
}

}  // namespace internal

// A setting. Its member has a type of bind/values.hpp, a number, bool, std::string,
// std::filesystem::path, an enumeration with names, a std::chrono duration, or is a std::optional
// of one. The member's initial value is the default. A member of a base class needs the struct that
// is described as the second argument.
template <auto Pointer, class Struct = typename internal::Member<decltype(Pointer)>::Struct>
[[gnu::always_inline]] inline Field& field(const char* name) {
  using M = typename internal::Member<decltype(Pointer)>::Type;
  return internal::makeField<Struct, M>(name, Pointer, internal::settingHolder<M>);
}

// A repeated setting. Its member is a std::vector or the like.
template <auto Pointer, class Struct = typename internal::Member<decltype(Pointer)>::Struct>
[[gnu::always_inline]] inline Field& list(const char* name) {
  using M = typename internal::Member<decltype(Pointer)>::Type;
  return internal::makeField<Struct, M>(name, Pointer, internal::listHolder<M>);
}

// A section. Its member is a struct with a description of its own, or a std::optional of one.
template <auto Pointer, class Struct = typename internal::Member<decltype(Pointer)>::Struct>
[[gnu::always_inline]] inline Field& section(const char* name) {
  using M = typename internal::Member<decltype(Pointer)>::Type;
  return internal::makeField<Struct, M>(name, Pointer, internal::sectionHolder<M>);
}

// A repeated section. Its member is a std::vector of structs or the like; with keyedBy a std::map
// or the like as well.
template <auto Pointer, class Struct = typename internal::Member<decltype(Pointer)>::Struct>
[[gnu::always_inline]] inline Field& sections(const char* name) {
  using M = typename internal::Member<decltype(Pointer)>::Type;
  return internal::makeField<Struct, M>(name, Pointer, internal::sectionsHolder<M>);
}

// Takes what a check across fields finds. Valid during the check.
class ZU_EXPORT Report {
 public:
  // field: the name of a field of the struct that is checked, which says where the problem is told;
  // empty for the struct as a whole. Throws code 5 when there is no such field.
  void error(const std::string& field, const std::string& message);
  void warning(const std::string& field, const std::string& message);

  // Made by the library.
  explicit Report(internal::Reported& reported) : reported(reported) {}
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

 private:
  internal::Reported& reported;
};

// The fields of a struct and what holds for all of them. A handle: copies are the same description.
class ZU_EXPORT Fields {
 public:
  // Takes fields as field and its like make them, in the order in which documents show them.
  Fields(std::initializer_list<internal::FieldHandle> fields);

  // The same description again.
  Fields(const Fields& other);
  Fields& operator=(const Fields& other);
  ~Fields();

  // What it does not name is left alone, for files that several programs share.
  Fields& open();

  // Every setting has an environment variable: prefix and the way to it in capitals, with "_" for
  // every other character. PLANT_BROKER_PORT is broker.port with the prefix PLANT_. Settings of
  // repeated sections have none. A variable with the prefix that is none of them gets a warning.
  Fields& envPrefix(const char* prefix);

  // A function (const S&, Report&), called for each struct that was read without an error.
  template <class Check>
  Fields& check(Check check) {
    using S = typename internal::CheckedStruct<Check>::Struct;
    return addCheck(typeid(S), std::make_shared<Check>(std::move(check)),
                    [](const void* shared, const void* object, Report& report) {
                      const auto& run = *static_cast<const Check*>(shared);
                      run(*static_cast<const S*>(object), report);
                    });
  }

  // For the library.
  const internal::Description& get() const { return *description; }

 private:
  Fields& addCheck(const std::type_info& type, std::shared_ptr<const void> check,
                   void (*run)(const void* check, const void* object, Report& report));

  std::shared_ptr<internal::Description> description;
};

}  // namespace service::util::config::bind

#endif
