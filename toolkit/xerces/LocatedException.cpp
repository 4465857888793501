#include "xerces/LocatedException.hpp"

#include <utility>

namespace xerces {

LocatedException::LocatedException(std::string fileName, Position where, std::string what)
    : file(std::move(fileName)), position(where), reason(std::move(what)) {
  *this << "XMLParser: in file \"" << file << "\" at line " << position.line << " at column "
        << position.column << ": " << reason;
}

LocatedException::~LocatedException() = default;

}  // namespace xerces
