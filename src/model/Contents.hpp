// All that one section holds, seen where it is kept: for readers of whole configurations, which
// would look every name up otherwise. A configuration of a class derived from Config, which may
// answer differently, is copied by its own operations.
#ifndef SRC_MODEL_CONTENTS_HPP
#define SRC_MODEL_CONTENTS_HPP

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "service/util/config/internal/Config.hpp"

namespace service::util::config::internal {

class Contents {
 public:
  using Properties = std::map<std::string, std::vector<std::string>, Config::NameOrder>;
  using Sections = std::map<std::string, std::vector<IConfigPtr>, Config::NameOrder>;

  // Throws as getPropertyNames does.
  explicit Contents(const IConfigPtr& config);

  // Names in byte order; valid as long as this and the configuration.
  const Properties& properties() const { return *heldProperties; }
  const Sections& sections() const { return *heldSections; }

 private:
  struct Copy {
    Properties properties;
    Sections sections;
  };

  std::unique_ptr<Copy> copy;  // of a derived class
  const Properties* heldProperties = nullptr;
  const Sections* heldSections = nullptr;
};

}  // namespace service::util::config::internal

#endif
