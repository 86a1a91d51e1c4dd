#include "platform/Disk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Failure.h"
#include "platform/FolderLock.h"
#include "platform/Text.h"
#include "platform/posix/Place.h"
#include "platform/posix/System.h"

namespace Disk {

namespace {

using Posix::FailWith;
using Kind = Place::Kind;

constexpr mode_t kPermissions = 07777;
constexpr mode_t kPlainPermissions = 0777;
constexpr mode_t kPrivate = 0600;

int ErrorOf(int status) {
  return status == 0 ? 0 : errno;
}

int FlagsOf(Access access) {
  switch (access) {
    case Access::kRead:
      return O_RDONLY;
    case Access::kReadAndWriteEmptied:
      return O_RDWR | O_TRUNC;
    case Access::kReadAndWrite:
    case Access::kAsAllowed:
      break;
  }
  return O_RDWR;
}

// Whether a file that can be read and yet not written is opened for reading alone.
bool AllowsReadingAlone(int error) {
  constexpr std::array<int, 4> kErrors = {EACCES, EPERM, EROFS, ETXTBSY};
  return std::find(kErrors.begin(), kErrors.end(), error) != kErrors.end();
}

bool FitsMask(std::string_view name, Kind kind, int mask) {
  if (name.starts_with('.') && (mask & kFindHidden) == 0) return false;
  switch (kind) {
    case Kind::kFile:
      return true;
    case Kind::kFolder:
      return (mask & kFindFolders) != 0;
    case Kind::kSpecial:
      return (mask & kFindSystem) != 0;
    case Kind::kNowhere:
    case Kind::kFree:
      break;
  }
  return false;
}

bool IsSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

// Gives a file the owner and the permissions of the one whose place it takes, as far as the user
// and the file system can.
void TakeOver(const std::string& native, const struct stat& old) {
  struct stat now = {};
  if (stat(native.c_str(), &now) != 0) return;
  bool done = true;
  // Changing the owner may clear permissions, so it goes first.
  if (now.st_uid != old.st_uid || now.st_gid != old.st_gid)
    done = chown(native.c_str(), old.st_uid, old.st_gid) == 0;
  // Without the owner, rights that were given to the owner aren't lent to another.
  const mode_t wanted = old.st_mode & (done ? kPermissions : kPlainPermissions);
  if ((now.st_mode & kPermissions) != wanted) chmod(native.c_str(), wanted);
}

bool HoldsOnlyLockFile(const std::string& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  bool found = false;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (entry->path().filename() != FolderLock::kFileName) return false;
    found = true;
  }
  return found && !error;
}

int RenameOnto(const std::string& from, const std::string& to) {
  return ErrorOf(rename(from.c_str(), to.c_str()));
}

// Renames unless the target exists.
int RenameToFree(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) return errno;
  struct stat status = {};
  return lstat(to.c_str(), &status) == 0 ? EEXIST : RenameOnto(from, to);
}

}  // namespace

File Open(const char* operation, std::string_view path, const Place& place, Access access,
          const std::shared_ptr<FaultPlan>& faults) {
  faults->Step(operation, path);
  // What was free a moment ago must still be: no link that came up since is written through.
  const int creating = place.kind == Kind::kFree ? O_CREAT | O_EXCL : 0;
  Posix::Descriptor file =
      Posix::OpenOrdinary(place.native, FlagsOf(access) | creating, Posix::kNewFile);
  if (!file.IsOpen() && access == Access::kAsAllowed && AllowsReadingAlone(errno))
    file = Posix::OpenOrdinary(place.native, O_RDONLY);
  if (!file.IsOpen()) FailWith(operation, path, errno);
  return {file.Release(), std::string(path), faults};
}

bool FitsMask(const Place& place, int mask) {
  return FitsMask(place.name, place.kind, mask);
}

bool FitsMask(const FolderEntry& entry, int mask) {
  return FitsMask(entry.name, entry.kind, mask);
}

bool IsSameFile(const Place& left, const Place& right) {
  return IsSameFile(left.status, right.status);
}

bool IsSameEntry(const Place& left, const Place& right) {
  if (left.native == right.native) return true;
  // A file system that doesn't mind case finds either name.
  struct stat leftStatus = {};
  struct stat rightStatus = {};
  const bool exist = lstat(left.native.c_str(), &leftStatus) == 0 &&
                     lstat(right.native.c_str(), &rightStatus) == 0;
  return exist && IsSameFile(leftStatus, rightStatus) &&
         (leftStatus.st_nlink == 1 || S_ISDIR(leftStatus.st_mode)) &&
         Text::EqualsIgnoringCase(left.name, right.name);
}

void RequireNoProtection(const char* operation, std::string_view path, const Place& folder,
                         const FolderEntry& entry) {
  struct stat status = {};
  if (stat(Posix::Below(folder.native, entry.native).c_str(), &status) != 0)
    FailWith(operation, path, errno);
  if (Posix::IsWriteProtected(status)) FailWith(operation, path, EACCES);
}

Permissions PermissionsForCopyOf(const Place& place) {
  return place.status.st_mode & kPlainPermissions;
}

NativeText RealPathOf(const char* operation, std::string_view path, const Place& place) {
  if (place.kind != Kind::kFile) return place.native;
  std::optional<std::string> real = Posix::RealPath(place.native);
  if (!real) FailWith(operation, path, errno);
  return *std::move(real);
}

SystemError MakeFolder(const NativeText& native) {
  constexpr mode_t kNewFolder = 0777;
  return ErrorOf(mkdir(native.c_str(), kNewFolder));
}

SystemError RemoveEmptyFolder(const NativeText& native) {
  const int error = ErrorOf(rmdir(native.c_str()));
  // The lock, which is on the folder itself, doesn't count.
  if ((error != ENOTEMPTY && error != EEXIST) || !HoldsOnlyLockFile(native)) return error;
  RemoveQuietly(Posix::Below(native, std::string(FolderLock::kFileName)));
  return ErrorOf(rmdir(native.c_str()));
}

SystemError RemoveFile(const NativeText& native) {
  return ErrorOf(unlink(native.c_str()));
}

void WriteOutData(const NativeText& native) {
  const Posix::Descriptor file = Posix::OpenOrdinary(native, O_RDONLY);
  if (!file.IsOpen()) return;
  sync_file_range(file.Number(), 0, 0,
                  SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
}

void SyncFile(const NativeText& native) {
  const Posix::Descriptor file = Posix::OpenOrdinary(native, O_RDONLY);
  if (file.IsOpen() && fsync(file.Number()) != 0)
    FailWith("sync", Text::FromUtf8Lossy(native), errno);
}

// Not every file system can; then it's left to time.
void SyncFolder(const NativeText& native) {
  const int number = open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (number < 0) return;
  fsync(number);
  close(number);
}

std::uint64_t VolumeOf(const NativeText& native) {
  struct stat status = {};
  return stat(native.c_str(), &status) == 0 ? status.st_dev : 0;
}

bool MayMakeFilesIn(const NativeText& native) {
  return faccessat(AT_FDCWD, native.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

void RemoveQuietly(const NativeText& native) noexcept {
  unlink(native.c_str());
}

bool IsOthersToo(const Place& place) {
  struct stat status = {};
  if (lstat(place.native.c_str(), &status) != 0) return false;
  return S_ISLNK(status.st_mode) ||
         (S_ISREG(status.st_mode) && (status.st_nlink > 1 || status.st_uid != geteuid()));
}

std::int64_t OwnProcess() {
  return getpid();
}

bool IsRunning(std::int64_t process) {
  // 0 and what is below it mean more than one.
  return process > 0 && (kill(static_cast<pid_t>(process), 0) == 0 || errno != ESRCH);
}

SystemError RenameEntry(const Place& source, const Place& target, std::string_view /*to*/) {
  const std::string renamed =
      Posix::Below(Posix::FolderOf(target.native), Posix::NativeName(target.asWritten));
  // Where the file system itself doesn't mind case, the new name exists already: as this entry.
  const bool replaces = target.Exists() && source.native != target.native;
  return replaces ? RenameOnto(source.native, renamed) : RenameToFree(source.native, renamed);
}

SystemError MoveOnto(const char* operation, std::string_view path, const Place& source,
                     const Place& target) {
  const std::string real = RealPathOf(operation, path, target);
  TakeOver(source.native, target.status);
  const int error = RenameOnto(source.native, real);
  if (error != 0) return error;
  SyncFolder(Posix::FolderOf(real));
  const std::string sourceFolder = Posix::FolderOf(source.native);
  if (sourceFolder != Posix::FolderOf(real)) SyncFolder(sourceFolder);
  return 0;
}

void Successor::TakeTimeOf(std::string_view /*from*/, const Place& source) {
  const std::array<struct timespec, 2> times = {timespec{0, UTIME_OMIT}, source.status.st_mtim};
  if (utimensat(AT_FDCWD, native_.c_str(), times.data(), 0) != 0)
    FailWith(operation_, path_, errno);
}

void Successor::TakePlace() {
  if (place_.Exists()) TakeOver(native_, place_.status);
  faults_->Step("rename", path_);
  const int error = place_.Exists() ? RenameOnto(native_, target_) : RenameToFree(native_, target_);
  if (error != 0) FailWith(operation_, path_, error);
  unfinished_.Keep();
}

File Successor::Make() {
  constexpr int kMostTries = 1000;
  const mode_t mode = place_.Exists() ? kPrivate : permissions_;
  faults_->Step("create", path_);
  for (int i = 0; i < kMostTries; ++i) {
    native_ = Posix::Below(Posix::FolderOf(target_), HelperName(i));
    Posix::Descriptor file = Posix::OpenOrdinary(native_, O_RDWR | O_CREAT | O_EXCL, mode);
    if (file.IsOpen()) return {file.Release(), path_, faults_};
    if (errno != EEXIST) break;
  }
  FailWith(operation_, path_, errno);
}

}  // namespace Disk
