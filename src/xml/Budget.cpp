#include "xml/Budget.hpp"

#include <algorithm>
#include <limits>
#include <new>
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

// In characters. Text that is read and thrown away takes a second for some two hundred million. To
// open a reader takes as long as the given number of them; the XML library counts references in
// content, and none in document types.
constexpr std::uint64_t initialExpanded = 64U << 20;
constexpr std::uint64_t expandedPerByteRead = 40;
constexpr std::uint64_t expandedPerReader = 1000;

// Those of the levels of entities in entities that are allowed fit into the initial memory.
constexpr unsigned int maximumOpenReaders = 150;

// What may still be asked for to clean up and report.
constexpr std::uint64_t graceBytes = 8U << 20;

// The XML library adds a header of its own to each object. Nothing else is about this large.
bool isReader(XMLSize_t size) {
  return size >= sizeof(xercesc::XMLReader) && size < sizeof(xercesc::XMLReader) + 64;
}

}  // namespace

Budget::Budget(const std::string& fileName)
    : fileName(fileName), heldAllowed(initialBytes), expandedAllowed(initialExpanded) {}

Budget::~Budget() {
  while (blocks.next != &blocks) deallocate(blocks.next + 1);
}

void* Budget::allocate(XMLSize_t size) {
  if (size > std::numeric_limits<XMLSize_t>::max() - sizeof(Header)) refuse("out of memory");
  if (held + size > heldAllowed) refuse(tooLarge);
  if (isReader(size)) openReader();
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
  Header* block = static_cast<Header*>(memory) - 1;
  block->previous->next = block->next;
  block->next->previous = block->previous;
  held -= block->size;
  if (isReader(block->size)) --openReaders;
  XMLPlatformUtils::fgMemoryManager->deallocate(block);
}

// Exceptions of the XML library may outlive the parse.
xercesc::MemoryManager* Budget::getExceptionMemoryManager() {
  return XMLPlatformUtils::fgMemoryManager;
}

void Budget::addRead(std::size_t bytes, bool isRepeated) {
  if (isRepeated) return expand(bytes);
  heldAllowed += bytes * bytesPerByteRead;
  expandedAllowed += bytes * expandedPerByteRead;
}

bool Budget::isNewFile(dev_t device, ino_t inode) {
  return files.emplace(device, inode).second;
}

void Budget::addEntity(std::size_t length) {
  longestEntity = std::max<std::uint64_t>(longestEntity, length);
}

// The reader of the entity was opened just before, and taken for the longest one.
void Budget::addReference(std::size_t length) {
  expanded -= std::min(expanded, longestEntity);
  expand(length);
}

void Budget::setLocator(const xercesc::Locator* newLocator) {
  locator = newLocator;
  documentId = locator == nullptr ? nullptr : locator->getSystemId();
}

void Budget::refuse(const char* reason) {
  heldAllowed = held + graceBytes;
  xerces::Position position;
  if (locator != nullptr) {
    position.line = static_cast<int>(locator->getLineNumber());
    position.column = static_cast<int>(locator->getColumnNumber());
  }
  throw xerces::LocatedException(currentFile(), position, std::string(reason) + "!");
}

void Budget::expand(std::uint64_t length) {
  expanded += length;
  if (expanded > expandedAllowed) refuse(tooLarge);
}

void Budget::openReader() {
  if (openReaders == maximumOpenReaders) refuse("entities nested too deeply");
  expand(longestEntity + expandedPerReader);
  ++openReaders;
}

// An entity may stand in a file of its own.
std::string Budget::currentFile() const {
  const XMLCh* id = locator == nullptr ? documentId : locator->getSystemId();
  try {
    if (id != documentId) return xerces::transcode(id);
  } catch (const xercesc::OutOfMemoryException&) {  // then the document's name must do
  }
  return fileName;
}

}  // namespace service::util::config::xml::internal
