// Opens the shared object of the part that needs the XML library. It is never closed: exceptions
// that it threw, and functions that the XML library's own libraries have registered for the exit of
// the process, live on in it.

#include <dlfcn.h>
#include <unistd.h>

#include <stdexcept>

#include "entry/findXmlPart.hpp"

namespace service::util::config::xml::internal {

namespace {

// The file beside this library, so that both are of one installation, whatever led the program to
// this one. Empty when there is none, or when this library was found by a name that means another
// directory by now.
std::string besideThisLibrary() {
  Dl_info here = {};
  if (::dladdr(reinterpret_cast<const void*>(&findXmlPart), &here) == 0) return "";
  const std::string path = here.dli_fname;
  if (path.empty() || path.front() != '/') return "";
  const std::string beside = path.substr(0, path.rfind('/') + 1) + ZU_XML_PART;
  return ::access(beside.c_str(), F_OK) == 0 ? beside : "";
}

[[noreturn]] void fail(const std::string& reason) {
  throw std::runtime_error("cannot open " ZU_XML_PART ", which reads what is no plain document: " +
                           reason);
}

}  // namespace

// An image may keep the parts apart; then the loader knows where.
const XmlPart& findXmlPart() {
  const std::string beside = besideThisLibrary();
  const std::string name = beside.empty() ? ZU_XML_PART : beside;
  void* object = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (object == nullptr) fail(::dlerror());
  const auto entry =
      reinterpret_cast<decltype(&zuUtilConfigXml)>(::dlsym(object, "zuUtilConfigXml"));
  if (entry == nullptr) fail(::dlerror());
  const XmlPart* part = entry(xmlPartVersion);
  if (part == nullptr) fail(name + ": not of version " + xmlPartVersion);
  return *part;
}

}  // namespace service::util::config::xml::internal
