// The problems that a reading finds.
#ifndef SRC_BIND_FINDINGS_HPP
#define SRC_BIND_FINDINGS_HPP

#include <string>
#include <vector>

#include "bind/Precedence.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::bind::internal {

// That a setting is there already, at that place in the same file.
std::string alreadyThere(const Place& first);

// Throws code 5 with all problems, a line each.
[[noreturn]] void refuse(const std::vector<xml::Problem>& problems, const char* function);

class Findings {
 public:
  explicit Findings(const Precedence& precedence) : precedence(precedence) {}

  // path: of the setting, which begins the message.
  void add(xml::Severity severity, const char* rule, const std::string& path,
           const std::string& message, const Place& place);

  std::size_t errors() const { return errorCount; }

  // Appends those that were added to problems, by file in the order of the load, then by line; what
  // is in no file comes last. Answers whether none is an error.
  bool take(std::vector<xml::Problem>& problems);

 private:
  struct Found {
    std::size_t order;
    xml::Problem problem;
  };

  const Precedence& precedence;
  std::vector<Found> found;
  std::size_t errorCount = 0;
};

}  // namespace service::util::config::bind::internal

#endif
