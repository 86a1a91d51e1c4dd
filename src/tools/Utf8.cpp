#include "tools/Utf8.h"

namespace Utf8 {

Character FirstCharacter(std::string_view utf8) {
  const Character invalid{0, 1, false};
  const auto lead = static_cast<unsigned char>(utf8.front());
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || utf8.size() < length) return invalid;
  std::uint32_t codePoint = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(utf8[i]);
    if ((next & 0xC0U) != 0x80) return invalid;
    codePoint = codePoint << 6U | (next & 0x3FU);
  }
  // Longer than need be, half of a surrogate pair, or beyond the last character.
  const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (overlong || surrogate || codePoint > 0x10FFFF) return invalid;
  return {codePoint, length, true};
}

}  // namespace Utf8
