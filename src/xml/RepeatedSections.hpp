// Finds sections that a file writes itself besides those of the same name that its includes bring
// to the same place. The included ones come first, so a selector without an index takes them, and
// what looks like a change of the included section is one more section.
//
// Files beside each other may well bring sections of one name: a list is made that way.
#ifndef SRC_XML_REPEATEDSECTIONS_HPP
#define SRC_XML_REPEATEDSECTIONS_HPP

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "xml/documentCheck.hpp"

namespace service::util::config::xml::internal {

// What a file, read in one order of directories, adds to the place where it is included.
struct Part {
  std::string path;
  const std::vector<std::vector<NamedSection>>* parents = nullptr;  // of its document
  std::vector<const Part*> includes;                                // in its root element
  std::size_t readings = 1;  // how many files a load reads for it
};

class RepeatedSections {
 public:
  struct Repeat {
    std::size_t depth;  // of the file with the section that comes later; the top-level file has 0
    const NamedSection* own;
    Location included;
  };

  // A file is read that stands in the given parent of the file entered last. Parts are kept by
  // reference.
  std::vector<Repeat> enter(const Part& part, std::size_t parent);
  void leave();

  // The same for a part that was left before, with all that it includes.
  std::vector<Repeat> again(const Part& part, std::size_t parent);

 private:
  struct Own {
    std::size_t depth;
    const NamedSection* section;
  };
  // By name, the sections that the open files have written for one place, outermost file first.
  using Written = std::unordered_map<std::string, std::vector<Own>>;
  struct Open {
    const Part* part;
    std::shared_ptr<Written> root;  // where its root element's sections go
    std::size_t parent;             // where the last include stood
    std::shared_ptr<Written> inner;
  };

  std::shared_ptr<Written> writtenIn(std::size_t parent);
  static void find(std::vector<Repeat>& repeats, const Part& part, const Written& written);

  std::vector<Open> open;
  std::size_t looks = 0;  // at parts that came again
};

}  // namespace service::util::config::xml::internal

#endif
