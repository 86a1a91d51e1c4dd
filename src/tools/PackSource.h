#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pack/ArchiveFormat.h"

class FileSystem;

/// What the making of a pack from a folder and the way back share: the form of that folder, which
/// docs/pack-source.md describes for people.
namespace PackSource {

inline constexpr std::string_view kPackIni = "pack.ini";
inline constexpr std::string_view kModIni = "mod.ini";
inline constexpr std::string_view kMods = "mods";
inline constexpr std::string_view kPayload = "payload";    // stored compressed
inline constexpr std::string_view kPictures = "pictures";  // stored as they are
inline constexpr std::string_view kRaw = "raw";            // stored as they are

/// The longest name of an entry, and of one that a script can put into a game archive, in bytes.
inline constexpr std::size_t kLongestEntryName = ArchiveFormat::kNameSize;
inline constexpr std::size_t kLongestImgName = ArchiveFormat::kNameSize - 1;

/// Takes a line (engine text) that a person should know but that can't stop the work.
using Warn = std::function<void(const std::string& text)>;

/// Whether an entry can lie in the folder under its own name.
bool CanNameFile(std::string_view entryName);

/// An entry's name as `pack.ini` writes it: "%" and control characters as "%" and two
/// hexadecimal digits. The inverse gives nothing if a "%" has no such digits behind it.
std::string EscapedName(std::string_view entryName);
std::optional<std::string> UnescapedName(std::string_view text);

/// A line of a script that asks for a payload entry of the pack.
struct PayloadUse {
  std::string_view name;
  std::size_t line;      // 1-based
  bool goesIntoArchive;  // `AddIMG` or `ReplaceIMG`; else `Copy` or `Move`
};
/// All such lines. `Copy` and `Move` take files on disk too: of their lines those count that are
/// plain file names. The views point into `script`, whose lines are separated by CR LF.
std::vector<PayloadUse> PayloadUses(std::string_view script);

/// The arguments of a script: each line but heads, closes, comments and blank lines, as the
/// commands see it.
std::vector<std::string_view> Arguments(std::string_view script);

}  // namespace PackSource
