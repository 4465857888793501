// A file as the XML library's input: the very file that its path names, byte by byte.
//
// The XML library's own sources take a path through the local code page and through its notion of a
// URL. This one opens what the kernel would open, waits for nothing (a FIFO is no document), and
// counts what is read towards the document's budget.
#ifndef SRC_XML_FILESOURCE_HPP
#define SRC_XML_FILESOURCE_HPP

#include <string>
#include <xercesc/sax/InputSource.hpp>

#include "xml/Budget.hpp"

namespace service::util::config::xml::internal {

class FileSource : public xercesc::InputSource {
 public:
  // The document itself. Its system id is the path, as the XML library would spell it.
  FileSource(const std::string& path, Budget& budget);
  // Something that belongs to the document, under the given system id.
  FileSource(const std::string& path, const XMLCh* systemId, Budget& budget);

  // Null when path names no regular file that can be opened; the XML library then reports that.
  xercesc::BinInputStream* makeStream() const override;

 private:
  std::string path;
  Budget& budget;
};

}  // namespace service::util::config::xml::internal

#endif
