// The process-wide search path on which configuration files are found.
//
// Adapter over the locator library, without state or locks of its own. All threads share the path:
// a change is seen by the look-ups of every thread. Every operation throws cppUtil::err::Exception
// with the platform's code and error record when a platform call fails.
#ifndef SERVICE_UTIL_LOCATOR_CONFIGLOCATOR_HPP
#define SERVICE_UTIL_LOCATOR_CONFIGLOCATOR_HPP

#include <string>
#include <vector>

#include "cppUtil/export.hpp"

namespace service::util::locator {

class ZU_EXPORT ConfigLocator {
 public:
  // The full name of the first file called name along the path; empty when there is none.
  static std::string find(const std::string& name);

  // A file and the entry of the path that it was found in, as the entry was given.
  struct Match {
    std::string directory;  // as the entry was given; empty is the current directory
    std::string file;       // the full name, as find gives it
  };

  // The file that find returns, then the files of the same name in later directories, in the order
  // of the path. A file that several entries lead to is listed once, with the first of them. For an
  // absolute name the path is not used, and the directory is empty. When the platform does not tell
  // the entries of the path, the directory is empty too, and no further files are known.
  static std::vector<Match> findAll(const std::string& name);

  // Whether the platform tells the entries of the path. The bundled one does; another one may lack
  // the functions for it.
  static bool tellsEntries() noexcept;

  // The entries of the path at one moment, front first; the empty one stands for the current
  // directory. None when the platform does not tell them.
  static std::vector<std::string> getEntries();

  // Puts directory at the front of the path; the empty one stands for the current directory.
  static void prepend(const std::string& directory);

  // Takes the first entry equal to directory out of the path and tells whether there was one.
  static bool remove(const std::string& directory);
};

}  // namespace service::util::locator

#endif
