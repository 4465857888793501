// The walk over one document, whatever has read it: fills a configuration in the order that every
// load keeps, which is first the properties of an element, then what its includes contribute, then
// its sections.
//
// An Element is cheap to copy and has
//   void match(ElementKind) const           throws unless it is of that kind
//   void readName(std::string&) const       its attribute "name"; throws when there is none
//   void readText(std::string&) const       its text; throws when there is none
//   Position position() const               line 0 and column 0 for an empty tag
//   std::string file() const                that it stands in; empty for an empty tag
//   Children(element).forEach(kind, step)   its children of that kind, in document order
// What it throws is derived from std::exception and translated here.
#ifndef SRC_LOAD_WALK_HPP
#define SRC_LOAD_WALK_HPP

#include <cutil/cutil.h>

#include <stdexcept>
#include <string>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/err/guarded.hpp"
#include "load/ElementKind.hpp"
#include "load/Load.hpp"
#include "service/util/locator/ConfigLocator.hpp"

namespace service::util::config::xml::internal {

template <class Element>
class Walk {
 public:
  explicit Walk(Load& load) : load(load) {}

  void parse(ElementKind kind, const IConfigPtr& config, const Element& element) {
    switch (kind) {
      case ElementKind::CONFIG:
        return parseConfig(config, element);
      case ElementKind::SECTION:
        return parseSection(config, element);
      case ElementKind::PROPERTY:
        return parseProperty(config, element);
      case ElementKind::INCLUDE:
        return parseInclude(config, element);
    }
  }

  void parseConfig(const IConfigPtr& config, const Element& root) {
    const Guard guarded(unit, parseConfigSignature);
    guarded([&] { root.match(ElementKind::CONFIG); });
    parseContent(config, root, guarded);
  }

  void parseSection(const IConfigPtr& parent, const Element& element) {
    const Guard guarded(unit, parseSectionSignature);
    guarded([&] { element.match(ElementKind::SECTION); });
    guarded([&] { requireStack(element, sectionStack); });
    guarded([&] { element.readName(name); });
    const IConfigPtr child = parent->addSection(name);
    if (load.events != nullptr) load.events->sectionAdded(parent, name, child, element.position());
    parseContent(child, element, guarded);
  }

  void parseProperty(const IConfigPtr& config, const Element& element) {
    const Guard guarded(unit, parsePropertySignature);
    guarded([&] { element.match(ElementKind::PROPERTY); });
    guarded([&] { element.readName(name); });
    guarded([&] { element.readText(value); });
    config->addProperty(name, value);
    if (load.events != nullptr) load.events->propertyAdded(config, name, element.position());
  }

  void parseInclude(const IConfigPtr& config, const Element& element) {
    const Guard guarded(unit, parseIncludeSignature);
    guarded([&] { element.match(ElementKind::INCLUDE); });
    guarded([&] {
      requireStack(element, includeStack);
      std::string text;
      element.readText(text);
      const std::string path = locator::ConfigLocator::find(text);
      if (load.events != nullptr) load.events->lookedUp(text, path, element.position());
      if (path.empty()) {
        // The double blank before "included" is part of the message.
        throw Exception(CU_FILE_NOT_FOUND, 0, unit, parseIncludeSignature, __LINE__, "")
            << placeOf(element) << " included configuration file '" << text << "' not found!";
      }
      if (!load.countFile()) fail(element, "too many files!");
      load.read(config, text, path);
    });
  }

 private:
  using Exception = cppUtil::err::Exception;
  using Guard = cppUtil::err::Guard;
  using Children = typename Element::Children;

  // What must be left of the stack, in bytes, to go into a section and to parse a file, with room
  // to report a failure there.
  static constexpr std::size_t sectionStack = 64UL * 1024;
  static constexpr std::size_t includeStack = 96UL * 1024;

  // guarded: the guard of the caller.
  void parseContent(const IConfigPtr& config, const Element& parent, const Guard& guarded) {
    const Children children(parent);
    children.forEach(ElementKind::PROPERTY, [&](const Element& element) {
      guarded([&] { parseProperty(config, element); });
    });
    children.forEach(ElementKind::INCLUDE, [&](const Element& element) {
      guarded([&] { parseInclude(config, element); });
    });
    children.forEach(ElementKind::SECTION, [&](const Element& element) {
      guarded([&] { parseSection(config, element); });
    });
  }

  void requireStack(const Element& element, std::size_t bytes) const {
    if (load.hasStack(bytes)) return;
    fail(element, "files or sections nested too deeply for the stack!");
  }

  [[noreturn]] static void fail(const Element& element, const char* reason) {
    throw std::runtime_error(placeOf(element) + reason);
  }

  // What a failure at the element begins with.
  static std::string placeOf(const Element& element) {
    const Position position = element.position();
    return "XMLParser: in file \"" + element.file() + "\" at line " +
           std::to_string(position.line) + " at column " + std::to_string(position.column) + ": ";
  }

  Load& load;
  std::string name;  // of one element after the other, as is the next; so they keep their memory
  std::string value;
};

}  // namespace service::util::config::xml::internal

#endif
