// Which file includes which, also when some are missing or include each other in a circle.
#ifndef TOOLS_ZUCONFIG_SHARED_INCLUDEGRAPH_HPP
#define TOOLS_ZUCONFIG_SHARED_INCLUDEGRAPH_HPP

#include <sys/stat.h>

#include <list>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "service/util/config/xml/check.hpp"
#include "shared/FileNames.hpp"

namespace zuconfig {

// One include, or the top-level file.
struct Node {
  enum Kind { FILE, AGAIN, CYCLE, MISSING };

  Kind kind = FILE;
  std::string name;       // as it is written
  std::string path;       // empty when it is missing
  std::string directory;  // as an Observer::File has it
  std::vector<service::util::locator::ConfigLocator::Match> shadowed;
  Location include;
  std::vector<const Node*> includes;
};

const char* remarkOf(Node::Kind kind);

// Built while a check reads the files. What a file includes is told the first time only.
class IncludeGraph : public service::util::config::xml::Observer {
 public:
  void fileEntered(const File& file) override;
  void fileLeft(const File& file) override;

  // Adds the files that are not there to those that include them.
  void addMissing(const std::vector<service::util::config::xml::Problem>& problems);

  // Null when the top-level file was not found.
  const Node* root() const { return nodes.empty() ? nullptr : &nodes.front(); }
  const std::list<Node>& all() const { return nodes; }

 private:
  using Identity = std::pair<dev_t, ino_t>;
  using Identities = std::multiset<Identity>;

  // A file that is being read, as it was when it was entered: it may be another one when it is
  // left.
  struct Open {
    Node* node;
    Identities::iterator identity;  // in openFiles; its end when the file was gone already
  };

  static std::optional<Identity> identityOf(const std::string& path);

  std::list<Node> nodes;   // in the order of reading
  std::vector<Open> open;  // outermost first
  Identities openFiles;
  std::set<Identity> seen;
};

// A file of the graph, however often it is included.
struct ListedFile {
  std::string name;                   // for the eye
  std::vector<const Node*> nodes;     // its inclusions
  std::vector<std::size_t> includes;  // the numbers of files in the list, each once
};

// The files in the order in which they are read first; those that are missing come last.
std::vector<ListedFile> listFiles(const IncludeGraph& graph, const FileNames& names);

}  // namespace zuconfig

#endif
