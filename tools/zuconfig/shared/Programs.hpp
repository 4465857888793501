// The programs that --for names: their settings, as the files that they installed describe them,
// and what these say of a configuration.
#ifndef TOOLS_ZUCONFIG_SHARED_PROGRAMS_HPP
#define TOOLS_ZUCONFIG_SHARED_PROGRAMS_HPP

#include <string>
#include <vector>

#include "service/util/config/bind/internal/survey.hpp"
#include "shared/options.hpp"

namespace zuconfig {

using service::util::config::IConfigPtr;
using service::util::config::bind::Overrides;
using service::util::config::bind::Settings;
using service::util::config::bind::internal::Described;
using service::util::config::bind::internal::Survey;
using service::util::config::bind::internal::Surveyed;
using service::util::config::xml::Origins;
using service::util::config::xml::Problem;

struct Program {
  std::string name;
  Settings settings;
};

// What the programs make of a configuration.
struct Judgement {
  bool isFine = true;
  std::vector<Problem> problems;
  std::vector<Survey> surveys;  // of each program
};

class Programs {
 public:
  // Loads the descriptions. Throws Failure.
  explicit Programs(const ProgramOptions& options);

  const std::vector<Program>& get() const { return programs; }
  bool isEmpty() const { return programs.empty(); }
  // "gateway and hmi".
  std::string names() const;

  // The names that settings with secrets have or had; none when they may be shown.
  const std::vector<std::string>& secretNames() const { return secrets; }

  // Lives no longer than the programs.
  Judgement judge(const IConfigPtr& config, const Origins& origins) const;

  // What only the programs can judge, in one line; empty when there is nothing.
  std::string leftToThem() const;

 private:
  std::vector<Program> programs;
  Overrides overrides;
  std::vector<std::string> secrets;
};

bool isSecret(const Described& described);

// The last name in a path.
std::string lastName(const std::string& path);

}  // namespace zuconfig

#endif
