// Settings as checked C++ values: single ones by their path, or a whole struct by its description.
//
//   const auto speed = bind::get<std::uint16_t>(config, "hall.pump[1].speed");
//   const Gateway gateway = bind::read<Gateway>(config, origins);
//
// Stands on IConfig, Origins and visit. The whole text of a value must be right: no blanks around,
// no locale, nothing clamped and nothing guessed. A file overrides what it includes, which takes
// the Origins of the load; without them the first value counts.
//
// A path is a selector that may also name a property of the configuration itself ("title") and may
// have names in quotes, with the escapes of JSON. Configurations must be of this library's making.
// All throw cppUtil::err::Exception. Threads: as for reading a configuration.
//
// Not at global scope: namespace bind = service::util::config::bind; the name clashes there with
// the function of <sys/socket.h>. Inside of a namespace or a function it does not, nor does
// using namespace service::util::config.
#ifndef SERVICE_UTIL_CONFIG_BIND_HPP
#define SERVICE_UTIL_CONFIG_BIND_HPP

#include <chrono>  // for the programs that have settings of it, most of them
#include <optional>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/bind/Fields.hpp"
#include "service/util/config/bind/Overrides.hpp"
#include "service/util/config/bind/values.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::bind {

namespace internal {

// The library's side of the templates below. origins may be null.
ZU_EXPORT bool findValue(const Type& type, void* value, const IConfigPtr& config,
                         const xml::Origins* origins, const std::string& path);
ZU_EXPORT void getValue(const Type& type, void* value, const IConfigPtr& config,
                        const xml::Origins* origins, const std::string& path);
ZU_EXPORT bool readStruct(const Struct& type, void* object, const IConfigPtr& config,
                          const xml::Origins* origins, const Overrides& overrides,
                          std::vector<xml::Problem>& problems);
ZU_EXPORT void readStruct(const Struct& type, void* object, const IConfigPtr& config,
                          const xml::Origins* origins, const Overrides& overrides);

}  // namespace internal

// The value at path, if there is one; a section on the way that is absent is an absent value.
// Throws code 5 when it is no T, and INVALID_SELECT when path is malformed.
//
// With origins, a name without an index means the setting or section as the files make it together,
// setting by setting: of the file nearest to the top-level one, of several the later include; two
// in one file are code 5. A property with an index counts among the values of the nearest files.
template <class T>
std::optional<T> find(const IConfigPtr& config, const std::string& path) {
  std::optional<T> value(std::in_place);
  if (!internal::findValue(internal::typeOf<T>, &*value, config, nullptr, path)) value.reset();
  return value;
}
template <class T>
std::optional<T> find(const IConfigPtr& config, const xml::Origins& origins,
                      const std::string& path) {
  std::optional<T> value(std::in_place);
  if (!internal::findValue(internal::typeOf<T>, &*value, config, &origins, path)) value.reset();
  return value;
}

// The same, and throws NOT_FOUND when there is none.
template <class T>
T get(const IConfigPtr& config, const std::string& path) {
  T value = T();
  internal::getValue(internal::typeOf<T>, &value, config, nullptr, path);
  return value;
}
template <class T>
T get(const IConfigPtr& config, const xml::Origins& origins, const std::string& path) {
  T value = T();
  internal::getValue(internal::typeOf<T>, &value, config, &origins, path);
  return value;
}

// The same, with what to take when there is none.
template <class T>
T get(const IConfigPtr& config, const std::string& path, const T& fallback) {
  T value = T();
  return internal::findValue(internal::typeOf<T>, &value, config, nullptr, path) ? value : fallback;
}
template <class T>
T get(const IConfigPtr& config, const xml::Origins& origins, const std::string& path,
      const T& fallback) {
  T value = T();
  return internal::findValue(internal::typeOf<T>, &value, config, &origins, path) ? value
                                                                                  : fallback;
}

// An S with what config, the environment and overrides say; members that they do not name keep
// their initial values. Appends all that is wrong to problems, file by file in the order of the
// load and by line, then what is wrong with the environment and the command line, whose places have
// "environment NAME" or "command line" for a file. Answers with nothing when any of it is an error.
// The rules of problems, besides those of xml::check:
//
//   missing-setting      a required setting, section or list is absent; too few of several
//   wrong-count             more than count allows
//   unknown-setting      the description does not name it; in overrides an error, else a warning
//   renamed-setting      a former name, a warning; an error where the new one stands beside it
//   repeated-setting     a single setting or section stands twice in one file
//   duplicate-key        two sections of one file have the same key
//   bad-value            no value of the type
//   out-of-range         a value that the type or the range excludes
//   refused              what a check across fields reports
template <class S>
std::optional<S> read(const IConfigPtr& config, const xml::Origins& origins,
                      std::vector<xml::Problem>& problems, const Overrides& overrides = {}) {
  std::optional<S> object(std::in_place);
  if (!internal::readStruct(internal::structOf<S>, &*object, config, &origins, overrides,
                            problems)) {
    object.reset();
  }
  return object;
}
template <class S>
std::optional<S> read(const IConfigPtr& config, std::vector<xml::Problem>& problems,
                      const Overrides& overrides = {}) {
  std::optional<S> object(std::in_place);
  if (!internal::readStruct(internal::structOf<S>, &*object, config, nullptr, overrides,
                            problems)) {
    object.reset();
  }
  return object;
}

// The same, and throws code 5 with all problems in its message, a line each as toText makes it,
// when any of them is an error. Otherwise logs them, at level 2.
template <class S>
S read(const IConfigPtr& config, const xml::Origins& origins, const Overrides& overrides = {}) {
  S object = S();
  internal::readStruct(internal::structOf<S>, &object, config, &origins, overrides);
  return object;
}
template <class S>
S read(const IConfigPtr& config, const Overrides& overrides = {}) {
  S object = S();
  internal::readStruct(internal::structOf<S>, &object, config, nullptr, overrides);
  return object;
}

// The problem in one line, "broker.xml:5:31: error: broker.port: 0 is not in 1 to 65535
// [out-of-range]", with the file as seen from the current directory when it is below it.
ZU_EXPORT std::string toText(const xml::Problem& problem);

}  // namespace service::util::config::bind

#endif
