#include "platform/Registry.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/posix/Place.h"
#include "platform/posix/System.h"

// A `system.reg` is text, one line after the other:
//
//   WINE REGISTRY Version 2
//
//   [Software\\Rockstar Games\\GTA San Andreas\\Installation] 1700000000
//   #time=1da1d0b2a7c6e80
//   "ExePath"="C:\\Games\\gta_sa.exe"
//   "Other"=str(2):"%ProgramFiles%\\x"
//   @="the key's default value"
//
// with the keys below HKEY_LOCAL_MACHINE, and with C escapes in names and texts.

namespace {

using Registry::Root;

// The lines of a file, in blocks; of an overlong line nothing is given but its beginning.
class LineReader {
 public:
  explicit LineReader(const std::string& native)
      : file_(Posix::OpenOrdinary(native, O_RDONLY)), block_(kBlock, '\0') {}

  bool Next(std::string& line) {
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

 private:
  static constexpr std::size_t kBlock = 65536;
  static constexpr std::size_t kLongestLine = 65536;

  bool Fill() {
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

  Posix::Descriptor file_;
  std::string block_;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
};

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

// Takes an escaped text and the `end` behind it off the front of `rest`, as UTF-8; nothing if
// the end is missing.
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

// A text between quotes at the front of `rest`.
std::optional<std::string> TakeQuoted(std::string_view& rest) {
  if (!rest.starts_with('"')) return std::nullopt;
  rest.remove_prefix(1);
  return TakeText(rest, '"');
}

bool IsName(const std::string& utf8, std::string_view name) {
  const std::optional<std::string> text = Text::FromUtf8(utf8);
  return text && Text::EqualsIgnoringCase(*text, name);
}

// The text of a value line, UTF-8, if it is of the value `name` and holds a text.
std::optional<std::string> ValueOf(std::string_view line, std::string_view name) {
  if (line.starts_with('@') && name.empty()) {
    line.remove_prefix(1);
  } else {
    const std::optional<std::string> found = TakeQuoted(line);
    if (!found || !IsName(*found, name)) return std::nullopt;
  }
  if (!line.starts_with('=')) return std::nullopt;
  line.remove_prefix(1);
  for (const std::string_view type : {"str(1):", "str(2):"})
    if (line.starts_with(type)) line.remove_prefix(type.size());
  return TakeQuoted(line);
}

// The keys in which a value is looked for, below HKEY_LOCAL_MACHINE, the likelier first.
std::vector<std::string> KeysOf(Root root, std::string_view subKey) {
  constexpr std::string_view kSoftware = "Software\\";
  std::vector<std::string> keys;
  keys.emplace_back(root == Root::kClassesRoot ? "Software\\Classes\\" : "").append(subKey);
  if (Text::EqualsIgnoringCase(std::string_view(keys[0]).substr(0, kSoftware.size()), kSoftware)) {
    std::string forOldPrograms = keys[0];
    keys.push_back(forOldPrograms.insert(kSoftware.size(), "Wow6432Node\\"));
  }
  return keys;
}

// The texts of the value under each of `keys`, UTF-8, in one pass over the file.
std::vector<std::optional<std::string>> FindTexts(const std::string& file,
                                                  const std::vector<std::string>& keys,
                                                  std::string_view valueName) {
  std::vector<std::optional<std::string>> texts(keys.size());
  std::size_t current = keys.size();
  LineReader reader(file);
  std::string line;
  while (reader.Next(line)) {
    std::string_view rest = line;
    if (rest.starts_with('[')) {
      rest.remove_prefix(1);
      const std::string key = TakeText(rest, ']').value_or("");
      const auto isKey = [&](const std::string& wanted) { return IsName(key, wanted); };
      const auto found = std::find_if(keys.begin(), keys.end(), isKey);
      current = static_cast<std::size_t>(found - keys.begin());
    } else if (current < keys.size() && !texts[current]) {
      texts[current] = ValueOf(rest, valueName);
    }
  }
  return texts;
}

// A path on a drive of the prefix as `Z:\...` text, any other text as it is; nothing if the
// drive isn't there.
std::optional<std::string> OnThisSystem(const std::filesystem::path& prefix,
                                        const std::string& text) {
  const std::size_t start = text.starts_with('"') ? 1 : 0;
  const std::string_view path = std::string_view(text).substr(start);
  const char letter = path.empty() ? '\0' : Text::LowerCase(path[0]);
  const bool hasDrive = path.size() >= 2 && path[1] == ':' && letter >= 'a' && letter <= 'z';
  if (!hasDrive) return text;
  const std::optional<std::string> folder = Posix::DriveOfPrefix(prefix, letter);
  if (!folder) return std::nullopt;
  const std::optional<std::string> root = Posix::DosTextOf(*folder);
  if (!root) return std::nullopt;
  std::string_view rest = path.substr(2);
  while (rest.starts_with('\\') || rest.starts_with('/')) rest.remove_prefix(1);
  return Concat(text.substr(0, start), *root, root->ends_with('\\') ? "" : "\\", rest);
}

std::optional<std::string> UsableText(const std::filesystem::path& prefix, std::string utf8) {
  constexpr std::size_t kLongest = 1023;
  utf8.resize(std::min(utf8.find('\0'), utf8.size()));
  const std::optional<std::string> text = Text::FromUtf8(utf8);
  if (!text || text->size() > kLongest) return std::nullopt;
  return OnThisSystem(prefix, *text);
}

void AddPrefix(std::vector<std::filesystem::path>& prefixes, const std::filesystem::path& prefix) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(prefix / "system.reg", error)) return;
  const std::filesystem::path real = std::filesystem::canonical(prefix, error);
  const bool known = std::find(prefixes.begin(), prefixes.end(), real) != prefixes.end();
  if (!error && !known) prefixes.push_back(real);
}

}  // namespace

namespace Registry {

Source Source::FromEnvironment() {
  constexpr std::array<std::string_view, 4> kSteamRoots = {
      ".steam/steam", ".steam/root", ".local/share/Steam",
      ".var/app/com.valvesoftware.Steam/.local/share/Steam"};
  constexpr std::string_view kBelowSteam = "steamapps/compatdata/12120/pfx";
  Source source;
  const std::filesystem::path named = Posix::Environment("WINEPREFIX");
  const std::filesystem::path home = Posix::Environment("HOME");
  if (!named.empty()) AddPrefix(source.prefixes, named);
  if (home.empty()) return source;
  AddPrefix(source.prefixes, home / ".wine");
  for (const std::string_view root : kSteamRoots)
    AddPrefix(source.prefixes, home / root / kBelowSteam);
  return source;
}

std::string ReadValue(const Source& source, Root root, std::string_view subKey,
                      std::string_view valueName) {
  const std::vector<std::string> keys = KeysOf(root, subKey);
  for (const std::filesystem::path& prefix : source.prefixes) {
    const std::string file = (prefix / "system.reg").string();
    for (std::optional<std::string>& utf8 : FindTexts(file, keys, valueName)) {
      if (!utf8) continue;
      std::optional<std::string> text = UsableText(prefix, *std::move(utf8));
      if (text) return *std::move(text);
    }
  }
  return {};
}

}  // namespace Registry
