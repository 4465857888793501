// The exception of the XML toolkit: a text that is built by insertion.
//
// It stays inside the library, whose loader translates it, unless a program uses the toolkit by
// itself. An object belongs to one thread at a time.
#ifndef XERCES_EXCEPTION_HPP
#define XERCES_EXCEPTION_HPP

#include <exception>
#include <sstream>
#include <string>

#include "cppUtil/export.hpp"

namespace xerces {

class ZU_EXPORT Exception : public std::exception {
 public:
  Exception() = default;
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  ~Exception() override;

  // The text, valid as long as the exception.
  const char* what() const noexcept override;

  // Appends a value, formatted by a fresh stream with default flags. A null C string appends
  // nothing. A UTF-16 text appends its address, not its characters: transcode it first.
  template <class T>
  Exception& operator<<(const T& value) {
    std::stringstream text;
    text << value;
    message += text.str();
    return *this;
  }

 private:
  std::string message;
};

}  // namespace xerces

#endif
