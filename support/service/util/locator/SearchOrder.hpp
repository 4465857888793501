// The directories that look-ups try, each once, while files are read that put their own directories
// in front: what stands where along the path, without asking for the whole path each time.
//
// Directories are told apart by what they are, not by how they are spelled: files that include each
// other through ".." spell the same few in ever longer ways. Made for one load or check, during
// which nobody else changes the search path. Internal to the library; one thread at a time.
#ifndef SERVICE_UTIL_LOCATOR_SEARCHORDER_HPP
#define SERVICE_UTIL_LOCATOR_SEARCHORDER_HPP

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "service/util/locator/ConfigLocator.hpp"

namespace service::util::locator {

// What a file or directory is, however it is named.
using Identity = std::pair<dev_t, ino_t>;

// Of what is not there, one of its own for each path.
Identity identityOf(const std::string& path);

class SearchOrder {
 public:
  // The search path as it is now.
  SearchOrder();

  // Directories go to the front and leave it, last in, first out.
  void push(const std::string& directory);
  void pop();

  // A number for the order of the directories: equal for equal orders.
  std::size_t getState() const { return pushed.empty() ? 0 : pushed.back().state; }

  // As ConfigLocator::findAll does.
  std::vector<ConfigLocator::Match> findAll(const std::string& name);

  // The full names of the first directories, most of them; count is set to how many there are.
  std::vector<std::string> list(std::size_t most, std::size_t& count) const;

 private:
  // An entry of the search path. Its spelling is kept, because that is what callers are told.
  struct Entry {
    const std::string* spelling;
    std::uint32_t directory;  // its number
    std::size_t state;        // of the entries up to this one, from the back of the path
  };
  struct Push {
    std::size_t place;           // of the first entry that it replaced
    std::vector<Entry> entries;  // that it replaced
  };

  std::uint32_t numberOf(const std::string& spelling);
  void add(const std::string* spelling, std::uint32_t directory);
  // Calls visit(entry) from the front until it answers true.
  template <class Visit>
  void forEach(const Visit& visit) const;

  std::unordered_map<std::string, std::uint32_t> numbers;  // of directories, by spelling
  std::map<Identity, std::uint32_t> known;
  std::vector<std::string> names;  // by number: the shortest full name; empty for what is not there
  std::vector<char> isPushed;      // by number

  std::vector<Entry> initial;  // front first, each directory once
  std::vector<Entry> pushed;   // front last, each directory once
  std::vector<Push> pushes;
  std::map<std::pair<std::size_t, std::uint32_t>, std::size_t> states;  // by the rest and the front
};

}  // namespace service::util::locator

#endif
