// The texts that were in force last, in a file that is taken when the others do not load.
#ifndef SRC_LIVE_LASTGOOD_HPP
#define SRC_LIVE_LASTGOOD_HPP

#include <string>

#include "live/Reading.hpp"

namespace service::util::config::live {

class LastGood {
 public:
  // path: of the file; empty for none. A relative one starts in the current directory as it is now.
  explicit LastGood(const std::string& path);

  // Puts what reading has from files in place of what the file holds, unless that is the same. Only
  // the owner of the process may read the file, since there may be secrets in it. Throws
  // std::exception.
  void store(const Reading& reading) const;

  const std::string& getPath() const { return path; }

 private:
  std::string path;
};

}  // namespace service::util::config::live

#endif
