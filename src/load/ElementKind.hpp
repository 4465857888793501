// The elements of configuration documents that mean something to a load.
#ifndef SRC_LOAD_ELEMENTKIND_HPP
#define SRC_LOAD_ELEMENTKIND_HPP

#include <cstdint>

namespace service::util::config::xml::internal {

enum class ElementKind : std::uint8_t { CONFIG, PROPERTY, INCLUDE, SECTION };

}  // namespace service::util::config::xml::internal

#endif
