// Bounds what the parse of one document may ask for in memory, in proportion to the bytes read.
//
// A few bytes of entities can expand to gigabytes, or to little at a time but for hours. Two bounds
// stop that: on the memory that the XML library holds for a document, and on all that it ever asked
// for. An ordinary document stays far below both.
#ifndef SRC_BUDGET_HPP
#define SRC_BUDGET_HPP

#include <cstdint>
#include <string>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/sax/Locator.hpp>

namespace service::util::config::xml::internal {

class Budget : public xercesc::MemoryManager {
 public:
  // fileName: of the document, for the error.
  explicit Budget(const std::string& fileName);

  // Throws xerces::Exception with the place in the document when a bound is passed, and the XML
  // library's own exception when there is no memory.
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;
  xercesc::MemoryManager* getExceptionMemoryManager() override;

  // Tells that bytes of the document or of what belongs to it were read.
  void addRead(std::size_t bytes);

  // Where the parse stands; the caller keeps it as long as memory is asked for.
  void setLocator(const xercesc::Locator* locator);

 private:
  [[noreturn]] void refuse();

  const std::string& fileName;
  const xercesc::Locator* locator = nullptr;
  std::uint64_t held = 0;
  std::uint64_t heldAllowed;
  std::uint64_t asked = 0;
  std::uint64_t askedAllowed;
};

}  // namespace service::util::config::xml::internal

#endif
