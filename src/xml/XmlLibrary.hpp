// Holds the XML library initialised while it lives. Not from several threads at once.
#ifndef SRC_XML_XMLLIBRARY_HPP
#define SRC_XML_XMLLIBRARY_HPP

namespace service::util::config::xml::internal {

class XmlLibrary {
 public:
  // Throws when the XML library cannot be initialised: std::bad_alloc when there is no memory for
  // that, otherwise what is no exception of the XML library.
  XmlLibrary() { initialize(); }
  ~XmlLibrary() { terminate(); }
  XmlLibrary(const XmlLibrary&) = delete;
  XmlLibrary& operator=(const XmlLibrary&) = delete;

  // For those who keep it so across scopes. The calls are counted.
  static void initialize();
  static void terminate();
};

}  // namespace service::util::config::xml::internal

#endif
