// Why a selector finds nothing: where the way ended, what is there instead, and what was meant.
#ifndef TOOLS_ZUCONFIG_SHARED_MISSING_HPP
#define TOOLS_ZUCONFIG_SHARED_MISSING_HPP

#include <string>
#include <vector>

#include "shared/Pattern.hpp"

namespace zuconfig {

// The sections on the way to what pattern names, as far as they are there and no wildcard leaves
// them open, outermost first.
std::vector<Match> sectionsOnTheWay(const IConfigPtr& config, const Pattern& pattern);

// For a pattern that matches nothing of the kind wanted: one sentence, with the nearest names.
std::string whyMissing(const IConfigPtr& config, const Pattern& pattern, Wanted wanted);

}  // namespace zuconfig

#endif
