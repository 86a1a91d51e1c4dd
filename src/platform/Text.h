#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The engine's one text type is `std::string` of Windows-1252 bytes, whatever the system's own
/// code page is. These functions are the border to UTF-8 and the rules for single letters.
///
/// The five bytes that Windows-1252 leaves undefined (81, 8D, 8F, 90, 9D) stand for the C1
/// control characters of the same number, so that every byte survives a round trip.
namespace Text {

/// Windows-1252 bytes as UTF-8. Never fails.
std::string ToUtf8(std::string_view text);

/// UTF-8 as Windows-1252 bytes; nothing if the input isn't valid UTF-8 or holds a character
/// that Windows-1252 doesn't have.
std::optional<std::string> FromUtf8(std::string_view utf8);

/// The same for UTF-8 in which a letter's mark may stand behind it as a character of its own, as
/// some systems write file names (NFD).
std::optional<std::string> FromDecomposedUtf8(std::string_view utf8);

/// Any UTF-8 as Windows-1252 bytes: letters that the code page lacks stand there by their numbers,
/// "{u418.433}". Nothing if the input isn't valid UTF-8.
std::optional<std::string> AliasOf(std::string_view utf8);

/// The UTF-8 that `AliasOf` makes this text of; nothing if no letter in it stands by its number.
std::optional<std::string> FromAlias(std::string_view text);

/// UTF-8 as Windows-1252 bytes for people to read: a character that Windows-1252 doesn't have, and
/// a byte that is no UTF-8, become "?".
std::string FromUtf8Lossy(std::string_view utf8);

/// Windows-1252 bytes as UTF-16 code units, one for each byte.
std::u16string ToUtf16(std::string_view text);

/// The lower-case form of one Windows-1252 byte, by the letters of the code page (Ä to ä).
char LowerCase(char letter);

/// `text` with each letter in lower case.
std::string LowerCase(std::string_view text);

/// Whether both texts are equal in lower case.
bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// `text` without blanks at both ends; with `blanks` naming the bytes that count as such.
std::string_view Trim(std::string_view text, std::string_view blanks = " ");

/// A decimal whole number with an optional sign and blanks around it; nothing if `text` is
/// anything else or the number doesn't fit 32 bits signed.
std::optional<std::int32_t> WholeNumber(std::string_view text);

/// `text` with every `from` (not empty) replaced by `to`, in one pass from left to right.
std::string Replace(std::string_view text, std::string_view from, std::string_view to);

/// `value` as a 16-bit signed number; fails with `what` in the text if it is out of range.
std::int16_t CheckedInt16(double value, std::string_view what);

}  // namespace Text
