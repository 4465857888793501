#include "service/util/config/xml/check.hpp"

#include "cppUtil/err/guarded.hpp"
#include "entry/XmlUse.hpp"

namespace service::util::config::xml {

std::vector<Problem> check(const std::string& file, const SchemeList& schemes, bool validate) {
  Observer nobody;
  return check(file, schemes, validate, nobody);
}

std::vector<Problem> check(const std::string& file, const SchemeList& schemes, bool validate,
                           Observer& observer) {
  return cppUtil::err::guarded(
      {"src/check",
       "std::vector<Problem> service::util::config::xml::check(const string&, const SchemeList&, "
       "bool, Observer&)",
       __LINE__},
      [&] {
        const internal::XmlUse xml;
        return xml->check(file, schemes, validate, observer);
      });
}

}  // namespace service::util::config::xml
