// The strict reader of plain documents: from the bytes of a file to a table of its elements,
// without the XML library.
//
// The XML library is the reference. This reader may refuse what is right; it must never accept what
// the XML library refuses, nor read it otherwise. What it refuses goes through the XML library,
// which also words every error. tests/plain holds both to it.
//
// Plain is version 1.0 in UTF-8 without a document type, without prefixes, with names in ASCII and
// all that the loader asks for. The way from the bytes up: characters, ByteClass, Cursor, Markup
// and read.cpp, each of which can be read from top to bottom.
#ifndef SRC_PLAIN_READ_HPP
#define SRC_PLAIN_READ_HPP

#include <optional>

#include "plain/Document.hpp"

namespace service::util::config::plain {

// In bytes.
constexpr std::size_t maximumSize = 0x7FFFFFFF;

// Nothing when the document is not plain or a load of it would fail, for whatever reason:
// malformed, a root that is not called "config", an element without a name or a text. Throws
// std::bad_alloc.
std::optional<Document> read(Bytes bytes);

}  // namespace service::util::config::plain

#endif
