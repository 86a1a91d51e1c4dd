#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/windows/System.h"

namespace {

constexpr std::int64_t kBlock = std::int64_t{1} << 20;

HANDLE HandleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);  // NOLINT(performance-no-int-to-ptr)
}

// An offset as reading and writing want it.
OVERLAPPED At(std::int64_t offset) {
  OVERLAPPED place = {};
  const auto bits = static_cast<std::uint64_t>(offset);
  place.Offset = static_cast<DWORD>(bits);
  place.OffsetHigh = static_cast<DWORD>(bits >> 32U);
  return place;
}

// How much of what is left goes in one call.
DWORD OneStep(std::size_t left) {
  constexpr std::size_t kLargestStep = std::size_t{1} << 30U;
  return static_cast<DWORD>(std::min(left, kLargestStep));
}

// Writes all of `bytes`; the system's error number, or 0. A negative offset has a meaning of its
// own there, which isn't ours.
DWORD WriteBytes(HANDLE handle, std::int64_t offset, std::string_view bytes) {
  if (offset < 0) return ERROR_NEGATIVE_SEEK;
  while (!bytes.empty()) {
    OVERLAPPED place = At(offset);
    DWORD count = 0;
    if (WriteFile(handle, bytes.data(), OneStep(bytes.size()), &count, &place) == 0)
      return GetLastError();
    bytes.remove_prefix(count);
    offset += count;
  }
  return ERROR_SUCCESS;
}

// Whether a file may be written; the system's error number, or 0.
DWORD WriteNothing(HANDLE handle) {
  OVERLAPPED place = {};
  DWORD count = 0;
  return WriteFile(handle, "", 0, &count, &place) == 0 ? GetLastError() : ERROR_SUCCESS;
}

// Small parts gathered into blocks, so that each needs no call of its own.
std::vector<std::string> Gathered(const std::vector<std::string_view>& parts) {
  std::vector<std::string> blocks(1);
  for (const std::string_view part : parts) {
    const std::size_t size = blocks.back().size() + part.size();
    if (!blocks.back().empty() && size > static_cast<std::size_t>(kBlock)) blocks.emplace_back();
    blocks.back().append(part);
  }
  return blocks;
}

}  // namespace

void File::CloseQuietly() noexcept {
  if (handle_ == kNone) return;
  if (length_) static_cast<void>(SetSizeOnDisk(*length_));
  CloseHandle(HandleOf(std::exchange(handle_, kNone)));
}

void File::FailWith(const char* operation, int error) const {
  Windows::FailWith(operation, path_, static_cast<DWORD>(error));
}

std::int64_t File::SizeOnDisk() const {
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(HandleOf(handle_), &size) == 0)
    FailWith("measure", static_cast<int>(GetLastError()));
  return size.QuadPart;
}

std::size_t File::ReadSomeAt(std::int64_t offset, char* buffer, std::size_t length) const {
  faults_->Step("read", path_);
  if (offset < 0) FailWith("read", ERROR_NEGATIVE_SEEK);
  if (length_)
    length = static_cast<std::size_t>(
        std::clamp<std::int64_t>(*length_ - offset, 0, static_cast<std::int64_t>(length)));
  std::size_t done = 0;
  while (done < length) {
    OVERLAPPED place = At(offset + static_cast<std::int64_t>(done));
    DWORD count = 0;
    if (ReadFile(HandleOf(handle_), buffer + done, OneStep(length - done), &count, &place) == 0 &&
        GetLastError() != ERROR_HANDLE_EOF)
      FailWith("read", static_cast<int>(GetLastError()));
    if (count == 0) break;
    done += count;
  }
  return done;
}

void File::WriteAt(std::int64_t offset, std::string_view bytes) {
  faults_->Step("write", path_);
  const DWORD error = WriteBytes(HandleOf(handle_), offset, bytes);
  if (error != ERROR_SUCCESS) FailWith("write", static_cast<int>(error));
  NoteWritten(offset + static_cast<std::int64_t>(bytes.size()));
}

void File::WriteAt(std::int64_t offset, const std::vector<std::string_view>& parts) {
  faults_->Step("write", path_);
  for (const std::string& block : Gathered(parts)) {
    const DWORD error = WriteBytes(HandleOf(handle_), offset, block);
    if (error != ERROR_SUCCESS) FailWith("write", static_cast<int>(error));
    offset += static_cast<std::int64_t>(block.size());
  }
  NoteWritten(offset);
}

void File::CopyFrom(const File& source, std::int64_t sourceOffset, std::int64_t length,
                    std::int64_t offset) {
  source.RequireWithin(sourceOffset, length);
  std::string block(static_cast<std::size_t>(std::min(length, kBlock)), '\0');
  while (length > 0) {
    faults_->Step("copy to", path_);
    block.resize(static_cast<std::size_t>(std::min(length, kBlock)));
    source.ReadAt(sourceOffset, block.data(), block.size());
    const DWORD error = WriteBytes(HandleOf(handle_), offset, block);
    if (error != ERROR_SUCCESS) FailWith("copy to", static_cast<int>(error));
    NoteWritten(offset + static_cast<std::int64_t>(block.size()));
    const auto count = static_cast<std::int64_t>(block.size());
    sourceOffset += count;
    offset += count;
    length -= count;
  }
}

void File::Reserve(std::int64_t offset, std::int64_t length) {
  faults_->Step("reserve", path_);
  if (length == 0) return;
  // A file that is open for reading alone has no room for anything.
  const DWORD refused = WriteNothing(HandleOf(handle_));
  if (refused != ERROR_SUCCESS) FailWith("reserve", static_cast<int>(refused));
  FILE_ALLOCATION_INFO room = {};
  // Less than the file's length would cut it.
  room.AllocationSize.QuadPart = std::max(offset + length, SizeOnDisk());
  if (SetFileInformationByHandle(HandleOf(handle_), FileAllocationInfo, &room, sizeof(room)) != 0)
    return;
  const DWORD error = GetLastError();
  constexpr std::array<DWORD, 4> kNotThere = {ERROR_INVALID_FUNCTION, ERROR_NOT_SUPPORTED,
                                              ERROR_CALL_NOT_IMPLEMENTED, ERROR_INVALID_PARAMETER};
  if (std::find(kNotThere.begin(), kNotThere.end(), error) == kNotThere.end())
    FailWith("reserve", static_cast<int>(error));
  ReserveByWriting(offset + length);
}

bool File::SetSizeOnDisk(std::int64_t size) const noexcept {
  FILE_END_OF_FILE_INFO end = {};
  end.EndOfFile.QuadPart = size;
  return SetFileInformationByHandle(HandleOf(handle_), FileEndOfFileInfo, &end, sizeof(end)) != 0;
}

void File::SetSize(std::int64_t size) {
  faults_->Step("resize", path_);
  // What has been reserved is NULs already, and stays.
  const bool isWithinRoom = length_ && size >= *length_ && size <= SizeOnDisk();
  if (!isWithinRoom && !SetSizeOnDisk(size)) FailWith("resize", static_cast<int>(GetLastError()));
  length_ = isWithinRoom ? std::optional(size) : std::nullopt;
}

void File::StartWriting(std::int64_t /*offset*/, std::int64_t /*length*/) {}

void File::Sync() {
  faults_->Step("sync", path_);
  if (FlushFileBuffers(HandleOf(handle_)) == 0) FailWith("sync", static_cast<int>(GetLastError()));
}

void File::Close() {
  if (handle_ == kNone) return;
  faults_->Step("close", path_);
  const auto length = std::exchange(length_, std::nullopt);
  if (length && !SetSizeOnDisk(*length)) FailWith("resize", static_cast<int>(GetLastError()));
  if (CloseHandle(HandleOf(std::exchange(handle_, kNone))) == 0)
    FailWith("close", static_cast<int>(GetLastError()));
}
