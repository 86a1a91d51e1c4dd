#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Failure.h"
#include "platform/FileSystem.h"

File::File(std::intptr_t handle, std::string path, std::shared_ptr<FaultPlan> faults)
    : handle_(handle), path_(std::move(path)), faults_(std::move(faults)) {}

File::File(File&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)),
      length_(std::exchange(other.length_, std::nullopt)),
      path_(std::move(other.path_)),
      faults_(std::move(other.faults_)) {}

File& File::operator=(File&& other) noexcept {
  if (this == &other) return *this;
  CloseQuietly();
  handle_ = std::exchange(other.handle_, kNone);
  length_ = std::exchange(other.length_, std::nullopt);
  path_ = std::move(other.path_);
  faults_ = std::move(other.faults_);
  return *this;
}

File::~File() {
  CloseQuietly();
}

std::int64_t File::Size() const {
  return length_ ? *length_ : SizeOnDisk();
}

void File::ReserveByWriting(std::int64_t end) {
  constexpr std::int64_t kBlock = std::int64_t{1} << 20;
  const std::optional<std::int64_t> former = length_;
  const std::int64_t size = Size();
  const std::int64_t begin = SizeOnDisk();
  if (end <= begin) return;
  const std::string nuls(static_cast<std::size_t>(std::min(end - begin, kBlock)), '\0');
  try {
    for (std::int64_t offset = begin; offset < end; offset += kBlock)
      WriteAt(offset, std::string_view(nuls).substr(
                          0, static_cast<std::size_t>(std::min(end - offset, kBlock))));
    // Over a network it is only now that one hears of a full disk.
    Sync();
  } catch (const Failure&) {
    static_cast<void>(SetSizeOnDisk(begin));
    length_ = former;
    throw;
  }
  length_ = size;
}

void File::NoteWritten(std::int64_t end) {
  if (length_) length_ = std::max(*length_, end);
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
