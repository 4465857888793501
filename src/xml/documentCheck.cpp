#include "xml/documentCheck.hpp"

#include <algorithm>
#include <tuple>
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

using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLString;
using Fault = LenientParser::Fault;

bool isCalled(const DOMElement& element, const xerces::XmlString& name) {
  return XMLString::equals(element.getLocalName(), name.c_str());
}

// How deep entities nest is limited, so this may recurse.
bool holdsElement(const DOMNode& entity) {
  for (const DOMNode* node = entity.getFirstChild(); node != nullptr;
       node = node->getNextSibling()) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE || holdsElement(*node)) return true;
  }
  return false;
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

// The walk over one document. It goes on where a load stops, and otherwise takes the same steps.
class DocumentCheck {
 public:
  DocumentCheck(const LenientParser& parser, const SchemeList& schemes, bool validate)
      : parser(parser), schemes(schemes), validate(validate) {}

  DocumentFindings run(const xercesc::DOMDocument* document) {
    const DOMElement* root = document == nullptr ? nullptr : document->getDocumentElement();
    addFaults(root);
    if (root != nullptr) {
      if (!isCalled(*root, names::config)) {
        add(*root, "wrong-root",
            "the root element is " + quoted(xerces::transcode(root->getLocalName())) +
                "; that of a configuration is \"config\"");
      }
      checkContent(*root);
    }
    const auto byPlace = [](const Problem& a, const Problem& b) {
      return std::tie(a.location.line, a.location.column) <
             std::tie(b.location.line, b.location.column);
    };
    std::stable_sort(findings.problems.begin(), findings.problems.end(), byPlace);
    return std::move(findings);
  }

 private:
  void addFaults(const DOMElement* root) {
    const bool isForeign = validate && root != nullptr && !isInKnownNamespace(*root, schemes);
    const bool isWrongRoot = root != nullptr && !isCalled(*root, names::config);
    for (const Fault& fault : parser.getFaults()) {
      // What is invalid because the root or its namespace is wrong, is not told besides that.
      const bool follows = isForeign || (isWrongRoot && isAt(fault.location, *root));
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
      findings.problems.push_back({severity, rule, fault.message, "", fault.location, {}});
    };
    switch (fault.kind) {
      case Fault::WARNING:
        return addAs(Severity::WARNING, "xml");
      case Fault::INVALID:
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
      const DOMElement& section = *sections.back();
      sections.pop_back();
      const auto first = static_cast<std::ptrdiff_t>(sections.size());
      for (const DOMNode* node = section.getFirstChild(); node != nullptr;
           node = node->getNextSibling()) {
        if (node->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE) checkEntity(*node, section);
        if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
        const auto& element = static_cast<const DOMElement&>(*node);
        checkChild(element);
        if (isCalled(element, names::section)) sections.push_back(&element);
      }
      std::reverse(sections.begin() + first, sections.end());
    }
  }

  void checkChild(const DOMElement& element) {
    if (isCalled(element, names::section)) {
      checkName(element, "section");
    } else if (isCalled(element, names::property)) {
      checkName(element, "property");
      checkText(element, "property");
    } else if (isCalled(element, names::include)) {
      checkInclude(element);
    } else if (!validate) {  // which tells of them by itself
      const std::string name = xerces::transcode(element.getLocalName());
      add(element, "unknown-element",
          "element " + quoted(name) + " is ignored; only property, section and include are read",
          Severity::WARNING, name);
    }
  }

  void checkEntity(const DOMNode& entity, const DOMElement& section) {
    if (!holdsElement(entity)) return;
    const std::string name = xerces::transcode(entity.getNodeName());
    add(section, "entity-element",
        "the elements that the entity " + quoted(name) + " stands for in here are not read",
        Severity::WARNING, name);
  }

  void checkName(const DOMElement& element, const std::string& kind) {
    std::string name;
    try {
      name = xerces::mandatoryAttribute(element, names::name);
    } catch (const xerces::Exception&) {
      const bool isEmpty = element.hasAttribute(names::name.c_str());
      // The grammar requires the names of sections only.
      if (!isEmpty && isCalled(element, names::section) && isReportedInvalid(element)) return;
      add(element, "missing-name",
          isEmpty ? "the name of this " + kind + " is empty"
                  : "this " + kind + " has no attribute \"name\"");
      return;
    }
    if (isSelectable(name)) return;
    add(element, "unreachable-name",
        "no selector can spell " + quoted(name) + ": it takes ASCII letters and digits only",
        Severity::WARNING, name);
  }

  // Answers with the text; the empty one when there is none.
  std::string checkText(const DOMElement& element, const std::string& kind) {
    if (parser.isOpen(element)) return "";
    try {
      return xerces::textContent(element);
    } catch (const xerces::Exception&) {
      add(element, "missing-value", "this " + kind + " has no text");
      return "";
    }
  }

  void checkInclude(const DOMElement& element) {
    const std::string text = checkText(element, "include");
    if (!text.empty()) findings.includes.push_back({text, parser.locationOf(element)});
  }

  // Whether validation has found fault with the start tag of element.
  bool isReportedInvalid(const DOMElement& element) const {
    const auto isReport = [&](const Problem& problem) {
      return problem.rule == "invalid" && isAt(problem.location, element);
    };
    return std::any_of(findings.problems.begin(), findings.problems.end(), isReport);
  }

  bool isAt(const Location& location, const DOMElement& element) const {
    const Location here = parser.locationOf(element);
    return location.line == here.line && location.column == here.column;
  }

  void add(const DOMElement& element, const char* rule, const std::string& message,
           Severity severity = Severity::ERROR, const std::string& subject = "") {
    findings.problems.push_back({severity, rule, message, subject, parser.locationOf(element), {}});
  }

  const LenientParser& parser;
  const SchemeList& schemes;
  bool validate;
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
