// Tells the observer of a load what happens. Knows which file is being read; lives as long as the
// load.
#ifndef SRC_LOAD_LOADEVENTS_HPP
#define SRC_LOAD_LOADEVENTS_HPP

#include <xercesc/dom/DOMElement.hpp>

#include "service/util/config/xml/Observer.hpp"

namespace service::util::config::xml::internal {

class LoadEvents {
 public:
  explicit LoadEvents(Observer& observer) : observer(observer) {}
  LoadEvents(const LoadEvents&) = delete;
  LoadEvents& operator=(const LoadEvents&) = delete;

  // Runs read, which reads the file that path names. name: what was looked up along the search path
  // as it is now. include: the element that asked for it; null for the top-level file.
  template <class Read>
  void reading(const std::string& name, const std::string& path, const xercesc::DOMElement* include,
               const Read& read) {
    const Observer::File file = describe(name, path, include);
    observer.fileEntered(file);
    setCurrent(&file);
    read();
    setCurrent(file.includer);
    observer.fileLeft(file);
  }

  // Both are called after the addition, the first before the content of section.
  void sectionAdded(const IConfigPtr& parent, const std::string& name, const IConfigPtr& section,
                    const xercesc::DOMElement& element);
  void propertyAdded(const IConfigPtr& config, const std::string& name,
                     const xercesc::DOMElement& element);

 private:
  Observer::File describe(const std::string& name, const std::string& path,
                          const xercesc::DOMElement* include);
  void setCurrent(const Observer::File* file);
  const Location& locationOf(const xercesc::DOMElement& element);

  Observer& observer;
  const Observer::File* current = nullptr;
  Location location;  // reused, so that its file is copied once for each file
};

// Runs read, observed if there is an observer.
template <class Read>
void reading(LoadEvents* events, const std::string& name, const std::string& path,
             const xercesc::DOMElement* include, const Read& read) {
  if (events == nullptr) {
    read();
  } else {
    events->reading(name, path, include, read);
  }
}

}  // namespace service::util::config::xml::internal

#endif
