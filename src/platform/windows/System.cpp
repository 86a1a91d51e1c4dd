#include "platform/windows/System.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Failure.h"
#include "platform/Text.h"

namespace Windows {

namespace {

constexpr UINT kCodePage = 1252;

// `wide` in a code page of the system's; empty if `flags` make that a failure.
std::string Encoded(std::wstring_view wide, UINT codePage, DWORD flags) {
  const int size = static_cast<int>(wide.size());
  const int length =
      WideCharToMultiByte(codePage, flags, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(std::max(length, 0)), '\0');
  WideCharToMultiByte(codePage, flags, wide.data(), size, bytes.data(), length, nullptr, nullptr);
  return bytes;
}

// The system's own words for an error, without the full stop at their end.
std::string WordsFor(DWORD error) {
  std::array<wchar_t, 512> words{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, error, 0, words.data(), words.size(), nullptr);
  const std::wstring_view text(words.data(), length);
  return FromWideLossy(text.substr(0, text.find_last_not_of(L". \r\n") + 1));
}

}  // namespace

void FailWith(std::string_view operation, std::string_view path, DWORD error) {
  throw Failure(Concat(operation, " \"", path, "\": ", WordsFor(error), " (error ", error, ")"),
                static_cast<int>(error));
}

std::wstring ToWide(std::string_view text) {
  const std::u16string units = Text::ToUtf16(text);
  return {units.begin(), units.end()};
}

std::optional<std::string> FromWide(std::wstring_view wide) {
  if (wide.empty()) return "";
  const std::string utf8 = Encoded(wide, CP_UTF8, WC_ERR_INVALID_CHARS);
  return utf8.empty() ? std::nullopt : Text::FromUtf8(utf8);
}

std::optional<std::string> AliasOf(std::wstring_view wide) {
  const std::string utf8 = Encoded(wide, CP_UTF8, WC_ERR_INVALID_CHARS);
  return utf8.empty() ? std::nullopt : Text::AliasOf(utf8);
}

std::wstring FromAlias(std::string_view text) {
  const std::optional<std::string> utf8 = Text::FromAlias(text);
  if (!utf8) return ToWide(text);
  std::wstring wide(utf8->size(), L'\0');
  const int size = static_cast<int>(utf8->size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8->data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

std::string FromWideLossy(std::wstring_view wide) {
  return wide.empty() ? "" : Encoded(wide, kCodePage, 0);
}

Handle& Handle::operator=(Handle&& other) noexcept {
  std::swap(handle_, other.handle_);
  return *this;
}

Handle::~Handle() {
  if (!IsOpen()) return;
  const DWORD keptError = GetLastError();
  CloseHandle(handle_);
  SetLastError(keptError);
}

HANDLE Handle::Release() {
  return std::exchange(handle_, INVALID_HANDLE_VALUE);
}

Handle OpenOrdinary(const std::wstring& native, DWORD access, DWORD disposition, DWORD attributes) {
  Handle file(
      CreateFileW(native.c_str(), access, kShareAll, nullptr, disposition, attributes, nullptr));
  if (!file.IsOpen() || GetFileType(file.Get()) == FILE_TYPE_DISK) return file;
  SetLastError(ERROR_BAD_FILE_TYPE);
  return {};
}

}  // namespace Windows
