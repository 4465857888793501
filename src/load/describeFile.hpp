// Describes to an observer a file that a look-up has found.
#ifndef SRC_LOAD_DESCRIBEFILE_HPP
#define SRC_LOAD_DESCRIBEFILE_HPP

#include "service/util/config/xml/Observer.hpp"
#include "service/util/locator/SearchOrder.hpp"

namespace service::util::config::xml::internal {

// name: what was looked up in that order. path: what was found. include, includer: as in the
// description.
Observer::File describeFile(locator::SearchOrder& order, const std::string& name,
                            const std::string& path, const Location& include,
                            const Observer::File* includer);

}  // namespace service::util::config::xml::internal

#endif
