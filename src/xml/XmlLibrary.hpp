// Initialises and terminates the XML library; the calls are counted. Not from several threads at
// once.
#ifndef SRC_XML_XMLLIBRARY_HPP
#define SRC_XML_XMLLIBRARY_HPP

namespace service::util::config::xml::internal {

// Throws when the XML library cannot be initialised: std::bad_alloc when there is no memory for
// that, otherwise what is no exception of the XML library.
void initializeXmlLibrary();
void terminateXmlLibrary();

}  // namespace service::util::config::xml::internal

#endif
