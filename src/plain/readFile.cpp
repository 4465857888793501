#include "plain/readFile.hpp"

#include <fcntl.h>
#include <langinfo.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "plain/read.hpp"

namespace service::util::config::plain {

namespace {

class File {
 public:
  explicit File(const std::string& path)
      : number(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}
  ~File() {
    if (number >= 0) ::close(number);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  const int number;
};

// The number of bytes read; negative on failure.
ssize_t readSome(const File& file, char* buffer, std::size_t size) {
  ssize_t count = 0;
  do {
    count = ::read(file.number, buffer, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

// Nothing when the file is longer than it says, as those are that the kernel makes up.
std::optional<Bytes> bytesOf(const File& file) {
  struct stat status;
  if (file.number < 0 || ::fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode)) return {};
  const auto size = static_cast<std::size_t>(status.st_size);
  if (status.st_size <= 0 || size > maximumSize) return {};
  Bytes bytes = {std::unique_ptr<char[]>(new char[size + 1]), 0};
  ssize_t count = 0;
  do {  // asks for one byte more than there should be: less ends in front of it
    count = readSome(file, bytes.data.get() + bytes.size, size + 1 - bytes.size);
    if (count < 0) return {};
    bytes.size += static_cast<std::size_t>(count);
    if (bytes.size > size) return {};
  } while (count > 0 && bytes.size < size);
  bytes.data[bytes.size] = '\0';
  return bytes;
}

// The XML library gives texts in its local code page. As it is built for most systems that is UTF-8
// whatever the locale; else the locale must say so.
bool isLocalUtf8() {
  return ZU_LOCAL_CODE_PAGE_IS_UTF8 || std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0;
}

}  // namespace

std::optional<Document> readFile(const std::string& path, bool validate) {
  try {
    std::optional<Bytes> bytes = bytesOf(File(path));
    if (!bytes) return {};
    std::optional<Document> document = read(std::move(*bytes));
    if (!document || (validate && !document->isValid)) return {};
    if (!document->isAscii && !isLocalUtf8()) return {};
    return document;
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace service::util::config::plain
