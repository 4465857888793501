// Walks two configurations at once: what occurs under the same name and index on both sides belongs
// together, whatever files it came from.
#ifndef TOOLS_ZUCONFIG_SHARED_COMPARISON_HPP
#define TOOLS_ZUCONFIG_SHARED_COMPARISON_HPP

#include <cstdint>
#include <string>

#include "service/util/config/IConfig.hpp"

namespace zuconfig {

using service::util::config::IConfigPtr;

// A value or section that is in one of the configurations or in both. Valid during a call only.
struct Compared {
  const IConfigPtr inA;  // what holds it there; null when nothing does
  const IConfigPtr inB;
  const std::string& name;
  const std::uint32_t index;
  const std::uint32_t count;  // the larger one
  const std::string& path;    // as a selector
};

class ComparisonVisitor {
 public:
  virtual ~ComparisonVisitor() = default;

  // The value of a side without one is anything.
  virtual void value(const Compared& at, const std::string& valueA, const std::string& valueB) = 0;
  virtual void enterSection(const Compared& at) = 0;
  virtual void leaveSection() {}
};

// In the order of a visit.
void compare(const IConfigPtr& a, const IConfigPtr& b, ComparisonVisitor& visitor);

}  // namespace zuconfig

#endif
