#include "Support.hpp"

namespace {

constexpr std::uint32_t inModule(std::uint32_t module, std::uint32_t number) {
  return module << 24 | number;
}

}  // namespace

TEST(ErrorRegistry, HasATextForEveryCode) {
  // Only for the full code, so that a lookup by the local number fails.
  const cu_ErrorText text = [](std::uint32_t code) {
    return code == inModule(210, 7) ? "SEVEN" : "?";
  };
  const cu_ErrorText noText = [](std::uint32_t) -> const char* { return nullptr; };
  const cu_ErrorText throwing = [](std::uint32_t) -> const char* {
    throw std::runtime_error("text");
  };
  // Uses the registry while it is being asked.
  const cu_ErrorText registering = [](std::uint32_t) {
    cu_SetResolver(213, {"registered", cu_GetErrorName, cu_GetErrorDescription}, 24);
    return cu_GetErrorName(CU_EXCEPTION);
  };
  ASSERT_EQ(cu_SetResolver(211, {"bad", noText, throwing}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(212, {"outer", registering, text}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(255, {"last", text, text}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(210, {"old", noText, noText}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(210, {"new", text, text}, 24), 0u);
  const struct {
    std::uint32_t code;
    const char* name;
    const char* description;
    const char* module;
  } rows[] = {
      {0, "OK", "No error.", "cutil"},
      {4, "SYSTEM_FAILURE", "An operating system call failed!", "cutil"},
      {7, "UNKNOWN_EXCEPTION", "An unknown exception was caught!", "cutil"},
      {8, "UNKNOWN_ERROR_CODE", "Unknown error code!", "cutil"},
      {inModule(210, 7), "SEVEN", "SEVEN", "new"},
      {inModule(2, 1), "UNKNOWN_ERROR_CODE", "Unknown error code!", "unknown module"},
      {inModule(211, 1), "UNKNOWN_ERROR_CODE", "Unknown error code!", "bad"},
      {inModule(212, 1), "EXCEPTION", "?", "outer"},
      {0xffffffff, "?", "?", "last"},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(cu_GetErrorName(row.code), row.name) << row.code;
    EXPECT_STREQ(cu_GetErrorDescription(row.code), row.description) << row.code;
    EXPECT_STREQ(cu_GetErrorModule(row.code), row.module) << row.code;
  }
  EXPECT_STREQ(cu_GetErrorModule(inModule(213, 0)), "registered");
}
