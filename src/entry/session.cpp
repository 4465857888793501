#include "service/util/config/xml/Session.hpp"

#include "entry/XmlUse.hpp"

namespace service::util::config::xml {

using internal::XmlUse;

Session::Session() {
  XmlUse::beginSession();
}

Session::Session(Opening /*now*/) : Session() {
  const XmlUse opened;
}

Session::~Session() {
  XmlUse::endSession();
}

}  // namespace service::util::config::xml
