#include "cppUtil/logger/Logger.hpp"

#include <gtest/gtest.h>

#include "Failure.hpp"

namespace {

using unit::Failure;
using unit::failureOf;

TEST(Logger, EmptiesItsTextOnSuccessAndKeepsItOnFailure) {
  cppUtil::logger::Logger quiet(4), refused(5);
  for (auto* logger : {&quiet, &refused})
    *logger << static_cast<const char*>(nullptr) << "Parsing " << std::string("file") << ' ' << 5U
            << std::endl;
  quiet.log();
  EXPECT_EQ(quiet.str(), "");

  const Failure failure = failureOf([&] { refused.log(); });
  EXPECT_EQ(failure, Failure(5, 0, "platform/cutil/Logger", "cu_Logger_log", std::get<4>(failure),
                             "Argument \"level\" is 5, but must be 0 to 4!"));
  EXPECT_EQ(refused.str(), "Parsing file 5\n");
}

}  // namespace
