// Standard input as a file that can be opened by name, once and again: a copy without a name of its
// own that is gone when the process ends, however it ends.
#ifndef TOOLS_ZUCONFIG_SHARED_SPOOL_HPP
#define TOOLS_ZUCONFIG_SHARED_SPOOL_HPP

#include <string>

namespace zuconfig {

class Spool {
 public:
  // Reads standard input to its end. Throws Failure.
  Spool();
  ~Spool();
  Spool(const Spool&) = delete;
  Spool& operator=(const Spool&) = delete;

  const std::string& getPath() const { return path; }

 private:
  int file;
  std::string path;
};

}  // namespace zuconfig

#endif
