#include "platform/posix/System.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Failure.h"
#include "platform/Text.h"

namespace Posix {

void FailWith(std::string_view operation, std::string_view path, int error) {
  const std::string words = std::generic_category().message(error);
  throw Failure(Concat(operation, " \"", path, "\": ", Text::FromUtf8(words).value_or(""),
                       " (error ", error, ")"),
                error);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

Descriptor::~Descriptor() {
  if (number_ < 0) return;
  const int keptError = errno;
  close(number_);
  errno = keptError;
}

int Descriptor::Release() {
  return std::exchange(number_, -1);
}

Descriptor OpenOrdinary(const std::string& native, int flags, mode_t mode) {
  int number = -1;
  do {
    number = open(native.c_str(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, mode);
  } while (number < 0 && errno == EINTR);
  Descriptor file(number);
  if (!file.IsOpen()) return file;
  struct stat status = {};
  if (fstat(file.Number(), &status) != 0) return Descriptor();
  if (S_ISREG(status.st_mode)) return file;
  errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  return Descriptor();
}

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace Posix
