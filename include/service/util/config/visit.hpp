// Enumeration: what a configuration holds, without knowing its names.
//
// Stands on the model and is the counterpart of IConfig, which answers for names that the caller
// knows. Threads: as for reading a configuration; nothing may be added to it during a visit.
#ifndef SERVICE_UTIL_CONFIG_VISIT_HPP
#define SERVICE_UTIL_CONFIG_VISIT_HPP

#include <cstdint>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"

namespace service::util::config {

// The names that have at least one value, and those that have at least one section, each once, in
// byte order. Together with the counts of IConfig they show the whole content.
//
// All functions below throw cppUtil::err::Exception with code 1 when config is null, and with code
// 5 when it is not of this library's making: IConfig alone does not tell its names.
ZU_EXPORT std::vector<std::string> getPropertyNames(const IConfigPtr& config);
ZU_EXPORT std::vector<std::string> getSectionNames(const IConfigPtr& config);

// Whether a selector can spell the name: it consists of ASCII letters and digits.
ZU_EXPORT bool isSelectable(const std::string& name);

// The name as a visit spells it in paths: as it is when it is selectable, otherwise in double
// quotes, with the escapes of JSON for double quotes, backslashes and control characters.
ZU_EXPORT std::string spellName(const std::string& name);

// A value or a section as a visit comes by. The references are valid during the call only.
struct Visited {
  const IConfigPtr& parent;  // the configuration or section that holds it
  const std::string& name;
  std::uint32_t index;
  std::uint32_t count;  // how often the name occurs in parent

  // The way to it from where the visit began, as a selector: "network.interface[1].address[2]". A
  // name that occurs once in its section has no index; one that repeats always has, be it 0.
  const std::string& path;

  // Whether a Select can be made of path (for a section: of path and a property below it). Not when
  // a name on the way is not selectable, nor for the properties of the configuration itself.
  bool selectable;
};

// What a visit calls; each does nothing unless overridden.
class ZU_EXPORT Visitor {
 public:
  virtual ~Visitor();

  virtual void property(const Visited& visited, const std::string& value);

  // Called before the content of section; false leaves that content out.
  virtual bool enterSection(const Visited& visited, const IConfigPtr& section);

  // Called for each section that was entered, after its content.
  virtual void leaveSection(const Visited& visited, const IConfigPtr& section);
};

// Visits everything below config: of each section first the properties, then the sections; names in
// byte order, occurrences of a name by index. What the visitor throws ends the visit and reaches
// the caller unchanged. However deep the tree, the stack is not.
ZU_EXPORT void visit(const IConfigPtr& config, Visitor& visitor);

}  // namespace service::util::config

#endif
