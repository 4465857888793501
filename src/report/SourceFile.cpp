#include "report/SourceFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <tuple>

#include "cppUtil/internal/Character.hpp"

namespace service::util::config::report {

namespace {

using cppUtil::internal::Character;

constexpr std::size_t blockSize = 8192;
constexpr off_t bytesPerMark = 4096;
constexpr std::size_t longestCharacter = 4;

// Waits for nothing, as a FIFO without a writer would.
int openRegular(const std::string& path, const std::optional<FileState>& expected) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  struct stat status;
  if (file >= 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
      (!expected || *expected == FileState(status))) {
    return file;
  }
  if (file >= 0) ::close(file);
  return -1;
}

bool isSame(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isLineBreak(const Character& character) {
  return character.code == '\n' || character.code == '\r';
}

// Lines end as in XML: with LF, CR LF or CR.
void advance(Position& at, const Character& character, char next) {
  at.offset += static_cast<off_t>(character.step());
  at.column += character.units();
  if (!isLineBreak(character)) return;
  if (character.code == '\r' && next == '\n') ++at.offset;
  at.lineStart = at.offset;
  ++at.line;
  at.column = 1;
}

}  // namespace

FileState::FileState(const struct stat& status)
    : device(status.st_dev),
      inode(status.st_ino),
      size(status.st_size),
      modified(status.st_mtim),
      changed(status.st_ctim) {}

bool FileState::operator==(const FileState& other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         isSame(modified, other.modified) && isSame(changed, other.changed);
}

SourceFile::SourceFile(const std::string& path, const std::optional<FileState>& expected)
    : file(openRegular(path, expected)) {
  const std::string start = read(0, 3);
  hasUtf16Mark = start.compare(0, 2, "\xFE\xFF") == 0 || start.compare(0, 2, "\xFF\xFE") == 0;
  Position first;
  if (start == "\xEF\xBB\xBF") first.offset = first.lineStart = 3;  // a mark, and no character
  marks.push_back(first);
}

SourceFile::~SourceFile() {
  if (file >= 0) ::close(file);
}

std::string SourceFile::read(off_t offset, std::size_t size) const {
  if (file < 0 || hasUtf16Mark) return "";
  std::string bytes(size, '\0');
  const ssize_t count = ::pread(file, bytes.data(), size, offset);
  bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return bytes;
}

// From character to character until isEnd(place, character) or the end of the file.
template <class IsEnd>
Position SourceFile::walk(Position at, const IsEnd& isEnd) {
  while (true) {
    const off_t start = at.offset;
    const std::string block = read(start, blockSize);
    const bool isLast = block.size() < blockSize;
    for (std::size_t i = 0; i + (isLast ? 0 : longestCharacter) < block.size();
         i = static_cast<std::size_t>(at.offset - start)) {
      const Character character(block.data() + i, block.size() - i);
      if (isEnd(at, character)) return at;
      advance(at, character, i + 1 < block.size() ? block[i + 1] : '\0');
      if (at.offset - marks.back().offset >= bytesPerMark) marks.push_back(at);
    }
    if (isLast) return at;
  }
}

template <class IsBehind>
const Position& SourceFile::lastMark(const IsBehind& isBehind) const {
  return *std::prev(std::partition_point(std::next(marks.begin()), marks.end(),
                                         [&](const Position& mark) { return !isBehind(mark); }));
}

std::optional<Position> SourceFile::find(int line, int column) {
  const Position start = lastMark([&](const Position& mark) {
    return std::tie(mark.line, mark.column) > std::make_tuple(line, column);
  });
  const Position found = walk(start, [&](const Position& at, const Character& character) {
    return at.line == line && (at.column >= column || isLineBreak(character));
  });
  if (found.line != line) return std::nullopt;
  return found;
}

Position SourceFile::positionOf(off_t offset) {
  const Position start = lastMark([&](const Position& mark) { return mark.offset > offset; });
  return walk(start, [&](const Position& at, const Character& character) {
    return at.offset + static_cast<off_t>(character.step()) > offset;
  });
}

std::optional<Position> SourceFile::findLast(const std::string& text) {
  std::optional<off_t> last;
  std::string block;
  for (off_t offset = 0; !(block = read(offset, blockSize)).empty();) {
    if (const std::size_t at = block.rfind(text); at != block.npos) {
      last = offset + static_cast<off_t>(at);
    }
    if (block.size() < blockSize) break;
    offset += static_cast<off_t>(blockSize - text.size());
  }
  if (!last) return std::nullopt;
  return positionOf(*last);
}

std::optional<Position> SourceFile::findInvalid() {
  bool isFound = false;
  const Position found = walk(marks.front(), [&](const Position&, const Character& character) {
    return isFound = !character.isValid();
  });
  if (!isFound) return std::nullopt;
  return found;
}

}  // namespace service::util::config::report
