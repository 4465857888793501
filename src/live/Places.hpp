// What a load depends on, as it was just before it was read: every file, every link and directory
// on the way to one, and every place where a file was looked for and not found.
//
// What is noted here decides whether files have changed; whatever else tells of changes is only a
// reason to look.
#ifndef SRC_LIVE_PLACES_HPP
#define SRC_LIVE_PLACES_HPP

#include <sys/stat.h>

#include <chrono>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace service::util::config::live {

// What stands in a place.
struct Identity {
  // Of the place itself, not of what a link there leads to.
  static Identity of(const std::string& path);

  bool operator==(const Identity& other) const;
  bool operator!=(const Identity& other) const { return !(*this == other); }

  mode_t mode = 0;  // 0 when there is nothing
  dev_t device = 0;
  ino_t inode = 0;

  // Not of a directory, in which others may do what they like.
  off_t size = 0;
  timespec modified = {};
  timespec changed = {};
};

class Places {
 public:
  // What of a directory is noted.
  struct Directory {
    std::set<std::string> names;
    bool hasFiles = false;  // or places for them; otherwise they are but ways to others
  };

  // Notes all on the way to path, unless it is noted already, and answers whether a file that can
  // be read stands there. A relative path starts in the current directory.
  bool add(const std::string& path);

  // The places as they are now, in their order; equal to noted() when nothing has changed.
  std::vector<Identity> look() const;
  std::vector<Identity> noted() const;

  // Whether one of the files was so new when it was noted that it could be written again without
  // another time of change: the clock of a file system stands still for some milliseconds.
  bool hasNew() const { return isNew; }
  static constexpr std::chrono::milliseconds newness{20};

  const std::map<std::string, Directory>& getDirectories() const { return directories; }

  bool operator==(const Places& other) const { return identities == other.identities; }

 private:
  const Identity& note(const std::string& directory, const std::string& name);

  std::map<std::string, Identity> identities;    // by path, without links and ".." in it
  std::map<std::string, Directory> directories;  // by path
  bool isNew = false;
};

}  // namespace service::util::config::live

#endif
