#include "Budget.hpp"

#include <cstddef>
#include <cstring>
#include <xercesc/util/PlatformUtils.hpp>

#include "xerces/Exception.hpp"

namespace service::util::config::xml::internal {

namespace {

using xercesc::XMLPlatformUtils;

// The densest documents, all empty elements with one-letter names, take about a hundred bytes per
// byte. A reader, one for each level of entities in entities, takes some two hundred kilobytes.
constexpr std::uint64_t initialBytes = 48U << 20;
constexpr std::uint64_t bytesPerByteRead = 400;

// Every expansion asks for a reader, so this is enough for as many as are allowed of entities in
// content; the XML library does not count those in document types.
constexpr std::uint64_t initialBytesAsked = std::uint64_t{10} << 30;

// What may still be asked for to clean up and report.
constexpr std::uint64_t graceBytes = 8U << 20;

// Each block starts with its size; what follows is aligned for any type.
constexpr std::size_t headerSize = alignof(std::max_align_t);
static_assert(headerSize >= sizeof(XMLSize_t));

}  // namespace

Budget::Budget(const std::string& fileName)
    : fileName(fileName), heldAllowed(initialBytes), askedAllowed(initialBytesAsked) {}

void* Budget::allocate(XMLSize_t size) {
  if (held + size > heldAllowed || asked + size > askedAllowed) refuse();
  auto* block = static_cast<char*>(XMLPlatformUtils::fgMemoryManager->allocate(size + headerSize));
  std::memcpy(block, &size, sizeof size);
  held += size;
  asked += size;
  return block + headerSize;
}

void Budget::deallocate(void* memory) {
  if (memory == nullptr) return;
  auto* block = static_cast<char*>(memory) - headerSize;
  XMLSize_t size = 0;
  std::memcpy(&size, block, sizeof size);
  held -= size;
  XMLPlatformUtils::fgMemoryManager->deallocate(block);
}

// Exceptions of the XML library may outlive the parse.
xercesc::MemoryManager* Budget::getExceptionMemoryManager() {
  return XMLPlatformUtils::fgMemoryManager;
}

void Budget::addRead(std::size_t bytes) {
  heldAllowed += bytes * bytesPerByteRead;
  askedAllowed += bytes * bytesPerByteRead;
}

void Budget::setLocator(const xercesc::Locator* newLocator) {
  locator = newLocator;
}

void Budget::refuse() {
  heldAllowed = held + graceBytes;
  askedAllowed = asked + graceBytes;
  throw xerces::Exception() << "XMLParser: in file \"" << fileName << "\" at line "
                            << (locator == nullptr ? 0 : locator->getLineNumber()) << " at column "
                            << (locator == nullptr ? 0 : locator->getColumnNumber())
                            << ": document expands too far beyond its size!";
}

}  // namespace service::util::config::xml::internal
