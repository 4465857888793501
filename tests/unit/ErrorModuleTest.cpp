#include <cutil/cutil.h>
#include <gtest/gtest.h>

#include "service/util/config/errorModule.hpp"
#include "service/util/config/errorTexts.hpp"

namespace {

namespace internal = service::util::config::internal;

TEST(ErrorModule, NamesAndDescriptions) {
  const char* unknown = "Unknown Error error code";
  const struct {
    std::uint32_t code;
    const char* name;
    const char* description;
  } rows[] = {
      {0x3000000, "INVALID_SELECT", "Ivalid configuration property select string!"},
      {0x3000001, "NOT_FOUND", "Requested configuration property not found!"},
      {0x3000002, "DUPLICATE_SECTION", "Duplicated configuration section!"},
      {0x3000003, unknown, unknown},
      {0, unknown, unknown},  // the whole code counts, not the local number
      {1, unknown, unknown},
      {0x2000000, unknown, unknown},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.code);
    EXPECT_STREQ(internal::errorName(row.code), row.name);
    EXPECT_STREQ(internal::errorDescription(row.code), row.description);
    if (row.code >> 24 != 3) continue;
    EXPECT_STREQ(cu_GetErrorName(row.code), row.name);
    EXPECT_STREQ(cu_GetErrorDescription(row.code), row.description);
    EXPECT_STREQ(cu_GetErrorModule(row.code), "serviceUtilConfig");
  }
}

}  // namespace
