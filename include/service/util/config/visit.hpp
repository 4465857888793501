// Enumeration: what a configuration holds, for callers that do not know its names.
//
// Stands on the model. Threads: as for reading a configuration; nothing may be added to it during a
// visit.
#ifndef SERVICE_UTIL_CONFIG_VISIT_HPP
#define SERVICE_UTIL_CONFIG_VISIT_HPP

#include <cstdint>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"

namespace service::util::config {

// The names of all properties of config, and of all its sections: each name once, in byte order.
// Together with the counts of IConfig they show the whole content.
//
// Every function below that takes a configuration throws cppUtil::err::Exception: code 1 when it is
// null, code 5 when its class is not derived from internal::Config, because IConfig alone cannot
// list its names.
ZU_EXPORT std::vector<std::string> getPropertyNames(const IConfigPtr& config);
ZU_EXPORT std::vector<std::string> getSectionNames(const IConfigPtr& config);

// Whether a selector can spell the name: it consists of ASCII letters and digits.
ZU_EXPORT bool isSelectable(const std::string& name);

// The name as a visit spells it in paths: as it is when it is selectable, otherwise in double
// quotes, with the escapes of JSON for double quotes, backslashes, control characters and what else
// acts on a terminal or changes the direction of writing.
ZU_EXPORT std::string spellName(const std::string& name);

// The path of what name and index mean in the section at path, as a visit spells it: with the index
// when the name occurs more than once there. An empty path is that of the configuration.
ZU_EXPORT std::string spellPath(std::string path, const std::string& name, std::uint32_t index,
                                std::uint32_t count);

// The value or section that a visit is at. The references are valid during the call only.
struct Visited {
  const IConfigPtr& parent;  // the configuration or section that holds it
  const std::string& name;   // of the value or section
  std::uint32_t index;       // among those of the name, from 0
  std::uint32_t count;       // how often the name occurs in parent

  // The way to it from where the visit began, as a selector: "network.interface[1].address[2]". A
  // name that occurs once in its section has no index; one that repeats always has, be it 0.
  const std::string& path;

  // For a value: whether a Select can be made of path. It cannot when a name on the path is not
  // selectable, nor for a property of the configuration that is visited itself. For a section:
  // whether a Select can be made of path, a dot and the name of a property.
  bool selectable;
};

// What a visit calls; each does nothing unless overridden.
class ZU_EXPORT Visitor {
 public:
  virtual ~Visitor();

  // Called for each value.
  virtual void property(const Visited& visited, const std::string& value);

  // Called before the content of section; false leaves that content out.
  virtual bool enterSection(const Visited& visited, const IConfigPtr& section);

  // Called for each section that was entered, after its content.
  virtual void leaveSection(const Visited& visited, const IConfigPtr& section);
};

// Visits everything below config: in each section first the properties, then the sections; names in
// byte order, one name by index. What the visitor throws ends the visit and reaches the caller
// unchanged. A deep tree does not need a deep stack.
ZU_EXPORT void visit(const IConfigPtr& config, Visitor& visitor);

}  // namespace service::util::config

#endif
