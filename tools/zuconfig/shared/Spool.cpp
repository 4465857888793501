#include "shared/Spool.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "shared/Failure.hpp"

namespace zuconfig {

namespace {

int openUnnamedFile() {
  const char* variable = std::getenv("TMPDIR");
  std::string name = variable != nullptr && *variable != '\0' ? variable : "/tmp";
  name += "/zuconfig-XXXXXX";
  const int file = ::mkostemp(name.data(), O_CLOEXEC);
  if (file >= 0) ::unlink(name.c_str());
  return file;
}

[[noreturn]] void fail(const char* step) {
  throw Failure(NOT_LOADED, std::string("standard input: ") + step + ": " + std::strerror(errno));
}

void writeAll(int file, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail("keeping a copy failed");
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

void copyStandardInput(int file) {
  char buffer[65536];
  for (;;) {
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail("reading failed");
    if (count == 0) return;
    writeAll(file, buffer, static_cast<std::size_t>(count));
  }
}

}  // namespace

Spool::Spool() : file(openUnnamedFile()) {
  if (file < 0) fail("keeping a copy failed");
  try {
    copyStandardInput(file);
    path = "/proc/self/fd/" + std::to_string(file);
  } catch (...) {
    ::close(file);
    throw;
  }
}

Spool::~Spool() {
  ::close(file);
}

}  // namespace zuconfig
