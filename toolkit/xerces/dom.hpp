// Reading a DOM: children by name, mandatory attributes and text, with located errors.
//
// What a helper rejects it reports as a xerces::LocatedException with the place of the element,
// taken from its location tag. Names are UTF-16, results are in the local code page. A DOM belongs
// to one thread at a time.
#ifndef XERCES_DOM_HPP
#define XERCES_DOM_HPP

#include <list>
#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "xerces/LocatedException.hpp"

namespace xerces {

using XmlString = std::basic_string<XMLCh>;

// Converts to the local code page; a null pointer gives an empty string.
std::string transcode(const XmlString& text);
std::string transcode(const XMLCh* text);

// Converts from the local code page.
XmlString fromLocal(const std::string& text);

// What is wrong with element, to be thrown.
LocatedException failureAt(const xercesc::DOMElement& element, const std::string& reason);

// The direct children of element that are elements with the local name `name`, whatever their
// namespace, in document order. The DOM keeps them.
std::list<xercesc::DOMElement*> namedChildElements(const xercesc::DOMElement& element,
                                                   const XmlString& name);

// Throws unless the local name of element is `name`.
void match(const xercesc::DOMElement& element, const XmlString& name);

// The value of the attribute with the qualified name `name`, white space and all. Throws when the
// attribute is missing or empty.
std::string mandatoryAttribute(const xercesc::DOMElement& element, const XmlString& name);

// All text below element, untrimmed. Throws when there is none.
std::string textContent(const xercesc::DOMElement& element);

}  // namespace xerces

#endif
