// The one exception type that callers of the library see.
//
// It says what failed (an error code and a message), where it was raised (source file, function and
// line), and has the stack of the moment when it was made. Part of the support layer. An object
// belongs to one thread at a time; what() may be called on any thread.
#ifndef CPPUTIL_ERR_EXCEPTION_HPP
#define CPPUTIL_ERR_EXCEPTION_HPP

#include <cstdint>
#include <exception>
#include <sstream>
#include <string>

#include "cppUtil/err/StackTrace.hpp"
#include "cppUtil/export.hpp"

namespace cppUtil::err {

class ZU_EXPORT Exception : public std::exception {
 public:
  // code: module number in bits 31..24, number within the module below. systemErrorCode: an errno
  // value, 0 when none applies. file: the unit, "src/config" for example. function: the full
  // signature of the raising function. Walks the stack, which costs microseconds per frame.
  Exception(unsigned int code, int systemErrorCode, const std::string& file,
            const std::string& function, int line, const std::string& message);
  // Copies everything, the stack of the source included.
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  ~Exception() override;

  // The registry's short name of the code, "NOT_FOUND" for example; the text is never freed. The
  // message is read with getMessage.
  const char* what() const noexcept override;

  // Appends a value to the message, formatted by a fresh stream with default flags. A null C string
  // appends nothing.
  template <class T>
  Exception& operator<<(const T& value) {
    std::stringstream text;
    text << value;
    message += text.str();
    return *this;
  }

  // References live as long as the exception.
  std::uint32_t getCode() const noexcept { return code; }
  int getSystemErrorCode() const noexcept { return systemErrorCode; }
  const std::string& getFile() const noexcept { return file; }
  const std::string& getFunction() const noexcept { return function; }
  int getLine() const noexcept { return line; }
  const std::string& getMessage() const noexcept { return message; }
  const StackTrace& getStackTrace() const noexcept { return stackTrace; }

 private:
  std::uint32_t code;
  std::int32_t systemErrorCode;
  std::string file;
  std::string function;
  std::int32_t line;
  std::string message;
  StackTrace stackTrace;
};

}  // namespace cppUtil::err

#endif
