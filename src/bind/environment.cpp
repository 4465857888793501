#include <algorithm>
#include <iterator>

#include "bind/Description.hpp"

namespace service::util::config::bind::internal {

namespace {

std::string extendedBy(std::string variable, const std::string& name) {
  const auto inCapitals = [](char c) {
    if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ? c : '_';
  };
  std::transform(name.begin(), name.end(), std::back_inserter(variable), inCapitals);
  return variable;
}

}  // namespace

std::string variableOf(const Entry& setting, const std::string& prefix) {
  if (prefix.empty() || !setting.variable.empty()) return setting.variable;
  return extendedBy(prefix, setting.name);
}

std::string prefixBelow(const Description& below, const std::string& prefix,
                        const std::string& name) {
  if (!below.variablePrefix.empty()) return below.variablePrefix;
  return prefix.empty() ? "" : extendedBy(prefix, name) + "_";
}

std::vector<std::string> variablesOf(const Description& description, const std::string& prefix) {
  std::vector<std::string> variables;
  for (const auto& row : description.rows) {
    if (row->form == Holder::SECTION) {
      const Description& below = row->below();
      for (auto& variable : variablesOf(below, prefixBelow(below, prefix, row->name))) {
        variables.push_back(std::move(variable));
      }
    } else if (row->isSetting()) {
      auto variable = variableOf(*row, prefix);
      if (!variable.empty()) variables.push_back(std::move(variable));
    }
  }
  return variables;
}

}  // namespace service::util::config::bind::internal
