#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/posix/System.h"

namespace {

int NumberOf(std::intptr_t handle) {
  return static_cast<int>(handle);
}

// Calls `action` until no signal cuts it short.
template <typename Action>
auto Uninterrupted(Action action) {
  auto result = action();
  while (result < 0 && errno == EINTR) result = action();
  return result;
}

// The reason why a change failed: of a file that is open for reading alone the system says what
// helps nobody.
int ReasonOfChange(int number, int error) {
  const int flags = fcntl(number, F_GETFL);
  return flags >= 0 && (flags & O_ACCMODE) == O_RDONLY ? EACCES : error;
}

// How many vectors every system takes at once.
constexpr std::size_t kMostVectors = 16;

// The parts that aren't empty, as the system wants them.
std::vector<struct iovec> VectorsOf(const std::vector<std::string_view>& parts) {
  std::vector<struct iovec> vectors;
  for (const std::string_view part : parts) {
    // The system doesn't write to what it is to write out.
    if (!part.empty()) vectors.push_back({const_cast<char*>(part.data()), part.size()});
  }
  return vectors;
}

// Takes `count` bytes off the front.
void TakeOff(std::vector<struct iovec>& vectors, std::size_t count) {
  auto first = vectors.begin();
  for (; first != vectors.end() && count >= first->iov_len; ++first) count -= first->iov_len;
  if (first != vectors.end()) {
    first->iov_base = static_cast<char*>(first->iov_base) + count;
    first->iov_len -= count;
  }
  vectors.erase(vectors.begin(), first);
}

// Errors by which the system says that it can't copy between these two files by itself.
bool NeedsCopyByHand(int error) {
  constexpr std::array<int, 4> kErrors = {EXDEV, EINVAL, EOPNOTSUPP, ENOSYS};
  return std::find(kErrors.begin(), kErrors.end(), error) != kErrors.end();
}

void CopyByHand(const File& source, std::int64_t sourceOffset, std::int64_t length, File& target,
                std::int64_t offset) {
  constexpr std::int64_t kBlock = std::int64_t{1} << 20;
  std::string block(static_cast<std::size_t>(std::min(length, kBlock)), '\0');
  while (length > 0) {
    block.resize(static_cast<std::size_t>(std::min(length, kBlock)));
    source.ReadAt(sourceOffset, block.data(), block.size());
    target.WriteAt(offset, block);
    const auto count = static_cast<std::int64_t>(block.size());
    sourceOffset += count;
    offset += count;
    length -= count;
  }
}

}  // namespace

void File::CloseQuietly() noexcept {
  if (handle_ == kNone) return;
  if (length_) static_cast<void>(SetSizeOnDisk(*length_));
  close(NumberOf(std::exchange(handle_, kNone)));
}

void File::FailWith(const char* operation, int error) const {
  Posix::FailWith(operation, path_, error);
}

std::int64_t File::SizeOnDisk() const {
  struct stat status = {};
  if (fstat(NumberOf(handle_), &status) != 0) FailWith("measure", errno);
  return status.st_size;
}

std::size_t File::ReadSomeAt(std::int64_t offset, char* buffer, std::size_t length) const {
  faults_->Step("read", path_);
  if (length_)
    length = static_cast<std::size_t>(
        std::clamp<std::int64_t>(*length_ - offset, 0, static_cast<std::int64_t>(length)));
  std::size_t done = 0;
  while (done < length) {
    const ssize_t count = Uninterrupted([&] {
      return pread(NumberOf(handle_), buffer + done, length - done,
                   offset + static_cast<off_t>(done));
    });
    if (count < 0) FailWith("read", errno);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void File::WriteAt(std::int64_t offset, std::string_view bytes) {
  WriteAt(offset, std::vector{bytes});
}

void File::WriteAt(std::int64_t offset, const std::vector<std::string_view>& parts) {
  faults_->Step("write", path_);
  const int number = NumberOf(handle_);
  std::vector<struct iovec> left = VectorsOf(parts);
  while (!left.empty()) {
    const int vectors = static_cast<int>(std::min(left.size(), kMostVectors));
    const ssize_t count =
        Uninterrupted([&] { return pwritev(number, left.data(), vectors, offset); });
    if (count < 0) FailWith("write", ReasonOfChange(number, errno));
    TakeOff(left, static_cast<std::size_t>(count));
    offset += count;
  }
  NoteWritten(offset);
}

void File::CopyFrom(const File& source, std::int64_t sourceOffset, std::int64_t length,
                    std::int64_t offset) {
  constexpr std::int64_t kLargestStep = std::int64_t{1} << 30;
  source.RequireWithin(sourceOffset, length);
  const int number = NumberOf(handle_);
  while (length > 0) {
    faults_->Step("copy to", path_);
    const auto wanted = static_cast<std::size_t>(std::min(length, kLargestStep));
    const ssize_t count = Uninterrupted([&] {
      return copy_file_range(NumberOf(source.handle_), &sourceOffset, number, &offset, wanted, 0);
    });
    // Some file systems answer with 0 where they can't.
    if (count == 0 || (count < 0 && NeedsCopyByHand(errno)))
      return CopyByHand(source, sourceOffset, length, *this, offset);
    if (count < 0) FailWith("copy to", ReasonOfChange(number, errno));
    length -= count;
    NoteWritten(offset);
  }
}

void File::Reserve(std::int64_t offset, std::int64_t length) {
  faults_->Step("reserve", path_);
  if (length == 0) return;
  const int number = NumberOf(handle_);
  const int result =
      Uninterrupted([&] { return fallocate(number, FALLOC_FL_KEEP_SIZE, offset, length); });
  if (result == 0) return;
  if (errno == EOPNOTSUPP || errno == ENOSYS) return ReserveByWriting(offset + length);
  FailWith("reserve", ReasonOfChange(number, errno));
}

bool File::SetSizeOnDisk(std::int64_t size) const noexcept {
  return Uninterrupted([&] { return ftruncate(NumberOf(handle_), size); }) == 0;
}

void File::SetSize(std::int64_t size) {
  faults_->Step("resize", path_);
  // What has been reserved is NULs already, and stays.
  const bool isWithinRoom = length_ && size >= *length_ && size <= SizeOnDisk();
  if (!isWithinRoom && !SetSizeOnDisk(size))
    FailWith("resize", ReasonOfChange(NumberOf(handle_), errno));
  length_ = isWithinRoom ? std::optional(size) : std::nullopt;
}

// NOLINTNEXTLINE(readability-make-member-function-const): what it begins changes the disk.
void File::StartWriting(std::int64_t offset, std::int64_t length) {
  sync_file_range(NumberOf(handle_), offset, length, SYNC_FILE_RANGE_WRITE);
}

void File::Sync() {
  faults_->Step("sync", path_);
  if (Uninterrupted([&] { return fsync(NumberOf(handle_)); }) != 0) FailWith("sync", errno);
}

void File::Close() {
  if (handle_ == kNone) return;
  faults_->Step("close", path_);
  const auto length = std::exchange(length_, std::nullopt);
  if (length && !SetSizeOnDisk(*length)) FailWith("resize", errno);
  // An interrupted close has closed all the same.
  if (close(NumberOf(std::exchange(handle_, kNone))) != 0 && errno != EINTR)
    FailWith("close", errno);
}
