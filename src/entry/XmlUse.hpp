// Holds the XML library initialised while it lives, and longer while there are Sessions.
//
// Changes state of the whole process, as loads do; one thread at a time.
#ifndef SRC_ENTRY_XMLUSE_HPP
#define SRC_ENTRY_XMLUSE_HPP

#include "load/XmlPart.hpp"

namespace service::util::config::xml::internal {

// The part of the library that needs the XML library; found by the first call and kept. Throws
// cppUtil::err::Exception with the signature of xml::create, wherever it is needed first.
const XmlPart& xmlPart();

class XmlUse {
 public:
  // Throws as xmlPart does, also when the XML library cannot be initialised.
  XmlUse();
  ~XmlUse();
  XmlUse(const XmlUse&) = delete;
  XmlUse& operator=(const XmlUse&) = delete;

  const XmlPart* operator->() const { return &part; }

  // While there are sessions, the XML library stays initialised from its next use on.
  static void beginSession();
  static void endSession();

 private:
  const XmlPart& part;
};

}  // namespace service::util::config::xml::internal

#endif
