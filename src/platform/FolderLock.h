#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// A folder that one program has to itself, as far as the programs that ask for it agree. The
/// system drops the lock with its holder, however that ends. A hidden file in the folder tells who
/// holds it; it goes with the lock, and a holder that is killed leaves it behind.
///
/// That file is nobody else's: the file layer neither finds nor makes one of its name.
class FolderLock {
 public:
  static constexpr std::string_view kFileName = ".kelvo-lock";

  enum class State {
    kNone,   ///< the folder can't be locked: it isn't there, or nothing can be changed in it
    kHeld,   ///< this object holds it
    kTaken,  ///< another one does
  };
  /// Who holds a folder; no name if that can't be told.
  struct Holder {
    std::string program;
    std::int64_t process = 0;
  };

  FolderLock() = default;
  /// Asks for a native folder and doesn't wait. `program` is what others are told: a word of
  /// ASCII letters. A folder behind several paths is one. Never fails: see `GetState`.
  static FolderLock Take(const std::filesystem::path& folder, std::string_view program);
  FolderLock(FolderLock&& other) noexcept;
  FolderLock& operator=(FolderLock&& other) noexcept;
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock() { Release(); }

  [[nodiscard]] State GetState() const { return state_; }
  /// With `kTaken`.
  [[nodiscard]] const Holder& GetHolder() const { return holder_; }
  /// With `kHeld`: whether one who held it before has died with it.
  [[nodiscard]] bool WasLeft() const { return wasLeft_; }
  /// Gives the folder free, and takes away the file.
  void Release() noexcept;

 private:
  static constexpr std::intptr_t kNoHandle = -1;
  static constexpr std::size_t kLongestText = 64;

  // What stands in the file: "PROGRAM PROCESS" and a line feed.
  [[nodiscard]] static std::string TextOf(std::string_view program, std::int64_t process);
  [[nodiscard]] static Holder HolderIn(std::string_view text);

  std::intptr_t handle_ = kNoHandle;
  State state_ = State::kNone;
  Holder holder_;
  bool wasLeft_ = false;
};
