#include "xerces/ErrorHandler.hpp"

#include <algorithm>
#include <sstream>
#include <xercesc/sax/SAXParseException.hpp>

#include "xerces/dom.hpp"

namespace xerces {

namespace {

const char* labelOf(ErrorHandler::Severity severity) {
  switch (severity) {
    case ErrorHandler::WARNING:
      return "WARNING";
    case ErrorHandler::ERROR:
      return "ERROR";
    case ErrorHandler::FATAL:
      return "FATAL";
  }
  return "";
}

}  // namespace

ErrorHandler::~ErrorHandler() = default;

void ErrorHandler::warning(const xercesc::SAXParseException& e) {
  record(WARNING, e);
}

void ErrorHandler::error(const xercesc::SAXParseException& e) {
  record(ERROR, e);
}

void ErrorHandler::fatalError(const xercesc::SAXParseException& e) {
  record(FATAL, e);
}

void ErrorHandler::resetErrors() {
  errors.clear();
}

bool ErrorHandler::hasErrors() const {
  return std::any_of(errors.begin(), errors.end(), [](const Exception& error) {
    return error.severity == ERROR || error.severity == FATAL;
  });
}

std::string ErrorHandler::getReport() const {
  std::stringstream report;
  report << "XML Parser reported the following errors:\n";
  for (const Exception& error : errors) {
    report << "\t" << labelOf(error.severity) << "  in \"" << error.systemId
           << "\"(line=" << error.lineNumber << ", column=" << error.columnNumber
           << "): " << error.message << "\n";
  }
  return report.str();
}

void ErrorHandler::record(Severity severity, const xercesc::SAXParseException& e) {
  errors.push_back({severity, e.getLineNumber(), e.getColumnNumber(), transcode(e.getPublicId()),
                    transcode(e.getSystemId()), transcode(e.getMessage())});
}

}  // namespace xerces
