// The texts of files, to show what messages are about: the part of a line around a place, and the
// tag that ends there. A few files stay open; an object belongs to one thread at a time.
#ifndef SRC_REPORT_SOURCETEXT_HPP
#define SRC_REPORT_SOURCETEXT_HPP

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "report/SourceFile.hpp"
#include "service/util/config/xml/Location.hpp"

namespace service::util::config::report {

using xml::Location;

// Part of a file. Lines and columns count from 1, columns in UTF-16 units; 0 is not known.
struct Range {
  std::string file;
  int line = 0;
  int column = 0;
  int endLine = 0;
  int endColumn = 0;  // of the first character after it

  Location start() const { return {file, line, column}; }
};

// What is shown of a line: its characters, each with the column of the file in which it stands.
struct Excerpt {
  struct Shown {
    std::string text;  // safe to show: several characters for one that is not, but for a tab
    std::int64_t column;
  };

  // All of it in one text.
  std::string text() const;

  std::vector<Shown> characters;
};

class SourceText {
 public:
  // Nothing of file is shown from now on unless it is still what it is now. The first call for a
  // file counts.
  void expect(const std::string& file);

  // Of lines for which this is false no excerpt is given. Null: all are quoted.
  void quoteOnly(std::function<bool(const Location&)> allowed) { isQuotable = std::move(allowed); }

  // The tag that ends at location, or the point itself. The library says where a start tag ends;
  // people and editors want to go where it begins.
  Range rangeOf(const Location& location);

  // The line around location, cut when it is long. Empty for lines that there are not or that
  // must not be quoted, and for files that are not read.
  Excerpt excerpt(const Location& location);

  // The first byte that is no UTF-8.
  std::optional<Location> firstInvalid(const std::string& file);

  // Where text, a short one, stands for the last time.
  std::optional<Location> lastPlaceOf(const std::string& file, const std::string& text);

  bool isUtf16(const std::string& file) { return open(file).isUtf16(); }

 private:
  SourceFile& open(const std::string& file);

  std::unordered_map<std::string, SourceFile> files;
  std::unordered_map<std::string, FileState> expected;
  std::function<bool(const Location&)> isQuotable;
};

}  // namespace service::util::config::report

#endif
