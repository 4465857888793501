#include "xml/FileSource.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include "xerces/Exception.hpp"
#include "xerces/dom.hpp"

namespace service::util::config::xml::internal {

namespace {

class FileStream : public xercesc::BinInputStream {
 public:
  // Takes over the open file. The path is for the error.
  FileStream(int file, std::string path, bool isRepeated, Budget& budget)
      : file(file), path(std::move(path)), isRepeated(isRepeated), budget(budget) {}
  ~FileStream() override { ::close(file); }
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  XMLFilePos curPos() const override { return position; }

  XMLSize_t readBytes(XMLByte* buffer, XMLSize_t size) override {
    ssize_t count = 0;
    do {
      count = ::read(file, buffer, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
      throw xerces::Exception() << "XMLParser: in file \"" << path
                                << "\": reading failed: " << std::strerror(errno) << "!";
    }
    const auto bytes = static_cast<XMLSize_t>(count);
    position += bytes;
    budget.addRead(bytes, isRepeated);
    return bytes;
  }

  const XMLCh* getContentType() const override { return nullptr; }

 private:
  int file;
  std::string path;
  bool isRepeated;
  Budget& budget;
  XMLFilePos position = 0;
};

}  // namespace

FileSource::FileSource(const std::string& path, Budget& budget) : path(path), budget(budget) {
  setSystemId(xercesc::LocalFileInputSource(xerces::fromLocal(path).c_str()).getSystemId());
}

FileSource::FileSource(const std::string& path, const XMLCh* systemId, Budget& budget)
    : InputSource(systemId), path(path), budget(budget) {}

xercesc::BinInputStream* FileSource::makeStream() const {
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return nullptr;
  try {
    struct stat status;
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
      const bool isRepeated = !budget.isNewFile(status.st_dev, status.st_ino);
      return new FileStream(file, path, isRepeated, budget);
    }
  } catch (...) {
    ::close(file);
    throw;
  }
  ::close(file);
  return nullptr;
}

}  // namespace service::util::config::xml::internal
