#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Utf8 {

/// The byte order mark.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The first character of some UTF-8.
struct Character {
  std::uint32_t codePoint;  // meaningless if it isn't valid
  std::size_t length;       // in bytes, at least 1
  bool valid;
};

/// Takes the first character of `utf8`, which isn't empty. An invalid sequence counts as a
/// character of one byte.
Character FirstCharacter(std::string_view utf8);

}  // namespace Utf8
