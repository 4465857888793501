// A small tree of named sections with single-valued properties, independent of IConfig.
//
// Unlike in a configuration, a property has exactly one value, the first that is set, and the
// children of one section have different names. Names are compared byte by byte.
//
// Failures are cppUtil::err::Exception with an empty message. Threads: any number of threads may
// read a section while none changes it.
#ifndef SERVICE_UTIL_CONFIG_INTERNAL_SECTION_HPP
#define SERVICE_UTIL_CONFIG_INTERNAL_SECTION_HPP

#include <map>
#include <memory>
#include <string>

#include "cppUtil/export.hpp"

namespace service::util::config::internal {

class Section;
// Shared ownership of a section, which keeps its children alive, but not its parent.
using SectionPtr = std::shared_ptr<Section>;

class ZU_EXPORT Section {
 public:
  // Throws code 1 when name is empty.
  explicit Section(const std::string& name);
  ~Section();

  // Makes a section that stands alone. Throws code 1 when name is empty.
  static SectionPtr createSection(const std::string& name);

  // Makes a section as a child of parent, which shares its ownership. Throws code 1 when name is
  // empty and DUPLICATE_SECTION (0x3000002) when parent has a child of that name; parent is then
  // unchanged.
  static SectionPtr createSection(const std::string& name, Section& parent);

  // Its name, which never changes.
  std::string getName() const;

  // The child called name; an empty pointer when there is none.
  SectionPtr getSection(const std::string& name) const;

  // Stores value, unless the property already has one: then nothing changes. Names and values may
  // be empty.
  void setProperty(const std::string& name, const std::string& value);

  // The value of the property name. When there is none: throws NOT_FOUND (0x3000001) if it is
  // required, otherwise answers with an empty string.
  std::string getProperty(const std::string& name, bool required) const;

 private:
  std::string name;  // never empty
  std::map<std::string, SectionPtr> sections;
  std::map<std::string, std::string> properties;
};

}  // namespace service::util::config::internal

#endif
