#include "service/util/config/internal/Section.hpp"

#include <cutil/cutil.h>

#include "cppUtil/err/Exception.hpp"
#include "model/releaseChildren.hpp"
#include "service/util/config/errorModule.hpp"

namespace service::util::config::internal {

namespace {

// Line numbers are fixed, one per cause; they do not follow the source.
[[noreturn]] void fail(std::uint32_t code, const char* function, int line) {
  throw cppUtil::err::Exception(code, 0, "src/section", function, line, "");
}

}  // namespace

Section::Section(const std::string& name) : name(name) {
  if (name.empty()) {
    fail(CU_MISSING_ARGUMENT, "service::util::config::internal::Section::Section(const string&)",
         78);
  }
}

// The children go before the properties.
Section::~Section() {
  releaseChildren<SectionPtr>(sections, [this](std::vector<SectionPtr>& left) {
    for (auto& [childName, child] : sections) left.push_back(std::move(child));
  });
}

SectionPtr Section::createSection(const std::string& name) {
  return std::make_shared<Section>(name);
}

SectionPtr Section::createSection(const std::string& name, Section& parent) {
  SectionPtr section = createSection(name);
  if (!parent.sections.emplace(name, section).second) {
    fail(DUPLICATE_SECTION,
         "static service::util::config::internal::SectionPtr "
         "service::util::config::internal::Section::createSection(const string&, "
         "service::util::config::internal::Section&)",
         70);
  }
  return section;
}

std::string Section::getName() const {
  return name;
}

SectionPtr Section::getSection(const std::string& name) const {
  const auto found = sections.find(name);
  return found == sections.end() ? nullptr : found->second;
}

void Section::setProperty(const std::string& name, const std::string& value) {
  properties.emplace(name, value);
}

std::string Section::getProperty(const std::string& name, bool required) const {
  const auto found = properties.find(name);
  if (found != properties.end()) return found->second;
  if (required) {
    fail(NOT_FOUND,
         "std::string service::util::config::internal::Section::getProperty(const string&, bool) "
         "const",
         34);
  }
  return "";
}

}  // namespace service::util::config::internal
