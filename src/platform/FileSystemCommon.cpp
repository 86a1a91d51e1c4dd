#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Failure.h"
#include "platform/FileSystem.h"

void FaultPlan::FailAt(int n, bool once) {
  count_ = 0;
  failAt_ = n;
  once_ = once;
}

void FaultPlan::Step(const char* operation, std::string_view path) {
  ++count_;
  if (failAt_ == 0 || count_ < failAt_ || (once_ && count_ > failAt_)) return;
  // What takes room fails as on a full disk, all else as on a dead one.
  constexpr std::array<std::string_view, 6> kTakingRoom = {"create", "write",   "reserve",
                                                           "resize", "copy to", "create folder"};
  const bool takesRoom =
      std::find(kTakingRoom.begin(), kTakingRoom.end(), operation) != kTakingRoom.end();
  throw Failure(Concat(operation, " \"", path, "\": fails as planned, at operation ", count_),
                takesRoom ? ENOSPC : EIO);
}

std::string File::ReadAt(std::int64_t offset, std::int64_t length) const {
  const std::int64_t size = Size();
  if (offset < 0 || length < 0 || length > size || offset > size - length)
    Fail("read \"", path_, "\": ", length, " bytes at ", offset, " don't lie within its ", size);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  ReadAt(offset, bytes.data(), bytes.size());
  return bytes;
}

std::string FileSystem::ReadWhole(std::string_view path) const {
  const File file = OpenForReading(path);
  // Positions in texts are 32-bit signed.
  if (file.Size() > std::numeric_limits<std::int32_t>::max())
    Fail("read \"", path, "\": ", file.Size(), " bytes are more than 2 GiB");
  return file.ReadAt(0, file.Size());
}

void FileSystem::WriteWhole(std::string_view path, std::string_view text) const {
  WriteWhole(path, std::vector{text});
}
