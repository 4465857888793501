// Keeps exceptions of the XML library from leaving: they must not outlive its termination.
#ifndef SRC_XML_WITHOUTXMLEXCEPTIONS_HPP
#define SRC_XML_WITHOUTXMLEXCEPTIONS_HPP

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace service::util::config::xml::internal {

// Stands in for an exception of the XML library.
struct XmlLibraryFailure {};

template <class Step>
decltype(auto) withoutXmlExceptions(const Step& step) {
  try {
    return step();
  } catch (const xercesc::XMLException&) {
    throw XmlLibraryFailure();
  } catch (const xercesc::DOMException&) {
    throw XmlLibraryFailure();
  } catch (const xercesc::SAXException&) {
    throw XmlLibraryFailure();
  } catch (const xercesc::OutOfMemoryException&) {
    throw XmlLibraryFailure();
  }
}

}  // namespace service::util::config::xml::internal

#endif
