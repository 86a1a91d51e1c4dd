#include "platform/Registry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windows/RegistryKey.h"
#include "platform/windows/System.h"

namespace {

// Longer texts aren't read, in bytes of engine text.
constexpr std::size_t kLongest = 1023;

std::optional<std::string> UsableText(const Windows::RegistryKey& key, std::string_view valueName) {
  const std::optional<std::wstring> wide = key.Read(Windows::ToWide(valueName), kLongest + 1);
  if (!wide) return std::nullopt;
  const std::wstring_view value = std::wstring_view(*wide).substr(0, wide->find(L'\0'));
  const std::optional<std::string> text = value.empty() ? "" : Windows::AliasOf(value);
  return text && text->size() <= kLongest ? text : std::nullopt;
}

}  // namespace

namespace Registry {

Source Source::FromEnvironment() {
  return {};
}

std::string ReadValue(const Source& /*source*/, Root root, std::string_view subKey,
                      std::string_view valueName) {
  HKEY top = root == Root::kClassesRoot ? HKEY_CLASSES_ROOT : HKEY_LOCAL_MACHINE;
  // The program's own view goes first, then that of the 32-bit programs, as the game is one.
  constexpr std::array<REGSAM, 2> kViews = {KEY_WOW64_64KEY, KEY_WOW64_32KEY};
  for (const REGSAM view : kViews) {
    const Windows::RegistryKey key = Windows::RegistryKey::Open(top, Windows::ToWide(subKey), view);
    std::optional<std::string> text = UsableText(key, valueName);
    if (text) return *std::move(text);
  }
  return {};
}

}  // namespace Registry
