// What an operation reported, as one value: comparisons look at all of it and print all of it.
#ifndef TESTS_UNIT_FAILURE_HPP
#define TESTS_UNIT_FAILURE_HPP

#include <cstdint>
#include <string>
#include <tuple>

#include "cppUtil/err/Exception.hpp"

namespace unit {

// Code, system error code, file, function, line and message; empty when nothing was thrown.
using Failure = std::tuple<std::uint32_t, int, std::string, std::string, int, std::string>;

inline Failure failureIn(const cppUtil::err::Exception& e) {
  return {e.getCode(), e.getSystemErrorCode(), e.getFile(), e.getFunction(),
          e.getLine(), e.getMessage()};
}

template <class Step>
Failure failureOf(const Step& step) {
  try {
    step();
  } catch (const cppUtil::err::Exception& e) {
    return failureIn(e);
  }
  return {};
}

}  // namespace unit

#endif
