#pragma once

#include <cerrno>
#include <string>
#include <string_view>

#include <sys/types.h>

/// What the files of src/platform/posix share among themselves.
namespace Posix {

/// Throws the `Failure` of an operation on a path: its name, the path, the system's words.
[[noreturn]] void FailWith(std::string_view operation, std::string_view path, int error);

/// The system's numbers for what the file layer itself refuses.
using SystemError = int;
inline constexpr SystemError kFileNotFound = ENOENT;
inline constexpr SystemError kFolderNotFound = ENOENT;
inline constexpr SystemError kAlreadyExists = EEXIST;
inline constexpr SystemError kIsFolder = EISDIR;
inline constexpr SystemError kIsNoFolder = ENOTDIR;
inline constexpr SystemError kNotOrdinary = EINVAL;
inline constexpr SystemError kInvalidName = EINVAL;
inline constexpr SystemError kAccessDenied = EACCES;
inline constexpr SystemError kReadOnly = EROFS;
inline constexpr SystemError kOtherDisk = EXDEV;

/// A file descriptor that closes itself. Below 0 there is none, and errno tells why.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor();

  [[nodiscard]] int Number() const { return number_; }
  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  int Release();

 private:
  int number_;
};

/// Opens an ordinary file; never waits for a pipe or device, and gives none back. `flags` are
/// those of `open`, `mode` is for O_CREAT.
Descriptor OpenOrdinary(const std::string& native, int flags, mode_t mode = 0);

/// The value of an environment variable; empty if there is none.
std::string Environment(const char* name);

}  // namespace Posix

/// The name by which the files that all systems share know this one.
namespace Native = Posix;
