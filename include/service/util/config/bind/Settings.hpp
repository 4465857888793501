// What a program says about its settings, apart from its types: for judging a configuration without
// the program, and for everything else that is made from the description.
//
//   std::cout << bind::Settings::of<Gateway>().toXml("gateway");          // in the program
//   const auto settings = bind::Settings::load("/usr/share/zu/settings/gateway.xml");
//   const bool isFine = settings.check(config, origins, {}, problems);    // elsewhere
//
// The file is a configuration as any other: its sections "setting" describe one setting, list or
// section each. It is the same for the same description. What only the program knows is not in it:
// the checks across fields, and how the text of a type of its own is read.
//
// Values of Settings never change, and can be used by several threads. All throw
// cppUtil::err::Exception.
#ifndef SERVICE_UTIL_CONFIG_BIND_SETTINGS_HPP
#define SERVICE_UTIL_CONFIG_BIND_SETTINGS_HPP

#include <memory>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/bind/Overrides.hpp"
#include "service/util/config/bind/tables.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::bind {

namespace internal {

struct Store;

}  // namespace internal

class ZU_EXPORT Settings {
 public:
  // Those of the program's own struct, with the defaults of an S as it is initialised. Throws code
  // 5 with all that is wrong with the description.
  template <class S>
  static Settings of() {
    const S object = S();
    return of(internal::structOf<S>, &object);
  }

  // Those of an exported file, a path as the system takes it. Throws as xml::create does, and code
  // 5 with a line for each problem, its file and line in front, when the file describes no
  // settings.
  static Settings load(const std::string& file);

  // The text of the file for a program of that name. The defaults of secrets are left out. Throws
  // code 5 when a text of the description is no UTF-8.
  std::string toXml(const std::string& name) const;

  // How to judge a configuration.
  struct Options {
    xml::Severity unknown = xml::Severity::ERROR;  // of what the description does not name
    bool takesEnvironment = false;                 // whether variables of this process count
  };

  // Appends to problems what bind::read finds in config, which these origins belong to, and answers
  // whether none of it is an error. Origins without a load are for configurations made in memory.
  bool check(const IConfigPtr& config, const xml::Origins& origins, const Overrides& overrides,
             std::vector<xml::Problem>& problems, const Options& options) const;
  bool check(const IConfigPtr& config, const xml::Origins& origins, const Overrides& overrides,
             std::vector<xml::Problem>& problems) const {
    return check(config, origins, overrides, problems, Options());
  }

  // For the library.
  const internal::Store& get() const { return *store; }

 private:
  explicit Settings(std::shared_ptr<const internal::Store> store) : store(std::move(store)) {}
  static Settings of(const internal::Struct& type, const void* object);

  std::shared_ptr<const internal::Store> store;
};

}  // namespace service::util::config::bind

#endif
