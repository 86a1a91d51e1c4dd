#include "platform/windows/RegistryKey.h"

#include <utility>

namespace Windows {

namespace {

constexpr REGSAM kReadAndWrite = 0x2003F;
constexpr REGSAM kRead = KEY_READ;

}  // namespace

RegistryKey RegistryKey::Open(HKEY top, const std::wstring& subKey, REGSAM view) {
  HKEY key = nullptr;
  LSTATUS error = RegOpenKeyExW(top, subKey.c_str(), 0, kReadAndWrite | view, &key);
  // An ordinary user may not write to the machine's keys.
  if (error == ERROR_ACCESS_DENIED)
    error = RegOpenKeyExW(top, subKey.c_str(), 0, kRead | view, &key);
  return RegistryKey(error == ERROR_SUCCESS ? key : nullptr);
}

RegistryKey RegistryKey::Make(HKEY top, const std::wstring& subKey) {
  HKEY key = nullptr;
  const LSTATUS error = RegCreateKeyExW(top, subKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                        kReadAndWrite, nullptr, &key, nullptr);
  return RegistryKey(error == ERROR_SUCCESS ? key : nullptr);
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}

RegistryKey::~RegistryKey() {
  if (key_ != nullptr) RegCloseKey(key_);
}

std::optional<std::wstring> RegistryKey::Read(const std::wstring& valueName,
                                              std::size_t longest) const {
  if (key_ == nullptr) return std::nullopt;
  std::wstring text(longest, L'\0');
  auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  DWORD type = REG_NONE;
  const LSTATUS error = RegQueryValueExW(key_, valueName.c_str(), nullptr, &type,
                                         reinterpret_cast<BYTE*>(text.data()), &size);
  if (error != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
  text.resize(size / sizeof(wchar_t));
  return text;
}

bool RegistryKey::Write(const std::wstring& valueName, const std::wstring& text) const {
  const std::wstring written = text.empty() ? L" " : text;
  // The system adds the NUL that stands behind.
  const auto size = static_cast<DWORD>(written.size() * sizeof(wchar_t));
  return key_ != nullptr &&
         RegSetValueExW(key_, valueName.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(written.c_str()), size) == ERROR_SUCCESS;
}

}  // namespace Windows
