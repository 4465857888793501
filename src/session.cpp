#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "cppUtil/err/guarded.hpp"
#include "service/util/config/xml/Session.hpp"

namespace service::util::config::xml {

using xercesc::XMLPlatformUtils;

Session::Session() {
  cppUtil::err::guarded(
      {"src/session", "service::util::config::xml::Session::Session()", __LINE__},
      [] { XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale); });
}

Session::~Session() {
  XMLPlatformUtils::Terminate();
}

}  // namespace service::util::config::xml
