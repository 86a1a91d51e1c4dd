#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What every file of this folder needs of the system, and nothing that gets in our way.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace Windows {

/// Throws a `Failure`: "OPERATION "PATH": WORDS (error NUMBER)". `path` is engine text.
[[noreturn]] void FailWith(std::string_view operation, std::string_view path, DWORD error);

/// The system's numbers for what the file layer itself refuses.
using SystemError = DWORD;
inline constexpr SystemError kFileNotFound = ERROR_FILE_NOT_FOUND;
inline constexpr SystemError kFolderNotFound = ERROR_PATH_NOT_FOUND;
inline constexpr SystemError kAlreadyExists = ERROR_ALREADY_EXISTS;
inline constexpr SystemError kIsFolder = 336;  // ERROR_DIRECTORY_NOT_SUPPORTED: headers lack it
inline constexpr SystemError kIsNoFolder = ERROR_DIRECTORY;
inline constexpr SystemError kNotOrdinary = ERROR_BAD_FILE_TYPE;
inline constexpr SystemError kInvalidName = ERROR_INVALID_NAME;
inline constexpr SystemError kAccessDenied = ERROR_ACCESS_DENIED;
inline constexpr SystemError kReadOnly = ERROR_WRITE_PROTECT;
inline constexpr SystemError kOtherDisk = ERROR_NOT_SAME_DEVICE;

/// Engine text as the wide text of the system.
std::wstring ToWide(std::string_view text);

/// Wide text as engine text; nothing if Windows-1252 can't say it.
std::optional<std::string> FromWide(std::wstring_view wide);

/// Paths and names whose letters may stand by their numbers (see `Text::AliasOf`).
std::optional<std::string> AliasOf(std::wstring_view wide);
std::wstring FromAlias(std::string_view text);

/// Wide text for people to read: what Windows-1252 doesn't have becomes what looks most like it.
std::string FromWideLossy(std::wstring_view wide);

/// A handle of the system that closes itself.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(other.Release()) {}
  Handle& operator=(Handle&& other) noexcept;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle();

  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Get() const { return handle_; }
  /// Gives the handle away; from now on somebody else closes it.
  HANDLE Release();

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

/// Others may do with a file that we have open what they could do on any other system.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens an ordinary file; not open, and the reason in `GetLastError`, if there is none.
/// `disposition` and `attributes` are those of `CreateFileW`.
Handle OpenOrdinary(const std::wstring& native, DWORD access, DWORD disposition,
                    DWORD attributes = FILE_ATTRIBUTE_NORMAL);

}  // namespace Windows

/// The name by which the files that all systems share know this one.
namespace Native = Windows;
