#include "platform/posix/QuotedText.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "platform/Text.h"

namespace Posix {

namespace {

constexpr std::size_t kBlock = 65536;
constexpr std::size_t kLongestLine = 65536;

void AppendCharacter(std::string& utf8, unsigned code) {
  // A UTF-16 unit by itself. Half of a pair comes out malformed, and so makes the text unusable.
  if (code < 0x80) {
    utf8 += static_cast<char>(code);
  } else if (code < 0x800) {
    utf8 += static_cast<char>(0xC0U | (code >> 6U));
    utf8 += static_cast<char>(0x80U | (code & 0x3FU));
  } else {
    utf8 += static_cast<char>(0xE0U | (code >> 12U));
    utf8 += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
    utf8 += static_cast<char>(0x80U | (code & 0x3FU));
  }
}

std::optional<unsigned> DigitOf(char letter, unsigned base) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::size_t value = kDigits.find(Text::LowerCase(letter));
  return value < base ? std::optional(static_cast<unsigned>(value)) : std::nullopt;
}

// Takes up to `most` digits off the front of `rest`.
std::optional<unsigned> TakeNumber(std::string_view& rest, unsigned base, int most) {
  std::optional<unsigned> number;
  for (int i = 0; i < most && !rest.empty(); ++i) {
    const std::optional<unsigned> digit = DigitOf(rest.front(), base);
    if (!digit) break;
    number = number.value_or(0) * base + *digit;
    rest.remove_prefix(1);
  }
  return number;
}

// Takes what follows a backslash off the front of `rest`, which isn't empty.
void TakeEscape(std::string_view& rest, std::string& utf8) {
  constexpr std::string_view kLetters = "abefnrtv";
  constexpr std::string_view kMeanings = "\a\b\x1b\f\n\r\t\v";
  std::optional<unsigned> number = TakeNumber(rest, 8, 3);
  if (!number) {
    const char letter = rest.front();
    rest.remove_prefix(1);
    if (letter == 'x') number = TakeNumber(rest, 16, 4);
    const std::size_t known = kLetters.find(letter);
    if (!number) utf8 += known == std::string_view::npos ? letter : kMeanings[known];
  }
  if (number) AppendCharacter(utf8, *number);
}

}  // namespace

LineReader::LineReader(const std::string& native)
    : file_(OpenOrdinary(native, O_RDONLY)), block_(kBlock, '\0') {}

bool LineReader::Next(std::string& line) {
  line.clear();
  bool any = false;
  while (Fill()) {
    any = true;
    const std::string_view rest = std::string_view(block_).substr(start_, end_ - start_);
    const std::size_t stop = rest.find('\n');
    const std::string_view part = rest.substr(0, stop);
    line.append(part.substr(0, kLongestLine - std::min(line.size(), kLongestLine)));
    start_ += part.size();
    if (stop == std::string_view::npos) continue;
    ++start_;
    break;
  }
  if (line.ends_with('\r')) line.pop_back();
  return any;
}

bool LineReader::Fill() {
  if (start_ < end_) return true;
  if (!file_.IsOpen()) return false;
  ssize_t count = 0;
  do {
    count = read(file_.Number(), block_.data(), block_.size());
  } while (count < 0 && errno == EINTR);
  start_ = 0;
  end_ = count > 0 ? static_cast<std::size_t>(count) : 0;
  return end_ > 0;
}

std::optional<std::string> TakeText(std::string_view& rest, char end) {
  std::string utf8;
  while (!rest.empty()) {
    const char letter = rest.front();
    rest.remove_prefix(1);
    if (letter == end) return utf8;
    if (letter != '\\')
      utf8 += letter;
    else if (!rest.empty())
      TakeEscape(rest, utf8);
  }
  return std::nullopt;
}

std::optional<std::string> TakeQuoted(std::string_view& rest) {
  if (!rest.starts_with('"')) return std::nullopt;
  rest.remove_prefix(1);
  return TakeText(rest, '"');
}

}  // namespace Posix
