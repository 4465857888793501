#include "entry/findXmlPart.hpp"

namespace service::util::config::xml::internal {

const XmlPart& findXmlPart() {
  return *zuUtilConfigXml(xmlPartVersion);
}

}  // namespace service::util::config::xml::internal
