// Bounds what the parse of one document may cost, in proportion to the bytes read.
//
// A few bytes of entities can expand to gigabytes, or to little at a time but for hours. Bounded
// are the memory that the XML library holds for a document, the text that entities expand to,
// whether it is kept or not, and how deep they nest. An ordinary document stays far below all of
// these.
//
// It also frees what the XML library leaks. Some versions leave the description of a document type
// in a file behind, and all of them lose a few blocks when a parse is broken off.
#ifndef SRC_XML_BUDGET_HPP
#define SRC_XML_BUDGET_HPP

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/sax/Locator.hpp>

namespace service::util::config::xml::internal {

class Budget : public xercesc::MemoryManager {
 public:
  // fileName: of the document, for the error.
  explicit Budget(const std::string& fileName);
  // The parser and all that it made must be gone before.
  ~Budget() override;
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;

  // Throws xerces::LocatedException with the place in the document when a bound is passed or when
  // there is no memory.
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;
  xercesc::MemoryManager* getExceptionMemoryManager() override;

  // Tells that bytes of a file, the document or what belongs to it, were read: this allows for
  // more, or, when the document has had that file read before, counts as expansion.
  void addRead(std::size_t bytes, bool isRepeated);

  // Whether this is the first time that the document has the file read.
  bool isNewFile(dev_t device, ino_t inode);

  // Tells of an entity in a document type, and of a reference to one in content. References in
  // attributes and document types go by without notice: those are taken for the longest entity.
  void addEntity(std::size_t length);
  void addReference(std::size_t length);

  // Where the parse stands, in the document at first, kept by the caller; null when it does not
  // stand anywhere.
  void setLocator(const xercesc::Locator* locator);

  // Throws xerces::LocatedException with the reason and the place.
  [[noreturn]] void refuse(const char* reason);

 private:
  // Stands before each block of memory; what follows is aligned for any type.
  struct alignas(std::max_align_t) Header {
    Header* previous;
    Header* next;
    XMLSize_t size;
  };

  void expand(std::uint64_t length);
  void openReader();
  std::string currentFile() const;

  const std::string& fileName;
  const xercesc::Locator* locator = nullptr;
  const XMLCh* documentId = nullptr;      // the system id of the document, in its reader
  Header blocks = {&blocks, &blocks, 0};  // a ring of all blocks that are held
  std::uint64_t held = 0;
  std::uint64_t heldAllowed;
  std::uint64_t expanded = 0;
  std::uint64_t expandedAllowed;
  std::uint64_t longestEntity = 0;
  unsigned int openReaders = 0;  // the XML library has one for each entity that it is reading
  std::set<std::pair<dev_t, ino_t>> files;
};

}  // namespace service::util::config::xml::internal

#endif
