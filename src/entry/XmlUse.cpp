#include "entry/XmlUse.hpp"

#include "cppUtil/err/guarded.hpp"
#include "entry/findXmlPart.hpp"

namespace service::util::config::xml::internal {

namespace {

using cppUtil::err::Guard;

constexpr Guard guarded(unit, createSignature);

unsigned int sessions = 0;
bool isKept = false;  // initialised once more, on behalf of the sessions

}  // namespace

const XmlPart& xmlPart() {
  static const XmlPart* part = nullptr;
  if (part == nullptr) guarded([] { part = &findXmlPart(); });
  return *part;
}

XmlUse::XmlUse() : part(xmlPart()) {
  guarded([&] {
    if (sessions > 0 && !isKept) {
      part.initialize();
      isKept = true;
    }
    part.initialize();
  });
}

XmlUse::~XmlUse() {
  part.terminate();
}

void XmlUse::beginSession() {
  ++sessions;
}

void XmlUse::endSession() {
  if (--sessions > 0 || !isKept) return;
  isKept = false;
  xmlPart().terminate();
}

}  // namespace service::util::config::xml::internal
