// Watches a load: it is called for every file, section and property, in the order in which they
// enter the configuration, and for every look-up.
//
// Made for tools that explain a configuration; Origins is one. A load without an observer does none
// of the work behind these calls. All calls are made on the thread that loads.
#ifndef SERVICE_UTIL_CONFIG_XML_OBSERVER_HPP
#define SERVICE_UTIL_CONFIG_XML_OBSERVER_HPP

#include <cstdint>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/xml/Location.hpp"
#include "service/util/config/xml/create.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace service::util::config::xml {

class ZU_EXPORT Observer {
 public:
  // One reading of a file; a file that is included twice is two of them.
  struct File {
    std::string name;  // as it is written in the call of create or in the include
    std::string path;  // what the search path made of it

    // The entry of the search path that path was found in. Empty means the current directory, or
    // that name is absolute.
    std::string directory;

    // Files of the same name in later directories of the search path, in its order. None of
    // them is path itself under another name.
    std::vector<locator::ConfigLocator::Match> shadowed;

    Location include;                // of the include; without a file for the top-level file
    const File* includer = nullptr;  // the file that holds the include
  };

  virtual ~Observer();

  // Each does nothing unless overridden. The arguments are valid during the call only. When one
  // throws, the load fails: the caller of create gets a cppUtil::err::Exception unchanged, a
  // std::exception as code 6 with its what(), anything else as code 7. After a failure, of the load
  // or of the observer, there are no further calls.

  // name was looked up along the search path, as it is during this call; path is what was found,
  // empty when it is nothing.
  virtual void fileLookedUp(const std::string& name, const std::string& path);

  // A document brings in a file other than by an include, as an entity or as a schema. The file
  // need not be there.
  virtual void fileReferred(const std::string& path);

  // A file is about to be parsed.
  virtual void fileEntered(const File& file);

  // section was added to parent as the index-th of its name; its content follows.
  virtual void sectionAdded(const IConfigPtr& parent, const std::string& name, std::uint32_t index,
                            const IConfigPtr& section, const Location& location);

  // A value was added to config as the index-th of its name.
  virtual void propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                             const Location& location);

  // All that file and its includes hold was added.
  virtual void fileLeft(const File& file);
};

// Loads like the create without an observer, and tells the observer about it.
ZU_EXPORT IConfigPtr create(const std::string& file, const SchemeList& schemes, bool validate,
                            Observer& observer);

}  // namespace service::util::config::xml

#endif
