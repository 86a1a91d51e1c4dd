#include "platform/Registry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Failure.h"
#include "platform/Text.h"
#include "platform/posix/Place.h"
#include "platform/posix/QuotedText.h"
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

using Posix::LineReader;
using Posix::TakeQuoted;
using Posix::TakeText;
using Registry::Root;

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
  const std::optional<std::string> text = Text::AliasOf(utf8);
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

// Texts of Steam's own files are pairs of quoted texts, and blocks of them:
//
//   "libraryfolders"
//   {
//     "1"
//     {
//       "path"    "/mnt/games/SteamLibrary"
//     }
//   }
//
// The texts of all values that have a key of which `isWanted` is true, whatever block they are in.
std::vector<std::string> SteamValues(const std::filesystem::path& file,
                                     bool (*isWanted)(std::string_view)) {
  std::vector<std::string> values;
  std::optional<std::string> key;
  LineReader reader(file.string());
  std::string line;
  while (reader.Next(line)) {
    std::string_view rest = line;
    while (!rest.empty() && !rest.starts_with("//")) {
      if (!rest.starts_with('"')) {
        if (rest.front() == '{' || rest.front() == '}') key.reset();
        rest.remove_prefix(1);
        continue;
      }
      std::optional<std::string> text = TakeQuoted(rest);
      if (!text) break;
      if (!key) {
        key = std::move(text);
        continue;
      }
      if (isWanted(Text::LowerCase(*key))) values.push_back(*std::move(text));
      key.reset();
    }
  }
  return values;
}

// The folders in which a Steam has its games, its own first.
std::vector<std::filesystem::path> SteamLibraries(const std::filesystem::path& steam) {
  std::vector<std::filesystem::path> libraries = {steam};
  // Before 2021 a library's number had its path as the value.
  const auto isPath = [](std::string_view key) {
    return key == "path" || key.find_first_not_of("0123456789") == std::string_view::npos;
  };
  for (const char* const file : {"steamapps/libraryfolders.vdf", "config/libraryfolders.vdf"})
    for (std::string& path : SteamValues(steam / file, isPath))
      if (path.starts_with('/')) libraries.emplace_back(std::move(path));
  return libraries;
}

// The game's own folder in a library, where its manifest has it.
void AddGame(std::vector<std::filesystem::path>& games, const std::filesystem::path& library) {
  const auto isFolder = [](std::string_view key) { return key == "installdir"; };
  const auto names = SteamValues(library / "steamapps/appmanifest_12120.acf", isFolder);
  std::error_code error;
  for (const std::string& name : names) {
    const std::filesystem::path game =
        std::filesystem::canonical(library / "steamapps/common" / name, error);
    if (!error && std::find(games.begin(), games.end(), game) == games.end()) games.push_back(game);
  }
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
  for (const std::string_view root : kSteamRoots) {
    for (const std::filesystem::path& library : SteamLibraries(home / root)) {
      AddPrefix(source.prefixes, library / kBelowSteam);
      AddGame(source.steamGames, library);
    }
  }
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
