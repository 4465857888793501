// How the command ends: its exit codes, and the exception that carries one of them up to main().
#ifndef TOOLS_ZUCONFIG_SHARED_FAILURE_HPP
#define TOOLS_ZUCONFIG_SHARED_FAILURE_HPP

#include <stdexcept>
#include <string>

namespace zuconfig {

// What the process ends with; scripts rely on the numbers.
enum ExitCode : int {
  FINE = 0,
  NO = 1,          // not found, different, or errors were found
  USAGE = 2,       // wrong usage or a malformed selector
  NOT_LOADED = 3,  // a file cannot be loaded, or the output cannot be written
};

// Ends the command: the text goes to standard error unless it is empty, the code to the caller.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code(code) {}

  const ExitCode code;
};

}  // namespace zuconfig

#endif
