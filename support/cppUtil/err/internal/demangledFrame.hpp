// The rewriting of one symbolic frame, apart from the stack walk so that it can be tested.
#ifndef CPPUTIL_ERR_INTERNAL_DEMANGLEDFRAME_HPP
#define CPPUTIL_ERR_INTERNAL_DEMANGLEDFRAME_HPP

#include <string>

namespace cppUtil::err::internal {

// Replaces the symbol in "module(symbol+offset) [address]" by its demangled form. A text without
// '(' or '+' comes back unchanged; a symbol that does not demangle is kept.
std::string demangledFrame(const std::string& frame);

}  // namespace cppUtil::err::internal

#endif
