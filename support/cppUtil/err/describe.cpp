#include "cppUtil/err/describe.hpp"

#include <sstream>
#include <system_error>

#include "cppUtil/internal/text.hpp"

namespace cppUtil::err {

namespace {

// A report of the XML library has a line for each error, and ends with a line break.
std::string onOneLine(const std::string& text) {
  std::string line;
  for (std::size_t start = 0; (start = text.find_first_not_of("\n\t", start)) != text.npos;) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    line += (line.empty() ? "" : " ") + text.substr(start, end - start);
    start = end;
  }
  return internal::printable(line);
}

}  // namespace

std::string describe(const Exception& exception) {
  std::ostringstream line;
  line << exception.what() << " (0x" << std::hex << exception.getCode() << std::dec << ")";
  if (const std::string message = onOneLine(exception.getMessage()); !message.empty()) {
    line << ": " << message;
  }
  if (const int error = exception.getSystemErrorCode(); error != 0) {
    line << ": " << std::generic_category().message(error);
  }
  line << " [" << internal::printable(exception.getFile()) << ":" << exception.getLine() << "]";
  return line.str();
}

}  // namespace cppUtil::err
