#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

/// What the files of src/platform/posix share among themselves.
namespace Posix {

/// Throws the `Failure` of an operation on a path: its name, the path, the system's words.
[[noreturn]] void FailWith(std::string_view operation, std::string_view path, int error);

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
