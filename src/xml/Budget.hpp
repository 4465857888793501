// Bounds what the parse of one document may cost, in proportion to the bytes read.
//
// A few bytes of entities can expand to gigabytes, or to little at a time but for hours, and a few
// of a document type describe an automaton of gigabytes. Bounded are the memory that the XML
// library holds for a document and its grammars, the entities that it enters, the text in them,
// whether it is kept or not, and how deep they nest. An ordinary document stays far below all of
// these.
//
// The method: a Budget is the memory manager of the parse, and so knows what is held. Of entities
// in attributes and document types the XML library tells nobody; but it has a reader for each
// entity that it is in, numbers them, and allocates memory for each, and it gives that back while
// the reader still is the current one. So every allocation and deallocation looks whether the
// current reader is a new one, which misses none. What passes a bound is refused by the next
// allocation.
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
#include <xercesc/internal/ReaderMgr.hpp>

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

  // How many bytes were read so far, each counted once.
  std::uint64_t getRead() const { return read; }

  // Whether this is the first time that the document has the file read.
  bool isNewFile(dev_t device, ino_t inode);

  // The parse begins: the readers of the XML library, whose current one is that of the document.
  // They are kept by the caller until the end.
  void begin(const xercesc::ReaderMgr& readers);
  // The parse is over. What is still allocated is for cleaning up, and never refused.
  void end();

  // Throws xerces::LocatedException with the reason and the place.
  [[noreturn]] void refuse(const char* reason);

 private:
  // Stands before each block of memory; what follows is aligned for any type.
  struct alignas(std::max_align_t) Header {
    Header* previous;
    Header* next;
    XMLSize_t size;
  };

  bool isReading() const;
  void noticeReader();
  void checkExpansion();
  std::string currentFile() const;

  const std::string& fileName;
  const xercesc::ReaderMgr* readers = nullptr;  // during the parse, until something is refused
  const XMLCh* documentId = nullptr;            // the system id of the document, in its reader
  const char* excess = nullptr;                 // what the next allocation is refused for
  Header blocks = {&blocks, &blocks, 0};        // a ring of all blocks that are held
  std::uint64_t held = 0;
  std::uint64_t heldAllowed;
  std::uint64_t read = 0;      // in bytes, without what is read again
  std::uint64_t expanded = 0;  // in characters
  std::uint64_t entered = 0;   // entities, the document included
  XMLSize_t newestReader = 0;  // the number of the last reader that was noticed
  std::set<std::pair<dev_t, ino_t>> files;
};

}  // namespace service::util::config::xml::internal

#endif
