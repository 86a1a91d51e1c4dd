#include "platform/Disk.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/windows/Place.h"
#include "platform/windows/System.h"

namespace Disk {

namespace {

using Windows::FailWith;
using Kind = Place::Kind;

constexpr DWORD kReadAndWrite = GENERIC_READ | GENERIC_WRITE;
// The attributes that a copy takes over.
constexpr DWORD kCopiedAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                    FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

DWORD ErrorOf(BOOL done) {
  return done != 0 ? ERROR_SUCCESS : GetLastError();
}

File FileOf(Windows::Handle handle, std::string_view path,
            const std::shared_ptr<FaultPlan>& faults) {
  return {reinterpret_cast<std::intptr_t>(handle.Release()), std::string(path), faults};
}

// Whether a file that can be read and yet not written is opened for reading alone.
bool AllowsReadingAlone(DWORD error) {
  constexpr std::array<DWORD, 4> kErrors = {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT,
                                            ERROR_SHARING_VIOLATION, ERROR_NETWORK_ACCESS_DENIED};
  return std::find(kErrors.begin(), kErrors.end(), error) != kErrors.end();
}

bool FitsMask(DWORD attributes, int mask) {
  constexpr std::array<std::pair<DWORD, int>, 3> kKinds = {
      {{FILE_ATTRIBUTE_HIDDEN, kFindHidden},
       {FILE_ATTRIBUTE_SYSTEM, kFindSystem},
       {FILE_ATTRIBUTE_DIRECTORY, kFindFolders}}};
  return std::all_of(kKinds.begin(), kKinds.end(), [&](const std::pair<DWORD, int>& kind) {
    return (attributes & kind.first) == 0 || (mask & kind.second) != 0;
  });
}

// Who may do what with a file, as the system stores it; empty if that can't be read.
std::string PermissionsOf(const std::wstring& native) {
  DWORD size = 0;
  GetFileSecurityW(native.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::string permissions(size, '\0');
  const BOOL done =
      GetFileSecurityW(native.c_str(), DACL_SECURITY_INFORMATION, permissions.data(), size, &size);
  return done == 0 ? "" : permissions;
}

// Gives a file the permissions and attributes of the one whose place it takes, as far as the user
// and the file system can.
void TakeOver(const std::wstring& native, const std::wstring& old) {
  std::string permissions = PermissionsOf(old);
  if (!permissions.empty() && permissions != PermissionsOf(native))
    SetFileSecurityW(native.c_str(), DACL_SECURITY_INFORMATION, permissions.data());
  const DWORD attributes = GetFileAttributesW(old.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES)
    SetFileAttributesW(native.c_str(), attributes & kCopiedAttributes);
}

// Moves a file over another, or to a free name. The disk has done so when this returns; nobody
// ever sees neither of them. Who looks into each new file, as virus scanners do, has it open for a
// moment, and is waited for.
DWORD Move(const std::wstring& from, const std::wstring& to, DWORD flags) {
  constexpr int kTries = 6;
  constexpr DWORD kFirstPause = 10;  // milliseconds; each further one is twice as long
  DWORD error = ERROR_SUCCESS;
  for (int i = 0; i < kTries; ++i) {
    if (MoveFileExW(from.c_str(), to.c_str(), flags | MOVEFILE_WRITE_THROUGH) != 0)
      return ERROR_SUCCESS;
    error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) break;
    if (i + 1 < kTries) Sleep(kFirstPause << static_cast<unsigned>(i));
  }
  return error;
}

DWORD MoveOnto(const std::wstring& from, const std::wstring& to) {
  return Move(from, to, MOVEFILE_REPLACE_EXISTING);
}

FILETIME ModificationTimeOf(std::string_view path, const Place& place) {
  const Windows::Handle file =
      Windows::OpenOrdinary(place.native, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
  FILETIME time = {};
  if (!file.IsOpen() || GetFileTime(file.Get(), nullptr, nullptr, &time) == 0)
    FailWith("copy", path, GetLastError());
  return time;
}

}  // namespace

File Open(const char* operation, std::string_view path, const Place& place, Access access,
          const std::shared_ptr<FaultPlan>& faults) {
  faults->Step(operation, path);
  DWORD disposition = access == Access::kReadAndWriteEmptied ? TRUNCATE_EXISTING : OPEN_EXISTING;
  // What was free a moment ago must still be: no link that came up since is written through.
  if (place.kind == Kind::kFree) disposition = CREATE_NEW;
  Windows::Handle file = Windows::OpenOrdinary(
      place.native, access == Access::kRead ? GENERIC_READ : kReadAndWrite, disposition);
  if (!file.IsOpen() && access == Access::kAsAllowed && AllowsReadingAlone(GetLastError()))
    file = Windows::OpenOrdinary(place.native, GENERIC_READ, OPEN_EXISTING);
  if (!file.IsOpen()) FailWith(operation, path, GetLastError());
  return FileOf(std::move(file), path, faults);
}

bool FitsMask(const Place& place, int mask) {
  return FitsMask(place.attributes, mask);
}

bool FitsMask(const FolderEntry& entry, int mask) {
  return FitsMask(entry.attributes, mask);
}

bool IsSameFile(const Place& left, const Place& right) {
  const auto leftIdentity = Windows::IdentityOf(left.native);
  const auto rightIdentity = Windows::IdentityOf(right.native);
  return leftIdentity && rightIdentity && leftIdentity->IsSameAs(*rightIdentity);
}

bool IsSameEntry(const Place& left, const Place& right) {
  const bool samePath =
      CompareStringOrdinal(left.native.c_str(), -1, right.native.c_str(), -1, TRUE) == CSTR_EQUAL;
  if (samePath) return true;
  const auto identity = Windows::IdentityOf(left.native);
  const bool onlyName = identity && (left.kind == Kind::kFolder || identity->links == 1);
  return onlyName && IsSameFile(left, right) && Text::EqualsIgnoringCase(left.name, right.name);
}

void RequireNoProtection(const char* operation, std::string_view path, const Place& /*folder*/,
                         const FolderEntry& entry) {
  if ((entry.attributes & FILE_ATTRIBUTE_READONLY) != 0)
    FailWith(operation, path, ERROR_ACCESS_DENIED);
}

Permissions PermissionsForCopyOf(const Place& place) {
  return place.attributes & kCopiedAttributes;
}

NativeText RealPathOf(const char* operation, std::string_view path, const Place& place) {
  if ((place.attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return place.native;
  std::optional<std::wstring> real = Windows::RealPath(place.native);
  if (!real) FailWith(operation, path, GetLastError());
  return *std::move(real);
}

SystemError MakeFolder(const NativeText& native) {
  return ErrorOf(CreateDirectoryW(native.c_str(), nullptr));
}

SystemError RemoveEmptyFolder(const NativeText& native) {
  return ErrorOf(RemoveDirectoryW(native.c_str()));
}

SystemError RemoveFile(const NativeText& native) {
  return ErrorOf(DeleteFileW(native.c_str()));
}

void WriteOutData(const NativeText& /*native*/) {}

void SyncFile(const NativeText& native) {
  const Windows::Handle file = Windows::OpenOrdinary(native, GENERIC_WRITE, OPEN_EXISTING);
  if (file.IsOpen() && FlushFileBuffers(file.Get()) == 0)
    FailWith("sync", Windows::FromWideLossy(native), GetLastError());
}

// What makes, moves or removes an entry has waited for that.
void SyncFolder(const NativeText& /*native*/) {}

std::uint64_t VolumeOf(const NativeText& native) {
  std::wstring root(MAX_PATH + 1, L'\0');
  DWORD number = 0;
  const bool known =
      GetVolumePathNameW(native.c_str(), root.data(), static_cast<DWORD>(root.size())) != 0 &&
      GetVolumeInformationW(root.c_str(), nullptr, 0, &number, nullptr, nullptr, nullptr, 0) != 0;
  return known ? number : 0;
}

bool MayMakeFilesIn(const NativeText& native) {
  const Windows::Handle folder(CreateFileW(
      native.c_str(), FILE_ADD_FILE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return folder.IsOpen();
}

void RemoveQuietly(const NativeText& native) noexcept {
  SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(native.c_str());
}

bool IsOthersToo(const Place& place) {
  if (!place.Exists() && place.kind != Kind::kNowhere) return false;
  const DWORD attributes = GetFileAttributesW(place.native.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return true;
  const auto identity = Windows::IdentityOf(place.native);
  return place.kind == Kind::kFile && identity && identity->links > 1;
}

std::int64_t OwnProcess() {
  return GetCurrentProcessId();
}

bool IsRunning(std::int64_t process) {
  HANDLE opened = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
  // Of another user's process one hears that it is there.
  if (opened == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  return WaitForSingleObject(Windows::Handle(opened).Get(), 0) == WAIT_TIMEOUT;
}

SystemError RenameEntry(const Place& source, const Place& target, std::string_view to) {
  const std::wstring renamed =
      Windows::Below(Windows::FolderOf(target.native), Windows::FromAlias(target.asWritten));
  DWORD error = Move(source.native, renamed, 0);
  // Where this is emulated, a change of case alone may need another name in between.
  if (error == ERROR_SUCCESS && target.Exists() &&
      Windows::FindPlace({}, to).name != target.asWritten) {
    const std::wstring between = renamed + L".kelvo-tmp";
    error = Move(source.native, between, 0);
    if (error == ERROR_SUCCESS) error = Move(between, renamed, 0);
  }
  return error;
}

SystemError MoveOnto(const char* operation, std::string_view path, const Place& source,
                     const Place& target) {
  const std::wstring real = RealPathOf(operation, path, target);
  TakeOver(source.native, real);
  return MoveOnto(source.native, real);
}

void Successor::TakeTimeOf(std::string_view from, const Place& source) {
  const FILETIME time = ModificationTimeOf(from, source);
  const Windows::Handle file = Windows::OpenOrdinary(native_, FILE_WRITE_ATTRIBUTES, OPEN_EXISTING);
  if (!file.IsOpen() || SetFileTime(file.Get(), nullptr, nullptr, &time) == 0)
    FailWith(operation_, path_, GetLastError());
}

void Successor::TakePlace() {
  if (place_.Exists())
    TakeOver(native_, target_);
  else
    SetFileAttributesW(native_.c_str(), permissions_);
  faults_->Step("rename", path_);
  const DWORD error = place_.Exists() ? MoveOnto(native_, target_) : Move(native_, target_, 0);
  if (error != ERROR_SUCCESS) FailWith(operation_, path_, error);
  unfinished_.Keep();
}

File Successor::Make() {
  constexpr int kMostTries = 1000;
  faults_->Step("create", path_);
  for (int i = 0; i < kMostTries; ++i) {
    native_ = Windows::Below(Windows::FolderOf(target_), Windows::ToWide(HelperName(i)));
    Windows::Handle file =
        Windows::OpenOrdinary(native_, kReadAndWrite, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN);
    if (file.IsOpen()) return FileOf(std::move(file), path_, faults_);
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  FailWith(operation_, path_, GetLastError());
}

}  // namespace Disk
