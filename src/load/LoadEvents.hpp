// Tells the observer of a load what happens. Knows which file is being read; lives as long as the
// load.
#ifndef SRC_LOAD_LOADEVENTS_HPP
#define SRC_LOAD_LOADEVENTS_HPP

#include "cppUtil/fileName/getPath.hpp"
#include "cppUtil/internal/Position.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/locator/SearchOrder.hpp"

namespace service::util::config::xml::internal {

using cppUtil::internal::Position;

class LoadEvents {
 public:
  explicit LoadEvents(Observer& observer) : observer(observer) {}
  LoadEvents(const LoadEvents&) = delete;
  LoadEvents& operator=(const LoadEvents&) = delete;

  // include: where the include is that asked for name.
  void lookedUp(const std::string& name, const std::string& path, const Position& include) {
    lastInclude = include;
    observer.fileLookedUp(name, path);
  }
  void referred(const std::string& path) { observer.fileReferred(path); }

  // Runs read, which reads the file that path names, with its directory in front of the search
  // path. name: what was looked up last.
  template <class Read>
  void reading(const std::string& name, const std::string& path, const Read& read) {
    const Observer::File file = describe(name, path);
    observer.fileEntered(file);
    setCurrent(&file);
    order.push(cppUtil::fileName::getPath(path));
    read();
    order.pop();
    setCurrent(file.includer);
    observer.fileLeft(file);
  }

  // Both are called after the addition, the first before the content of section.
  void sectionAdded(const IConfigPtr& parent, const std::string& name, const IConfigPtr& section,
                    const Position& position);
  void propertyAdded(const IConfigPtr& config, const std::string& name, const Position& position);

 private:
  Observer::File describe(const std::string& name, const std::string& path);
  void setCurrent(const Observer::File* file);
  const Location& locationOf(const Position& position);

  Observer& observer;
  locator::SearchOrder order;
  const Observer::File* current = nullptr;
  Position lastInclude;
  Location location;  // reused, so that its file is copied once for each file
};

// Runs read, observed if there is an observer.
template <class Read>
void reading(LoadEvents* events, const std::string& name, const std::string& path,
             const Read& read) {
  if (events == nullptr) {
    read();
  } else {
    events->reading(name, path, read);
  }
}

}  // namespace service::util::config::xml::internal

#endif
