#include "platform/FolderLock.h"

#include <string>
#include <utility>

#include "platform/windows/Place.h"
#include "platform/windows/System.h"

// The lock is the file, open in a way that lets nobody else open it for writing.

namespace {

HANDLE HandleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);  // NOLINT(performance-no-int-to-ptr)
}

std::string ContentOfFile(const std::wstring& file, std::size_t most) {
  const Windows::Handle opened(CreateFileW(file.c_str(), GENERIC_READ, Windows::kShareAll, nullptr,
                                           OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  std::string text(most, '\0');
  DWORD count = 0;
  const bool isRead = opened.IsOpen() && ReadFile(opened.Get(), text.data(),
                                                  static_cast<DWORD>(most), &count, nullptr) != 0;
  text.resize(isRead ? count : 0);
  return text;
}

// What tells others who holds the lock is no other file's content, though that be a second name
// of this one.
void WriteOwner(HANDLE file, const std::string& text) {
  BY_HANDLE_FILE_INFORMATION information = {};
  if (GetFileInformationByHandle(file, &information) == 0 || information.nNumberOfLinks > 1) return;
  DWORD count = 0;
  SetEndOfFile(file);
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
}

}  // namespace

FolderLock FolderLock::Take(const std::filesystem::path& folder, std::string_view program) {
  FolderLock lock;
  std::error_code error;
  // The long form takes a dot for a name.
  const std::filesystem::path absolute =
      std::filesystem::absolute(folder, error).lexically_normal();
  if (error) return lock;
  const std::wstring file = Windows::Below(Windows::LongForm(absolute.native()),
                                           std::wstring(kFileName.begin(), kFileName.end()));
  Windows::Handle opened(
      CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  lock.wasLeft_ = GetLastError() == ERROR_ALREADY_EXISTS;
  if (opened.IsOpen()) {
    WriteOwner(opened.Get(), TextOf(program, GetCurrentProcessId()));
    lock.state_ = State::kHeld;
    lock.handle_ = reinterpret_cast<std::intptr_t>(opened.Release());
  } else if (GetLastError() == ERROR_SHARING_VIOLATION) {
    lock.state_ = State::kTaken;
    lock.holder_ = HolderIn(ContentOfFile(file, kLongestText));
  }
  return lock;
}

void FolderLock::Release() noexcept {
  const std::intptr_t handle = std::exchange(handle_, kNoHandle);
  state_ = State::kNone;
  if (handle == kNoHandle) return;
  FILE_DISPOSITION_INFO gone = {TRUE};
  SetFileInformationByHandle(HandleOf(handle), FileDispositionInfo, &gone, sizeof(gone));
  CloseHandle(HandleOf(handle));
}
