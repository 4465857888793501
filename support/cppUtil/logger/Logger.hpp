// A log message in the making: text is inserted as into a stream, then handed to the C utility
// library's logger at the level given at construction.
//
// Support layer. A Logger belongs to one thread at a time; several may log at once.
#ifndef CPPUTIL_LOGGER_LOGGER_HPP
#define CPPUTIL_LOGGER_LOGGER_HPP

#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>

#include "cppUtil/export.hpp"

namespace cppUtil::logger {

class ZU_EXPORT Logger {
 public:
  // level: 0 fatal, 1 error, 2 warning, 3 info, 4 debug.
  explicit Logger(std::uint32_t level) : level(level) {}

  // Appends as an insertion into a stream does. A null C string appends nothing.
  template <class T>
  Logger& operator<<(const T& value) {
    stream << value;
    stream.clear();  // one insertion that fails must not silence those that follow
    return *this;
  }
  Logger& operator<<(std::ostream& (*manipulator)(std::ostream&)) {
    stream << manipulator;
    return *this;
  }

  // The text composed so far.
  std::string str() const { return stream.str(); }

  // Logs the text composed so far and empties it, so that the next message can be composed. Throws
  // cppUtil::err::Exception with the platform's code and record when the platform refuses the
  // message; the text is then kept.
  void log();

 private:
  std::ostringstream stream{std::ios_base::out};
  std::uint32_t level;
};

}  // namespace cppUtil::logger

#endif
