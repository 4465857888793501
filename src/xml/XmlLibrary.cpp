#include "xml/XmlLibrary.hpp"

#include <sys/mman.h>

#include <new>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "xml/withoutXmlExceptions.hpp"

namespace service::util::config::xml::internal {

using xercesc::XMLPlatformUtils;

namespace {

// The XML library ends the process, or stays half initialised for good, when there is no memory to
// initialise it. That takes some 400 KB; whether they are there is tried first. Not from the heap,
// which would return them to the system and fetch them again.
void requireMemory() {
  constexpr std::size_t size = 512UL * 1024;
  void* memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  ::munmap(memory, size);
}

}  // namespace

void initializeXmlLibrary() {
  if (XMLPlatformUtils::fgMemoryManager == nullptr) requireMemory();
  withoutXmlExceptions(
      [] { XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale); });
}

void terminateXmlLibrary() {
  XMLPlatformUtils::Terminate();
}

}  // namespace service::util::config::xml::internal
