#include "xml/documentCheck.hpp"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "report/SourceFile.hpp"
#include "service/util/config/grammar/getGrammar.hpp"
#include "service/util/config/visit.hpp"
#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"
#include "xml/LenientParser.hpp"
#include "xml/names.hpp"
#include "xml/validation.hpp"
#include "xml/withoutXmlExceptions.hpp"

namespace service::util::config::xml::internal {

namespace {

using names::kindOf;
using xercesc::DOMElement;
using xercesc::DOMNode;
using Fault = LenientParser::Fault;

// The first element in parent, entities included; null when there is none. How deep entities nest
// is limited, so this may recurse.
const DOMElement* firstElement(const DOMNode& parent) {
  for (const DOMNode* node = parent.getFirstChild(); node != nullptr;
       node = node->getNextSibling()) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE) return static_cast<const DOMElement*>(node);
    if (const DOMElement* element = firstElement(*node)) return element;
  }
  return nullptr;
}

bool isPadded(const std::string& text) {
  const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  return !text.empty() && (isSpace(text.front()) || isSpace(text.back()));
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The walk over one document. It goes on where a load stops, and otherwise takes the same steps.
class DocumentCheck {
 public:
  DocumentCheck(LenientParser& parser, const SchemeList& schemes, bool validate)
      : parser(parser), schemes(schemes), validate(validate) {}

  DocumentFindings run(const xercesc::DOMDocument* document) {
    const DOMElement* root = document == nullptr ? nullptr : document->getDocumentElement();
    addFaults(root);
    if (root != nullptr) {
      if (!isConfig(*root)) {
        add(*root, "wrong-root",
            "the root element is " + quoted(xerces::transcode(root->getLocalName())) +
                "; that of a configuration is \"config\"");
      }
      checkContent(*root);
    } else {
      findings.parents.emplace_back();
    }
    const auto byPlace = [](const Problem& a, const Problem& b) {
      return positionOf(a.location) < positionOf(b.location);
    };
    std::stable_sort(findings.problems.begin(), findings.problems.end(), byPlace);
    return std::move(findings);
  }

 private:
  static bool isConfig(const DOMElement& root) {
    return xercesc::XMLString::equals(root.getLocalName(), names::config.c_str());
  }

  void addFaults(const DOMElement* root) {
    const bool isForeign = validate && root != nullptr && !isInKnownNamespace(*root, schemes);
    const bool isWrongRoot = root != nullptr && !isConfig(*root);
    const Position rootPlace = root == nullptr ? Position() : positionOf(*root);
    for (const Fault& fault : parser.getFaults()) {
      // What is invalid because the root or its namespace is wrong, is not told besides that.
      const bool follows = isForeign || (isWrongRoot && fault.position() == rootPlace);
      if (fault.kind != Fault::INVALID || !follows) addFault(fault);
    }
    if (!isForeign) return;
    const std::string uri = xerces::transcode(root->getNamespaceURI());
    add(*root, "invalid",
        std::string("the root element is in ") +
            (uri.empty() ? "no namespace" : "the namespace " + quoted(uri)) +
            "; validation needs xmlns=" + quoted(grammar::targetNamespace));
  }

  void addFault(const Fault& fault) {
    const auto addAs = [&](Severity severity, const char* rule) {
      findings.problems.push_back(
          {severity, rule, fault.message, fault.subject, fault.location, {}});
    };
    switch (fault.kind) {
      case Fault::WARNING:
        return addAs(Severity::WARNING, "xml");
      case Fault::INVALID:
        invalidPlaces.insert(fault.position());
        return addAs(Severity::ERROR, "invalid");
      case Fault::NOT_WELL_FORMED:
        return addAs(Severity::ERROR, "not-well-formed");
      case Fault::SEVERAL_ROOTS:
        return addAs(Severity::ERROR, "several-roots");
      case Fault::REFUSED:
        return addAs(Severity::ERROR, "unloadable");
    }
  }

  // Sections in sections are kept on a list, not on the stack: documents may be deep.
  void checkContent(const DOMElement& root) {
    std::vector<const DOMElement*> sections = {&root};
    while (!sections.empty()) {
      const DOMElement& parent = *sections.back();
      sections.pop_back();
      const std::size_t first = sections.size();
      checkChildren(parent, sections);
      std::reverse(sections.begin() + static_cast<std::ptrdiff_t>(first), sections.end());
    }
  }

  // Appends the sections in parent to the list.
  void checkChildren(const DOMElement& parent, std::vector<const DOMElement*>& sections) {
    std::vector<NamedSection> named;
    std::unordered_set<std::string> known;
    const std::size_t includesBefore = findings.includes.size();
    for (const DOMNode* node = parent.getFirstChild(); node != nullptr;
         node = node->getNextSibling()) {
      if (node->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE) checkEntity(*node, parent);
      if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
      const auto& element = static_cast<const DOMElement&>(*node);
      checkChild(element);
      if (kindOf(element) != ElementKind::SECTION) continue;
      sections.push_back(&element);
      const std::string name = xerces::transcode(element.getAttribute(names::name.c_str()));
      if (!name.empty() && known.insert(name).second) {
        named.push_back({name, positionOf(element)});
      }
    }
    if (findings.parents.empty() || findings.includes.size() > includesBefore) {
      findings.parents.push_back(std::move(named));
    }
  }

  void checkChild(const DOMElement& element) {
    const auto kind = kindOf(element);
    if (kind == ElementKind::SECTION) checkName(element, "section");
    if (kind == ElementKind::PROPERTY) checkValue(element, checkName(element, "property"));
    if (kind == ElementKind::INCLUDE) checkInclude(element);
    if (kind || validate) return;  // which tells of them by itself
    const std::string name = xerces::transcode(element.getLocalName());
    add(element, "unknown-element",
        "element " + quoted(name) + " is ignored; only property, section and include are read",
        Severity::WARNING, name);
  }
  void checkEntity(const DOMNode& entity, const DOMElement& section) {
    if (firstElement(entity) == nullptr) return;
    const std::string name = xerces::transcode(entity.getNodeName());
    add(section, "entity-element",
        "the elements that the entity " + quoted(name) + " stands for in here are not read",
        Severity::WARNING, name);
  }

  // Answers with the name; the empty one when there is none.
  std::string checkName(const DOMElement& element, const std::string& kind) {
    std::string name;
    try {
      name = xerces::mandatoryAttribute(element, names::name);
    } catch (const xerces::Exception&) {
      const bool isEmpty = element.hasAttribute(names::name.c_str());
      // The grammar requires the names of sections only.
      const bool isReported = kind == "section" && isReportedInvalid(element);
      if (isEmpty || !isReported) {
        add(element, "missing-name",
            isEmpty ? "the name of this " + kind + " is empty"
                    : "this " + kind + " has no attribute \"name\"");
      }
      return "";
    }
    if (!isSelectable(name)) {
      add(element, "unreachable-name",
          "no selector can spell " + quoted(name) + ": it takes ASCII letters and digits only",
          Severity::WARNING, name);
    }
    return name;
  }

  // Answers with the text; the empty one when there is none.
  std::string checkText(const DOMElement& element, const std::string& kind) {
    if (parser.isOpen(element)) return "";
    checkIgnored(element, kind);
    try {
      return xerces::textContent(element);
    } catch (const xerces::Exception&) {
      add(element, "missing-value", "this " + kind + " has no text");
      return "";
    }
  }

  // Validation tells of elements in a text by itself.
  void checkIgnored(const DOMElement& element, const std::string& kind) {
    const DOMElement* ignored = validate ? nullptr : firstElement(element);
    if (ignored == nullptr) return;
    const std::string name = xerces::transcode(ignored->getLocalName());
    const bool isChild = ignored->getParentNode() == &element;
    add(isChild ? *ignored : element, "unknown-element",
        "element " + quoted(name) + " in this " + kind + " is ignored, but its text is read",
        Severity::WARNING, name);
  }

  void checkValue(const DOMElement& element, const std::string& name) {
    if (!isPadded(checkText(element, "property"))) return;
    add(element, "padded-value", "the white space at the ends of this text is part of the value",
        Severity::WARNING, name);
  }

  void checkInclude(const DOMElement& element) {
    const std::string text = checkText(element, "include");
    if (text.empty()) return;
    findings.includes.push_back({text, positionOf(element), findings.parents.size()});
  }

  // Whether validation has found fault with the start tag of element.
  bool isReportedInvalid(const DOMElement& element) {
    return invalidPlaces.count(positionOf(element)) > 0;
  }

  static Position positionOf(const Location& location) { return {location.line, location.column}; }
  Position positionOf(const DOMElement& element) { return positionOf(parser.locationOf(element)); }

  void add(const DOMElement& element, const char* rule, const std::string& message,
           Severity severity = Severity::ERROR, const std::string& subject = "") {
    findings.problems.push_back({severity, rule, message, subject, parser.locationOf(element), {}});
  }

  LenientParser& parser;
  const SchemeList& schemes;
  bool validate;
  std::set<Position> invalidPlaces;
  DocumentFindings findings;
};

// Behind the root element, the XML library takes a zero byte for the end of the document. Elsewhere
// it is an error, and encodings of two or four bytes have one among the first four.
void addUnreadEnd(const std::string& path, std::vector<Problem>& problems) {
  const auto isError = [](const Problem& problem) { return problem.severity == Severity::ERROR; };
  if (std::any_of(problems.begin(), problems.end(), isError)) return;
  report::SourceFile file(path);
  const std::string zero(1, '\0');
  if (file.read(0, 4).find(zero) != std::string::npos) return;
  const auto last = file.findLast(zero);
  if (!last) return;
  problems.push_back({Severity::WARNING,
                      "unread-end",
                      "a zero byte follows the root element: the rest of the file is not read",
                      "",
                      {path, static_cast<int>(last->line), static_cast<int>(last->column)},
                      {}});
}

}  // namespace

DocumentFindings checkDocument(const std::string& path, const SchemeList& schemes,
                               xercesc::XMLGrammarPool* grammars) {
  DocumentFindings findings;
  withoutXmlExceptions([&] {
    xercesc::XMLGrammarPoolImpl none(xercesc::XMLPlatformUtils::fgMemoryManager);
    Budget budget(path);
    LenientParser parser(grammars == nullptr ? none : *grammars, schemes, budget);
    if (grammars != nullptr) {
      enableValidation(parser, schemes);
      parser.setValidationConstraintFatal(false);
    }
    const xercesc::DOMDocument* document = parser.parseLeniently(path);
    findings = DocumentCheck(parser, schemes, grammars != nullptr).run(document);
    addUnreadEnd(path, findings.problems);
  });
  return findings;
}

}  // namespace service::util::config::xml::internal
