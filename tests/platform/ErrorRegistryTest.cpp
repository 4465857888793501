#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "Support.hpp"

namespace {

constexpr std::uint32_t inModule(std::uint32_t module, std::uint32_t number) {
  return module << 24 | number;
}

// A text only for the full code, so that a lookup by the local number fails.
const char* oldName(std::uint32_t code) {
  return code == inModule(210, 7) ? "OLD" : "?";
}
const char* newName(std::uint32_t code) {
  return code == inModule(210, 7) ? "NEW" : "?";
}
const char* description(std::uint32_t) {
  return "A description.";
}

const char* nullText(std::uint32_t) {
  return nullptr;
}
const char* throwingText(std::uint32_t) {
  throw std::runtime_error("text");
}

// Uses the registry while it is being asked.
const char* nestedText(std::uint32_t) {
  cu_SetResolver(213, {"nested", description, description}, 24);
  return cu_GetErrorName(CU_EXCEPTION);
}

}  // namespace

TEST(ErrorRegistry, HasATextForEveryCode) {
  ASSERT_EQ(cu_SetResolver(211, {"bad", nullText, throwingText}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(255, {"last", oldName, description}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(210, {"old", oldName, description}, 24), 0u);
  ASSERT_EQ(cu_SetResolver(210, {"new", newName, description}, 24), 0u);
  const struct {
    std::uint32_t code;
    const char* name;
    const char* description;
    const char* module;
  } rows[] = {
      {0, "OK", "No error.", "cutil"},
      {1, "MISSING_ARGUMENT", "An argument is missing or empty!", "cutil"},
      {4, "SYSTEM_FAILURE", "An operating system call failed!", "cutil"},
      {7, "UNKNOWN_EXCEPTION", "An unknown exception was caught!", "cutil"},
      {8, "UNKNOWN_ERROR_CODE", "Unknown error code!", "cutil"},
      {inModule(210, 7), "NEW", "A description.", "new"},
      {inModule(2, 1), "UNKNOWN_ERROR_CODE", "Unknown error code!", "unknown module"},
      {inModule(211, 1), "UNKNOWN_ERROR_CODE", "Unknown error code!", "bad"},
      {0xffffffff, "?", "A description.", "last"},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(cu_GetErrorName(row.code), row.name) << row.code;
    EXPECT_STREQ(cu_GetErrorDescription(row.code), row.description) << row.code;
    EXPECT_STREQ(cu_GetErrorModule(row.code), row.module) << row.code;
  }
}

TEST(ErrorRegistry, CallsResolversWithoutItsLock) {
  ASSERT_EQ(cu_SetResolver(212, {"outer", nestedText, description}, 24), 0u);
  EXPECT_STREQ(cu_GetErrorName(inModule(212, 0)), "EXCEPTION");
  EXPECT_STREQ(cu_GetErrorModule(inModule(213, 0)), "nested");
}

TEST(ErrorRegistry, IsReadWhileAnotherThreadRegisters) {
  ASSERT_EQ(cu_SetResolver(210, {"old", oldName, description}, 24), 0u);
  std::atomic<bool> done{false};
  std::thread writer([&] {
    for (int i = 0; i < 20000; ++i) {
      cu_SetResolver(210, {"any", i % 2 == 0 ? newName : oldName, description}, 24);
    }
    done = true;
  });
  int strangers = 0;
  do {
    const std::string name = cu_GetErrorName(inModule(210, 7));
    if (name != "OLD" && name != "NEW") ++strangers;
  } while (!done);
  writer.join();
  EXPECT_EQ(strangers, 0);
}
