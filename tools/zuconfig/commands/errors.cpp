// zuconfig errors: the codes that the library knows by heart.
#include <cutil/cutil.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <optional>

#include "commands/Command.hpp"
#include "service/util/config/errorModule.hpp"
#include "shared/text.hpp"

// Platform libraries need not have these, which are null then.
#pragma weak cu_GetErrorModule
#pragma weak cu_GetErrorDescription

namespace zuconfig {

namespace {

using namespace service::util::config;

constexpr std::uint32_t codes[] = {CU_MISSING_ARGUMENT,  CU_OUT_OF_MEMORY,    CU_FILE_NOT_FOUND,
                                   CU_SYSTEM_FAILURE,    CU_INVALID_ARGUMENT, CU_EXCEPTION,
                                   CU_UNKNOWN_EXCEPTION, INVALID_SELECT,      NOT_FOUND,
                                   DUPLICATE_SECTION};

struct Errors {
  static constexpr const char* name = "errors";
  static constexpr const char* summary = "Print the names and descriptions of error codes";

  void define(CLI::App& command) {
    command.add_option(
        "CODE", wanted,
        "A number, decimal or hexadecimal with 0x, or a name; all codes unless given");
  }

  ExitCode run() const {
    if (wanted.empty()) {
      std::for_each(std::begin(codes), std::end(codes), print);
      return FINE;
    }
    const auto* found = std::find_if(std::begin(codes), std::end(codes), [&](std::uint32_t code) {
      return wanted == cu_GetErrorName(code) || wantedNumber() == code;
    });
    if (found == std::end(codes)) throw Failure(NO, "no error code " + printable(wanted) + near());
    print(*found);
    return FINE;
  }

 private:
  static void print(std::uint32_t code) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%x", code);
    std::cout << number << "\t" << cu_GetErrorName(code) << "\t" << tell(cu_GetErrorModule, code)
              << "\t" << tell(cu_GetErrorDescription, code) << "\n";
  }

  static const char* tell(const char* (*function)(std::uint32_t), std::uint32_t code) {
    return function == nullptr ? "not known" : function(code);
  }

  std::optional<std::uint32_t> wantedNumber() const {
    try {
      std::size_t length = 0;
      const unsigned long long number = std::stoull(wanted, &length, 0);
      if (length == wanted.size() && number <= UINT32_MAX)
        return static_cast<std::uint32_t>(number);
    } catch (const std::logic_error&) {  // no number, or too large for any code
    }
    return std::nullopt;
  }

  std::string near() const {
    std::vector<std::string> names;
    for (const std::uint32_t code : codes) names.emplace_back(cu_GetErrorName(code));
    return didYouMean(nearest(wanted, names));
  }

  std::string wanted;
};

}  // namespace

void addErrors(CLI::App& app, Chosen& chosen) {
  addCommand<Errors>(app, chosen);
}

}  // namespace zuconfig
