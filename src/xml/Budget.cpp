#include "xml/Budget.hpp"

#include <limits>
#include <new>
#include <xercesc/framework/XMLEntityDecl.hpp>
#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xerces/LocatedException.hpp"
#include "xerces/dom.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLPlatformUtils;

constexpr const char* tooLarge = "document expands too far beyond its size";

// The densest documents, all empty elements with one-letter names, take about a hundred bytes per
// byte.
constexpr std::uint64_t initialBytes = 48U << 20;
constexpr std::uint64_t bytesPerByteRead = 400;

// In characters. Text that is read and thrown away takes a second for some two hundred million.
constexpr std::uint64_t initialExpanded = 64U << 20;
constexpr std::uint64_t expandedPerByteRead = 40;

// To enter an entity takes up to ten microseconds. No reference is shorter than three bytes, so
// those that a document writes itself are never too many.
constexpr std::uint64_t initialEntered = 50000;
constexpr std::uint64_t bytesReadPerEntered = 3;

// The document and entities in entities. So many readers fit into the initial memory.
constexpr XMLSize_t maximumDepth = 150;

// What may still be asked for to clean up and report.
constexpr std::uint64_t graceBytes = 8U << 20;

}  // namespace

Budget::Budget(const std::string& fileName) : fileName(fileName), heldAllowed(initialBytes) {}

Budget::~Budget() {
  while (blocks.next != &blocks) deallocate(blocks.next + 1);
}

void* Budget::allocate(XMLSize_t size) {
  if (size > std::numeric_limits<XMLSize_t>::max() - sizeof(Header)) refuse("out of memory");
  if (held + size > heldAllowed) refuse(tooLarge);
  noticeReader();
  if (excess != nullptr) refuse(excess);
  void* memory = nullptr;
  try {
    memory = XMLPlatformUtils::fgMemoryManager->allocate(size + sizeof(Header));
  } catch (const xercesc::OutOfMemoryException&) {
    refuse("out of memory");
  }
  auto* block = new (memory) Header{&blocks, blocks.next, size};
  block->previous->next = block->next->previous = block;
  held += size;
  return block + 1;
}

void Budget::deallocate(void* memory) {
  if (memory == nullptr) return;
  noticeReader();
  Header* block = static_cast<Header*>(memory) - 1;
  block->previous->next = block->next;
  block->next->previous = block->previous;
  held -= block->size;
  XMLPlatformUtils::fgMemoryManager->deallocate(block);
}

// Exceptions of the XML library may outlive the parse.
xercesc::MemoryManager* Budget::getExceptionMemoryManager() {
  return XMLPlatformUtils::fgMemoryManager;
}

void Budget::addRead(std::size_t bytes, bool isRepeated) {
  if (isRepeated) {
    expanded += bytes;
    checkExpansion();
    if (excess != nullptr) refuse(excess);
  } else {
    read += bytes;
    heldAllowed += bytes * bytesPerByteRead;
  }
}

bool Budget::isNewFile(dev_t device, ino_t inode) {
  return files.emplace(device, inode).second;
}

void Budget::begin(const xercesc::ReaderMgr& documentReaders) {
  readers = &documentReaders;
  newestReader = 0;
  documentId = documentReaders.getSystemId();
}

void Budget::end() {
  readers = nullptr;
  excess = nullptr;
  heldAllowed = std::numeric_limits<std::uint64_t>::max();
}

void Budget::refuse(const char* reason) {
  xerces::Position position;
  if (isReading()) {
    position.line = static_cast<int>(readers->getLineNumber());
    position.column = static_cast<int>(readers->getColumnNumber());
  }
  const std::string file = currentFile();
  readers = nullptr;
  excess = nullptr;
  heldAllowed = held + graceBytes;
  throw xerces::LocatedException(file, position, std::string(reason) + "!");
}

// Without a file to read, the readers know no place, and crash when they are asked.
bool Budget::isReading() const {
  return readers != nullptr && readers->getCurrentReader() != nullptr;
}

void Budget::noticeReader() {
  if (!isReading() || readers->getCurrentReader()->getReaderNum() <= newestReader) return;
  newestReader = readers->getCurrentReader()->getReaderNum();
  ++entered;
  const xercesc::XMLEntityDecl* entity = readers->getCurrentEntity();
  if (entity != nullptr) expanded += entity->getValueLen();
  checkExpansion();
}

void Budget::checkExpansion() {
  if (expanded > initialExpanded + read * expandedPerByteRead ||
      entered > initialEntered + read / bytesReadPerEntered) {
    excess = tooLarge;
  } else if (isReading() && readers->getReaderDepth() > maximumDepth) {
    excess = "entities nested too deeply";
  }
}

// An entity may stand in a file of its own.
std::string Budget::currentFile() const {
  if (!isReading()) return fileName;
  const XMLCh* id = readers->getSystemId();
  try {
    if (id != documentId) return xerces::transcode(id);
  } catch (const xercesc::OutOfMemoryException&) {  // then the document's name must do
  }
  return fileName;
}

}  // namespace service::util::config::xml::internal
