// A file that is read again, to show what a message is about: in parts, however large it is.
//
// Places are found from marks, one every few thousand bytes, which are set as far as the file was
// needed. So a look costs a block or two, also in the middle of an endless line. Only regular files
// are read. An object belongs to one thread at a time.
#ifndef SRC_REPORT_SOURCEFILE_HPP
#define SRC_REPORT_SOURCEFILE_HPP

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace service::util::config::report {

// Where a character stands in a file. Lines and columns count from 1, columns in UTF-16 units.
struct Position {
  off_t offset = 0;
  off_t lineStart = 0;  // where its line begins
  std::int64_t line = 1;
  std::int64_t column = 1;
};

// What tells a file from all others, and from itself after a change.
struct FileState {
  explicit FileState(const struct stat& status);
  bool operator==(const FileState& other) const;

  dev_t device;
  ino_t inode;
  off_t size;
  timespec modified;
  timespec changed;
};

class SourceFile {
 public:
  // What cannot be opened or is no regular file is empty; so is UTF-16, which has no lines here,
  // and a file in another state than the one that is expected, if one is.
  explicit SourceFile(const std::string& path,
                      const std::optional<FileState>& expected = std::nullopt);
  ~SourceFile();
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;

  bool isUtf16() const { return hasUtf16Mark; }

  // The bytes from offset on, size of them unless the file ends before.
  std::string read(off_t offset, std::size_t size) const;

  // The place of line and column, or the end of a shorter line; nothing when there is no such line.
  std::optional<Position> find(int line, int column);

  // The place of the byte at offset.
  Position positionOf(off_t offset);

  // Where text, a short one, stands for the last time.
  std::optional<Position> findLast(const std::string& text);

  // The first byte that is no UTF-8.
  std::optional<Position> findInvalid();

 private:
  template <class IsEnd>
  Position walk(Position at, const IsEnd& isEnd);
  template <class IsBehind>
  const Position& lastMark(const IsBehind& isBehind) const;

  int file;
  bool hasUtf16Mark = false;
  std::vector<Position> marks;  // in the order of the file; the first is its start
};

}  // namespace service::util::config::report

#endif
