#include "platform/Clock.h"

#include <array>
#include <clocale>
#include <ctime>

#include "platform/Text.h"

namespace {

// `moment` by a format of strftime, in the locale that the environment names.
std::string Formatted(std::time_t moment, const char* format) {
  struct tm parts = {};
  if (localtime_r(&moment, &parts) == nullptr) return {};
  const locale_t locale = newlocale(LC_ALL_MASK, "", nullptr);
  std::array<char, 128> text{};
  const std::size_t length = locale == nullptr
                                 ? strftime(text.data(), text.size(), format, &parts)
                                 : strftime_l(text.data(), text.size(), format, &parts, locale);
  if (locale != nullptr) freelocale(locale);
  const std::string native(text.data(), length);
  return Text::FromUtf8(native).value_or(native);
}

}  // namespace

namespace Clock {

std::string ShortDate(std::time_t moment) {
  return Formatted(moment, "%x");
}

std::string TimeOfDay(std::time_t moment) {
  return Formatted(moment, "%X");
}

}  // namespace Clock
