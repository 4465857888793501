#include "service/util/config/xml/Session.hpp"
#include "cppUtil/err/guarded.hpp"
#include "xml/XmlLibrary.hpp"

namespace service::util::config::xml {

using internal::XmlLibrary;

Session::Session() {
  cppUtil::err::guarded({"src/session", "service::util::config::xml::Session::Session()", __LINE__},
                        [] { XmlLibrary::initialize(); });
}

Session::~Session() {
  XmlLibrary::terminate();
}

}  // namespace service::util::config::xml
