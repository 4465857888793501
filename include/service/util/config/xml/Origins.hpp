// Where the values and sections of a configuration came from.
//
//   Origins origins;
//   const IConfigPtr config = create("app.xml", {}, false, origins);
//   const Origins::Origin origin = origins.of(config->getSection("network", 0), "address", 0);
//
// It takes 32 bytes for each value and section; names and files are kept once. It also keeps the
// configuration alive, because it knows sections by their address. Threads: any number may ask once
// the load is over.
#ifndef SERVICE_UTIL_CONFIG_XML_ORIGINS_HPP
#define SERVICE_UTIL_CONFIG_XML_ORIGINS_HPP

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/xml/Observer.hpp"

namespace service::util::config::xml {

class ZU_EXPORT Origins : public Observer {
 public:
  // Where a value or section stands. file->include says where its file is included, and
  // file->includer in which file; so it goes on up to the top-level file, whose includer is null.
  struct Origin {
    const File* file = nullptr;  // owned by the Origins; null when nothing is known
    int line = 0;                // as in Location
    int column = 0;              // as in Location
  };

  Origins() = default;
  ~Origins() override;
  Origins(const Origins&) = delete;
  Origins& operator=(const Origins&) = delete;

  // The origin of the value, or of the section, that config holds under name at index. Unknown for
  // what is not there or was added after the load.
  Origin of(const IConfigPtr& config, const std::string& name, std::uint32_t index) const;
  Origin ofSection(const IConfigPtr& config, const std::string& name, std::uint32_t index) const;

  // All files in the order in which they were entered. Empty before a load.
  const std::deque<File>& getFiles() const { return files; }

  // Called by a load. One that begins forgets what the one before left.
  void fileEntered(const File& file) override;
  void sectionAdded(const IConfigPtr& parent, const std::string& name, std::uint32_t index,
                    const IConfigPtr& section, const Location& location) override;
  void propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                     const Location& location) override;
  void fileLeft(const File& file) override;

 private:
  enum Kind : std::uint32_t { VALUE, SECTION };
  struct Record {
    const IConfig* config;  // that holds the value or section
    Kind kind;
    std::uint32_t name;  // its number in names
    std::uint32_t index;
    std::uint32_t file;  // its number in files
    int line;
    int column;
  };

  ZU_NO_EXPORT void add(Kind kind, const IConfigPtr& config, const std::string& name,
                        std::uint32_t index, const Location& location);
  ZU_NO_EXPORT Origin find(Kind kind, const IConfigPtr& config, const std::string& name,
                           std::uint32_t index) const;

  IConfigPtr root;  // keeps every section that a record names
  std::deque<File> files;
  std::vector<std::uint32_t> open;  // files entered and not left, outermost first
  std::unordered_map<std::string, std::uint32_t> names;
  std::vector<Record> records;  // sorted when the load is over
};

}  // namespace service::util::config::xml

#endif
