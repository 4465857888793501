#include <cutil/cutil.h>
#include <gtest/gtest.h>

#include "service/util/config/errorTexts.hpp"

namespace {

constexpr const char* unknown = "Unknown Error error code";

TEST(ErrorModule, IsRegisteredWithItsTexts) {
  const struct {
    std::uint32_t code;
    const char* name;
    const char* description;
  } rows[] = {
      {0x3000000, "INVALID_SELECT", "Ivalid configuration property select string!"},
      {0x3000001, "NOT_FOUND", "Requested configuration property not found!"},
      {0x3000002, "DUPLICATE_SECTION", "Duplicated configuration section!"},
      {0x3000003, unknown, unknown},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(cu_GetErrorName(row.code), row.name);
    EXPECT_STREQ(cu_GetErrorDescription(row.code), row.description);
    EXPECT_STREQ(cu_GetErrorModule(row.code), "serviceUtilConfig");
  }
  EXPECT_STREQ(service::util::config::internal::errorName(1), unknown);
  EXPECT_STREQ(service::util::config::internal::errorDescription(1), unknown);
}

}  // namespace
