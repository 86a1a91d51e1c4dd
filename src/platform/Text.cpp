#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/Failure.h"

namespace {

// Windows-1252 differs from the first 256 characters of Unicode in 80 to 9F only.
constexpr unsigned kFirstSpecial = 0x80;
constexpr std::array<char16_t, 32> kSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,   // 80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,   // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,   // 90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};  // 98

constexpr bool IsSpecial(unsigned code) {
  return code >= kFirstSpecial && code < kFirstSpecial + kSpecials.size();
}

char16_t ToUnicode(char letter) {
  const unsigned byte = static_cast<unsigned char>(letter);
  return IsSpecial(byte) ? kSpecials[byte - kFirstSpecial] : static_cast<char16_t>(byte);
}

std::optional<char> FromUnicode(unsigned code) {
  if (code < 0x100 && !IsSpecial(code)) return static_cast<char>(code);
  const auto* const special = std::find(kSpecials.begin(), kSpecials.end(), code);
  if (special == kSpecials.end()) return std::nullopt;
  return static_cast<char>(kFirstSpecial + static_cast<unsigned>(special - kSpecials.begin()));
}

constexpr char LowerCaseOf(unsigned byte) {
  constexpr unsigned kMultiplicationSign = 0xD7;
  if (byte >= 'A' && byte <= 'Z') return static_cast<char>(byte + 0x20);
  if (byte >= 0xC0 && byte <= 0xDE && byte != kMultiplicationSign)
    return static_cast<char>(byte + 0x20);
  if (byte == 0x8A || byte == 0x8C || byte == 0x8E) return static_cast<char>(byte + 0x10);
  if (byte == 0x9F) return static_cast<char>(0xFF);
  return static_cast<char>(byte);
}

constexpr std::array<char, 256> kLowerCase = [] {
  std::array<char, 256> table{};
  for (unsigned byte = 0; byte < table.size(); ++byte) table[byte] = LowerCaseOf(byte);
  return table;
}();

// The bits in which the two cases of a letter may differ.
constexpr unsigned kCaseBits = 0x70;
static_assert([] {
  for (unsigned byte = 0; byte < kLowerCase.size(); ++byte) {
    if (((static_cast<unsigned char>(kLowerCase[byte]) ^ byte) & ~kCaseBits) != 0) return false;
  }
  return true;
}());

// Whether the first eight bytes tell the texts, of one length, apart: quick, and true for most.
bool DifferInMoreThanCase(std::string_view left, std::string_view right) {
  constexpr std::uint64_t kOtherBits = 0x0101010101010101U * (~kCaseBits & 0xFFU);
  std::uint64_t leftWord = 0;
  std::uint64_t rightWord = 0;
  const std::size_t length = std::min(left.size(), sizeof leftWord);
  if (length == 0) return false;
  std::memcpy(&leftWord, left.data(), length);
  std::memcpy(&rightWord, right.data(), length);
  return ((leftWord ^ rightWord) & kOtherBits) != 0;
}

// The number of bytes of the UTF-8 character with this first byte; 0 where it begins none.
std::size_t LengthByFirstByte(unsigned first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return first >= 0xE0 && first <= 0xEF ? 3 : 0;
}

// The character of `bytes`, which has the length that its first byte asks for; nothing if it
// isn't well-formed. (Surrogates come out as such: no table has them.)
std::optional<unsigned> DecodeCharacter(std::string_view bytes) {
  constexpr std::array<unsigned, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  unsigned code = static_cast<unsigned char>(bytes[0]);
  if (bytes.size() == 1) return code;
  code &= 0x7FU >> bytes.size();
  for (const char next : bytes.substr(1)) {
    const unsigned byte = static_cast<unsigned char>(next);
    if ((byte & 0xC0U) != 0x80U) return std::nullopt;
    code = (code << 6U) | (byte & 0x3FU);
  }
  return code < kSmallest.at(bytes.size()) ? std::nullopt : std::optional(code);
}

void AppendUtf8(std::string& out, unsigned code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0U | (code >> 6U));
    out += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    if (code < 0x10000) {
      out += static_cast<char>(0xE0U | (code >> 12U));
    } else {
      out += static_cast<char>(0xF0U | (code >> 18U));
      out += static_cast<char>(0x80U | ((code >> 12U) & 0x3FU));
    }
    out += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    out += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

// Whether `text`, which is long enough, has `part` at a 0-based position.
bool HasAt(std::string_view text, std::size_t position, std::string_view part) {
  for (std::size_t i = 0; i < part.size(); ++i)
    if (text[position + i] != part[i]) return false;
  return true;
}

// A mark that stands behind its letter, with the letters of Windows-1252 that it makes others of.
struct Mark {
  unsigned code;
  std::string_view letters;
  std::string_view marked;
};
constexpr std::array<Mark, 8> kMarks = {{
    {0x300, "AEIOUaeiou", "\xC0\xC8\xCC\xD2\xD9\xE0\xE8\xEC\xF2\xF9"},
    {0x301, "AEIOUYaeiouy", "\xC1\xC9\xCD\xD3\xDA\xDD\xE1\xE9\xED\xF3\xFA\xFD"},
    {0x302, "AEIOUaeiou", "\xC2\xCA\xCE\xD4\xDB\xE2\xEA\xEE\xF4\xFB"},
    {0x303, "ANOano", "\xC3\xD1\xD5\xE3\xF1\xF5"},
    {0x308, "AEIOUYaeiouy", "\xC4\xCB\xCF\xD6\xDC\x9F\xE4\xEB\xEF\xF6\xFC\xFF"},
    {0x30A, "Aa", "\xC5\xE5"},
    {0x30C, "SZsz", "\x8A\x8E\x9A\x9E"},
    {0x327, "Cc", "\xC7\xE7"},
}};

// Puts a mark on the last letter of `text`; false if there is no such letter.
bool PutMarkOn(std::string& text, unsigned code) {
  const auto mark = std::find_if(kMarks.begin(), kMarks.end(),
                                 [&](const Mark& known) { return known.code == code; });
  if (mark == kMarks.end() || text.empty()) return false;
  const std::size_t letter = mark->letters.find(text.back());
  if (letter == std::string_view::npos) return false;
  text.back() = mark->marked[letter];
  return true;
}

// Whether a number is that of a letter which the code page lacks.
bool IsBeyond(unsigned code) {
  const bool isHalfOfPair = code >= 0xD800 && code <= 0xDFFF;
  return code > 0x7F && code <= 0x10FFFF && !isHalfOfPair && !FromUnicode(code);
}

// Takes "{u418.433}" off the front of `rest`, and adds its letters to `utf8`; false if something
// else stands there.
bool TakeNumbers(std::string_view& rest, std::string& utf8) {
  std::string_view text = rest.substr(0, rest.find('}'));
  if (text.size() == rest.size() || text.size() < 3 || text[0] != '{' ||
      (text[1] != 'u' && text[1] != 'U'))
    return false;
  text.remove_prefix(1);
  std::string letters;
  while (!text.empty()) {
    text.remove_prefix(1);
    unsigned code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code, 16);
    if (error != std::errc() || !IsBeyond(code)) return false;
    AppendUtf8(letters, code);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    if (!text.empty() && text[0] != '.') return false;
  }
  rest.remove_prefix(rest.find('}') + 1);
  utf8 += letters;
  return true;
}

// UTF-8 as Windows-1252 bytes; `add` may add a character that the code page lacks.
template <typename Add>
std::optional<std::string> Decoded(std::string_view utf8, Add add) {
  std::string out;
  out.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::size_t length = LengthByFirstByte(static_cast<unsigned char>(utf8[0]));
    if (length == 0 || length > utf8.size()) return std::nullopt;
    const std::optional<unsigned> code = DecodeCharacter(utf8.substr(0, length));
    if (!code) return std::nullopt;
    const std::optional<char> letter = FromUnicode(*code);
    if (letter)
      out += *letter;
    else if (!add(out, *code))
      return std::nullopt;
    utf8.remove_prefix(length);
  }
  return out;
}

}  // namespace

namespace Text {

std::string ToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  for (const char letter : text) AppendUtf8(out, ToUnicode(letter));
  return out;
}

std::optional<std::string> FromUtf8(std::string_view utf8) {
  return Decoded(utf8, [](std::string& /*out*/, unsigned /*code*/) { return false; });
}

std::optional<std::string> FromDecomposedUtf8(std::string_view utf8) {
  return Decoded(utf8, PutMarkOn);
}

std::optional<std::string> AliasOf(std::string_view utf8) {
  std::size_t end = 0;  // of the last group of numbers
  return Decoded(utf8, [&](std::string& out, unsigned code) {
    if (!IsBeyond(code)) return false;
    const bool goesOn = end > 0 && end == out.size();
    if (goesOn) out.pop_back();
    std::array<char, 8> number{};
    const auto [last, error] = std::to_chars(number.begin(), number.end(), code, 16);
    out.append(goesOn ? "." : "{u").append(number.begin(), last).append("}");
    end = out.size();
    return error == std::errc();
  });
}

std::optional<std::string> FromAlias(std::string_view text) {
  std::string utf8;
  bool any = false;
  while (!text.empty()) {
    if (TakeNumbers(text, utf8)) {
      any = true;
      continue;
    }
    AppendUtf8(utf8, ToUnicode(text[0]));
    text.remove_prefix(1);
  }
  return any ? std::optional(std::move(utf8)) : std::nullopt;
}

std::string FromUtf8Lossy(std::string_view utf8) {
  std::string out;
  while (!utf8.empty()) {
    const std::size_t claimed = LengthByFirstByte(static_cast<unsigned char>(utf8[0]));
    const bool isWhole = claimed > 0 && claimed <= utf8.size();
    const auto code = isWhole ? DecodeCharacter(utf8.substr(0, claimed)) : std::nullopt;
    out += code ? FromUnicode(*code).value_or('?') : '?';
    utf8.remove_prefix(code ? claimed : 1);
  }
  return out;
}

std::u16string ToUtf16(std::string_view text) {
  std::u16string out(text.size(), u'\0');
  std::transform(text.begin(), text.end(), out.begin(), ToUnicode);
  return out;
}

char LowerCase(char letter) {
  return kLowerCase[static_cast<unsigned char>(letter)];
}

std::string LowerCase(std::string_view text) {
  std::string out(text);
  for (char& letter : out) letter = LowerCase(letter);
  return out;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  if (left.size() != right.size() || DifferInMoreThanCase(left, right)) return false;
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return LowerCase(a) == LowerCase(b); });
}

std::string_view Trim(std::string_view text, std::string_view blanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return text.substr(text.size());
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<std::int32_t> WholeNumber(std::string_view text) {
  text = Trim(text);
  // from_chars knows a minus, but no plus.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::string Replace(std::string_view text, std::string_view from, std::string_view to) {
  std::string out;
  out.reserve(text.size());
  const std::string_view rest = from.substr(1);
  std::size_t start = 0;
  std::size_t hit = text.find(from.front());
  while (hit != std::string_view::npos && text.size() - hit >= from.size()) {
    // Most texts that are sought are short: their own loop beats a general comparison.
    if (!HasAt(text, hit + 1, rest)) {
      hit = text.find(from.front(), hit + 1);
      continue;
    }
    out.append(text, start, hit - start).append(to);
    start = hit + from.size();
    hit = text.find(from.front(), start);
  }
  return out.append(text, start);
}

std::int16_t CheckedInt16(double value, std::string_view what) {
  using Limits = std::numeric_limits<std::int16_t>;
  // Ties go to the even neighbour: nearbyint under the default rounding mode.
  const double rounded = std::nearbyint(value);
  const bool fits = rounded >= Limits::min() && rounded <= Limits::max();
  if (!fits) Fail(what, ": ", value, " doesn't fit a 16-bit number");
  return static_cast<std::int16_t>(rounded);
}

}  // namespace Text
