#include "core/WindowPosition.h"

#include <algorithm>
#include <array>

#include "platform/Failure.h"
#include "platform/Text.h"

namespace {

constexpr std::int16_t kSmallestWidth = 480;
constexpr std::int16_t kSmallestHeight = 250;

}  // namespace

WindowPosition WindowPosition::Parse(std::string_view text) {
  std::array<std::int16_t, 4> parts{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::size_t comma = rest.find(',');
    const auto number = ::Text::WholeNumber(rest.substr(0, comma));
    if (!number) Fail("window position \"", text, "\": part ", i + 1, " is no whole number");
    parts.at(i) = ::Text::CheckedInt16(*number, "a part of the window position");
    rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
  }
  return {parts[0], parts[1], std::max(parts[2], kSmallestWidth),
          std::max(parts[3], kSmallestHeight)};
}

std::string WindowPosition::Text() const {
  return Concat(left, ',', top, ',', width, ',', height);
}
