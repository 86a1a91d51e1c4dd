#include "platform/Clock.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windows/System.h"

namespace {

// A moment in the system's form, in local time.
std::optional<SYSTEMTIME> LocalTime(std::time_t moment) {
  constexpr std::int64_t kTicksPerSecond = 10000000;  // of 100 nanoseconds
  constexpr std::int64_t kFrom1601To1970 = 11644473600;
  const auto ticks = static_cast<std::uint64_t>((moment + kFrom1601To1970) * kTicksPerSecond);
  const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
  SYSTEMTIME universal = {};
  SYSTEMTIME local = {};
  const bool done = FileTimeToSystemTime(&time, &universal) != 0 &&
                    SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local) != 0;
  return done ? std::optional(local) : std::nullopt;
}

// `length` counts the NUL at the end, and is 0 after a failure.
std::string TextOf(const std::wstring_view buffer, int length) {
  const auto size = static_cast<std::size_t>(std::max(length - 1, 0));
  return Windows::FromWideLossy(buffer.substr(0, size));
}

using Buffer = std::array<wchar_t, 128>;

}  // namespace

namespace Clock {

std::string ShortDate(std::time_t moment) {
  Buffer buffer{};
  const std::optional<SYSTEMTIME> time = LocalTime(moment);
  if (!time) return {};
  const int length = GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &*time, nullptr,
                                    buffer.data(), static_cast<int>(buffer.size()));
  return TextOf({buffer.data(), buffer.size()}, length);
}

std::string TimeOfDay(std::time_t moment) {
  Buffer buffer{};
  const std::optional<SYSTEMTIME> time = LocalTime(moment);
  if (!time) return {};
  const int length = GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &*time, nullptr, buffer.data(),
                                    static_cast<int>(buffer.size()));
  return TextOf({buffer.data(), buffer.size()}, length);
}

}  // namespace Clock
