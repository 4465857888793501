#include "bind/Together.hpp"

#include <algorithm>

#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

std::string unknownMessage(const std::vector<const Description*>& descriptions, bool isSetting,
                           const std::string& name) {
  const auto isOther = [&](const Description* description) {
    return description->find(!isSetting, name) != nullptr;
  };
  if (std::any_of(descriptions.begin(), descriptions.end(), isOther)) {
    return std::string("nothing reads this; it is a ") + (isSetting ? "section" : "property");
  }
  std::vector<std::string> names;
  for (const Description* description : descriptions) {
    for (std::string& known : description->names()) {
      if (std::find(names.begin(), names.end(), known) == names.end()) {
        names.push_back(std::move(known));
      }
    }
  }
  return "nothing reads this" +
         cppUtil::internal::didYouMean(cppUtil::internal::nearest(name, names));
}

void Together::enter(const IConfigPtr& part, const Description& description, bool isOpen) {
  Look& look = looks[part.get()];
  look.descriptions.push_back(&description);
  look.isOpen = isOpen;
}

void Together::add(const Occurrence& unknown, const std::string& path, const Place& place) {
  const auto key =
      std::make_tuple(unknown.part->get(), unknown.value != nullptr, *unknown.name, unknown.index);
  ++unknowns.emplace(key, Unknown{path, place, 0}).first->second.count;
}

void Together::addOverride(std::uint32_t number, const std::string& path, const std::string& reason,
                           const Place& place) {
  ++overrides.emplace(number, Override{path, reason, place, 0}).first->second.count;
}

void Together::tell(std::size_t programs, xml::Severity severity, Findings& findings) const {
  for (const auto& [key, unknown] : unknowns) {
    const auto& [part, isSetting, name, index] = key;
    const Look& look = looks.at(part);
    if (unknown.count < look.descriptions.size()) continue;
    if (look.isOpen && look.descriptions.size() == 1) continue;
    findings.add(severity, "unknown-setting", unknown.path,
                 unknownMessage(look.descriptions, isSetting, name), unknown.place);
  }
  for (const auto& [number, override] : overrides) {
    if (override.count < programs) continue;
    findings.add(xml::Severity::ERROR, "unknown-setting", override.path, override.reason,
                 override.place);
  }
}

}  // namespace service::util::config::bind::internal
