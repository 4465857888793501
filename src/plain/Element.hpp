// A row of a plain document as the walk over documents wants it, see load/Walk.hpp.
#ifndef SRC_PLAIN_ELEMENT_HPP
#define SRC_PLAIN_ELEMENT_HPP

#include <cstddef>
#include <string>

#include "load/LoadEvents.hpp"
#include "plain/Document.hpp"

namespace service::util::config::plain {

class Element {
 public:
  class Children;

  // Both are kept by reference. path: of the document.
  Element(const Document& document, const std::string& path, std::size_t number)
      : document(&document), path(&path), number(number) {}

  // The reader has seen to the names and texts.
  void match(Document::Kind /*kind*/) const {}
  void readName(std::string& name) const { name.assign(document->view(row().name)); }
  void readText(std::string& text) const { text.assign(document->view(row().text)); }

  Document::Position position() const { return document->positionOf(number); }
  std::string file() const { return row().tagEnd == 0 ? std::string() : *path; }

 private:
  const Document::Element& row() const { return document->elements[number]; }

  const Document* document;
  const std::string* path;
  std::size_t number;
};

class Element::Children {
 public:
  explicit Children(const Element& parent) : parent(parent) {}

  template <class Step>
  void forEach(Document::Kind kind, const Step& step) const {
    const auto& rows = parent.document->elements;
    const std::size_t end = parent.row().end;
    for (std::size_t i = parent.number + 1; i < end; i = rows[i].end) {
      if (rows[i].kind == kind) step(Element(*parent.document, *parent.path, i));
    }
  }

 private:
  const Element& parent;
};

}  // namespace service::util::config::plain

#endif
