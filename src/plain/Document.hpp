// A plain configuration document as a table: one row for each element that a load visits, in
// document order, over the bytes of the file.
//
// A document belongs to one thread at a time.
#ifndef SRC_PLAIN_DOCUMENT_HPP
#define SRC_PLAIN_DOCUMENT_HPP

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cppUtil/internal/Position.hpp"
#include "load/ElementKind.hpp"

namespace service::util::config::plain {

// What a file holds, followed by a NUL.
struct Bytes {
  std::unique_ptr<char[]> data;
  std::size_t size = 0;
};

class Document {
 public:
  using Kind = xml::internal::ElementKind;
  using Position = cppUtil::internal::Position;

  // A range of the bytes or, counted on from their end, of the resolved texts.
  struct Text {
    std::uint32_t begin = 0;
    std::uint32_t size = 0;
  };

  struct Element {
    Kind kind;
    std::uint32_t end;     // the number of the first element behind its content
    std::uint32_t tagEnd;  // the offset behind its start tag; 0 of an empty tag, which has no place
    Text name;             // its attribute "name"; never empty in properties and sections
    Text text;             // of properties and includes, where it is never empty
  };

  explicit Document(Bytes bytes) : bytes(std::move(bytes)) {}

  std::string_view view() const { return {bytes.data.get(), bytes.size}; }
  std::string_view view(Text text) const {
    return text.begin < bytes.size
               ? view().substr(text.begin, text.size)
               : std::string_view(resolved).substr(text.begin - bytes.size, text.size);
  }

  // Where its start tag ends; nowhere, in line 0 and column 0, for an empty tag. The first call
  // looks for the positions of all elements.
  Position positionOf(std::size_t element) const;

  std::vector<Element> elements;  // the first is the root, never empty
  std::string resolved;           // texts that do not stand in the bytes as they are, one by one
  bool isAscii = true;            // bytes and texts
  bool isValid = true;            // against the grammar of configuration files

 private:
  Bytes bytes;
  mutable std::vector<Position> positions;  // of all elements; empty before they are needed
};

}  // namespace service::util::config::plain

#endif
