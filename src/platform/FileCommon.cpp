#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/Failure.h"
#include "platform/FileSystem.h"

File::File(std::intptr_t handle, std::string path, std::shared_ptr<FaultPlan> faults)
    : handle_(handle), path_(std::move(path)), faults_(std::move(faults)) {}

File::File(File&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)),
      path_(std::move(other.path_)),
      faults_(std::move(other.faults_)) {}

File& File::operator=(File&& other) noexcept {
  if (this == &other) return *this;
  CloseQuietly();
  handle_ = std::exchange(other.handle_, kNone);
  path_ = std::move(other.path_);
  faults_ = std::move(other.faults_);
  return *this;
}

File::~File() {
  CloseQuietly();
}

void File::ReadAt(std::int64_t offset, char* buffer, std::size_t length) const {
  const std::size_t count = ReadSomeAt(offset, buffer, length);
  if (count < length)
    Fail("read \"", path_, "\": ", length, " bytes at ", offset, " were asked for, but only ",
         count, " are there");
}

std::string File::ReadAt(std::int64_t offset, std::int64_t length) const {
  RequireWithin(offset, length);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  ReadAt(offset, bytes.data(), bytes.size());
  return bytes;
}

void File::RequireWithin(std::int64_t offset, std::int64_t length) const {
  const std::int64_t size = Size();
  if (offset < 0 || length < 0 || length > size || offset > size - length)
    Fail("read \"", path_, "\": ", length, " bytes at ", offset, " don't lie within its ", size);
}
