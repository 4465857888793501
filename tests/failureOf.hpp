// What a call reports, as text.
#ifndef TESTS_FAILUREOF_HPP
#define TESTS_FAILUREOF_HPP

#include <string>

#include "cppUtil/err/Exception.hpp"

// The name of the code, and the message.
template <class Call>
std::string failureOf(const Call& call) {
  try {
    call();
  } catch (const cppUtil::err::Exception& e) {
    return std::string(e.what()) + ": " + e.getMessage();
  }
  return "nothing";
}

#endif
