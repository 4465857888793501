// Collects what the XML library reports about a parse, and renders it as one report.
//
// It never stops a parse; the parser looks at the records afterwards. Belongs to one thread at a
// time, like the parser that it is installed in.
#ifndef XERCES_ERRORHANDLER_HPP
#define XERCES_ERRORHANDLER_HPP

#include <cstdint>
#include <string>
#include <vector>
#include <xercesc/sax/ErrorHandler.hpp>

namespace xerces {

class ErrorHandler : public xercesc::ErrorHandler {
 public:
  enum Severity : std::uint32_t { WARNING = 0, ERROR = 1, FATAL = 2 };

  // One report of the XML library; a record, never thrown. Texts are in the local code page, empty
  // where the library gives none.
  struct Exception {
    Severity severity;
    std::uint64_t lineNumber;
    std::uint64_t columnNumber;
    std::string publicId;
    std::string systemId;  // the document or entity being read
    std::string message;
  };

  ~ErrorHandler() override;
  void warning(const xercesc::SAXParseException& e) override;
  void error(const xercesc::SAXParseException& e) override;
  void fatalError(const xercesc::SAXParseException& e) override;
  // Called when a parse begins.
  void resetErrors() override;

  // The records since the last reset, in the order in which they arrived.
  const std::vector<Exception>& getErrors() const { return errors; }

  // Whether a record is worse than a warning.
  bool hasErrors() const;

  // A header line, then one line for each record.
  std::string getReport() const;

 private:
  void record(Severity severity, const xercesc::SAXParseException& e);

  std::vector<Exception> errors;
};

}  // namespace xerces

#endif
