#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/windows/System.h"

namespace Windows {

/// An open key of the registry, for reading and, as far as the user may, for writing.
class RegistryKey {
 public:
  /// Opens an existing key; `view` is one of the system's two, or 0 for the program's own.
  static RegistryKey Open(HKEY top, const std::wstring& subKey, REGSAM view);
  /// Opens a key, and makes it if it doesn't exist.
  static RegistryKey Make(HKEY top, const std::wstring& subKey);
  RegistryKey(RegistryKey&& other) noexcept;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(RegistryKey&&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  ~RegistryKey();

  /// Whether there is such a key, and the user may read it.
  [[nodiscard]] bool IsOpen() const { return key_ != nullptr; }
  /// The text of a value of type 1 or 2, with all that stands in it; nothing for any other, for
  /// one that isn't there and for a text of more than `longest` characters.
  [[nodiscard]] std::optional<std::wstring> Read(const std::wstring& valueName,
                                                 std::size_t longest) const;
  /// Writes a value of type 1, an empty text as one blank; whether that could be done. An empty
  /// name is the key's default value.
  [[nodiscard]] bool Write(const std::wstring& valueName, const std::wstring& text) const;

 private:
  explicit RegistryKey(HKEY key) : key_(key) {}

  HKEY key_;
};

}  // namespace Windows
