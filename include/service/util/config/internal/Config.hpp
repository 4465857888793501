// The in-memory configuration, the only implementation of IConfig.
//
// Programs that build a configuration themselves start with std::make_shared<internal::Config>();
// everything else goes through IConfig, whose rules on errors and threads hold here.
//
// Invariants: no key of either map is empty, no vector in either map is empty, every child is a
// Config. Nothing is ever removed or reordered, so an index stays what it is.
#ifndef SERVICE_UTIL_CONFIG_INTERNAL_CONFIG_HPP
#define SERVICE_UTIL_CONFIG_INTERNAL_CONFIG_HPP

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "service/util/config/IConfig.hpp"
#include "service/util/config/Select.hpp"

namespace service::util::config::internal {

class ZU_EXPORT Config : public IConfig {
 public:
  Config() = default;

  void addProperty(const std::string& name, const std::string& value) override;
  IConfigPtr addSection(const std::string& name) override;
  std::uint32_t getSectionCount(const std::string& name) const override;
  IConfigPtr getSection(const std::string& name, std::uint32_t index) const override;
  std::uint32_t getPropertyCount(const std::string& name) const override;
  bool getProperty(const std::string& name, std::string& value, std::uint32_t index) const override;
  bool getProperty(const Select& select, std::string& value) const override;
  ~Config() override;

  // The names that have at least one value, and those that have at least one section, each once, in
  // byte order. Together with the counts they show the whole content.
  std::vector<std::string> getPropertyNames() const;
  std::vector<std::string> getSectionNames() const;

 private:
  friend class Contents;  // sees all of it at once

  ZU_NO_EXPORT const IConfigPtr& findSection(const std::string& name, std::uint32_t index) const;
  ZU_NO_EXPORT void leaveSections(std::vector<IConfigPtr>& left);

  // The order of std::less<std::string>. Most comparisons of a look-up end at the first byte, which
  // is compared in line.
  struct NameOrder {
    bool operator()(const std::string& left, const std::string& right) const {
      const auto first = static_cast<unsigned char>(left[0]);  // NUL for an empty name
      const auto second = static_cast<unsigned char>(right[0]);
      return first == second ? left < right : first < second;
    }
  };

  std::map<std::string, std::vector<std::string>, NameOrder> properties;
  std::map<std::string, std::vector<IConfigPtr>, NameOrder> sections;
};

}  // namespace service::util::config::internal

#endif
