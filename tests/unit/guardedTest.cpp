#include "cppUtil/err/guarded.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "Failure.hpp"

namespace {

using cppUtil::err::Exception;
using cppUtil::err::guarded;
using unit::Failure;
using unit::failureOf;

constexpr cppUtil::err::Place place = {"src/boundary", "void boundary()", 42};

TEST(Guarded, TranslatesWhatIsThrown) {
  const struct {
    const char* name;
    std::function<void()> thrower;
    std::uint32_t code;
    const char* message;
  } rows[] = {
      {"standard exception", [] { throw std::runtime_error("broken"); }, 6, "broken"},
      {"out of memory", [] { throw std::bad_alloc(); }, 6, "std::bad_alloc"},
      {"C string", [] { throw "a text"; }, 7, "a text"},
      {"null C string", [] { throw static_cast<const char*>(nullptr); }, 7, ""},
      {"number", [] { throw 5; }, 7, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(failureOf([&] { guarded(place, row.thrower); }),
              Failure(row.code, 0, "src/boundary", "void boundary()", 42, row.message))
        << row.name;
  }
}

TEST(Guarded, GuardTellsTheLineOfTheStep) {
  const cppUtil::err::Guard guard("src/boundary", "void boundary()");
  const int line = __LINE__ + 1;
  EXPECT_EQ(failureOf([&] { guard([] { throw 5; }); }),
            Failure(7, 0, "src/boundary", "void boundary()", line, ""));
}

TEST(Guarded, PassesTheVeryExceptionThroughEveryBoundary) {
  struct Derived : Exception {
    using Exception::Exception;
  };
  const auto inner = [] { throw Derived(0x3000001, 2, "src/inner", "void inner()", 9, "text"); };
  try {
    guarded(place, [&] { guarded(place, inner); });
    FAIL() << "nothing was thrown";
  } catch (const Derived& e) {
    EXPECT_EQ(unit::failureIn(e), Failure(0x3000001, 2, "src/inner", "void inner()", 9, "text"));
  }
}

}  // namespace
