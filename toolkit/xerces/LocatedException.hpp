// A failure at a place in a file: the text that people read, and its parts for programs.
//
// It stays inside the library. An object belongs to one thread at a time.
#ifndef XERCES_LOCATEDEXCEPTION_HPP
#define XERCES_LOCATEDEXCEPTION_HPP

#include <string>

#include "cppUtil/internal/Position.hpp"
#include "xerces/Exception.hpp"

namespace xerces {

using cppUtil::internal::Position;

class LocatedException : public Exception {
 public:
  // The text is "XMLParser: in file "FILE" at line LINE at column COLUMN: REASON".
  LocatedException(std::string fileName, Position where, std::string what);
  LocatedException(const LocatedException&) = default;
  LocatedException& operator=(const LocatedException&) = default;
  ~LocatedException() override;

  const std::string& getFile() const { return file; }
  Position getPosition() const { return position; }
  const std::string& getReason() const { return reason; }

 private:
  std::string file;
  Position position;
  std::string reason;
};

}  // namespace xerces

#endif
