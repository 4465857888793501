// What descriptions do not name: of one, or of several programs that read the same configuration.
#ifndef SRC_BIND_TOGETHER_HPP
#define SRC_BIND_TOGETHER_HPP

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "bind/Description.hpp"
#include "bind/Findings.hpp"

namespace service::util::config::bind::internal {

// Why a setting or a section is unknown to all of the descriptions.
std::string unknownMessage(const std::vector<const Description*>& descriptions, bool isSetting,
                           const std::string& name);

// Several programs read one after the other; what one of them knows is known. Where several of them
// look, their names together are all that there is, and openness does not count.
class Together {
 public:
  // A program looks into part, as description says.
  void enter(const IConfigPtr& part, const Description& description, bool isOpen);
  // It does not know what is there.
  void add(const Occurrence& unknown, const std::string& path, const Place& place);
  // It does not know what an override names.
  void addOverride(std::uint32_t number, const std::string& path, const std::string& reason,
                   const Place& place);

  // To be called when all have read. programs: how many.
  void tell(std::size_t programs, xml::Severity severity, Findings& findings) const;

 private:
  struct Look {
    std::vector<const Description*> descriptions;
    bool isOpen = false;
  };
  struct Unknown {
    std::string path;
    Place place;
    std::size_t count;  // of the programs that do not know it
  };
  struct Override {
    std::string path;
    std::string reason;
    Place place;
    std::size_t count;
  };

  std::map<const IConfig*, Look> looks;
  // By the section they are in, whether they are settings, name, and index.
  std::map<std::tuple<const IConfig*, bool, std::string, std::uint32_t>, Unknown> unknowns;
  std::map<std::uint32_t, Override> overrides;
};

}  // namespace service::util::config::bind::internal

#endif
