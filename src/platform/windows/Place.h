#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Lookup.h"
#include "platform/windows/System.h"

namespace Windows {

using NativeText = std::filesystem::path::string_type;

/// What a new file is made with: attributes. Who may use it, its folder says.
using Permissions = DWORD;
inline constexpr Permissions kNewFile = FILE_ATTRIBUTE_NORMAL;

/// DOS path text taken apart; what has a colon in the wrong place, or a NUL, or is of the system's
/// own `\\?\` and `\\.\` forms, names nothing.
struct DosPathParts : Lookup::PathParts {
  /// What the text begins with: nothing (the current folder), `\` (the root of its drive), `C:`
  /// (the current folder of that drive), `C:\`, or `\\server\share`.
  std::string start;
};

DosPathParts ParseDosPath(std::string_view path);

/// A place, its native path in the long form, `\\?\C:\...`.
struct Place : Lookup::Place {
  /// With `kNowhere`: the system's number for why.
  SystemError error = ERROR_PATH_NOT_FOUND;
  /// Attributes of the entry itself, with those two of what its links lead to that say whether it
  /// is a folder and whether it is write-protected.
  DWORD attributes = 0;

  [[nodiscard]] bool IsWriteProtected() const {
    return kind == Kind::kFile && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  }
};

/// Looks up a path, or the first parts of it. The drives are the system's own, and no option's.
Place FindPlace(const FileSystemOptions& options, std::string_view path);
Place FindPlace(const FileSystemOptions& options, const DosPathParts& parts);

/// One name in a folder.
struct FolderEntry {
  std::wstring native;  ///< the name in the system's own letters
  std::string name;     ///< the same as engine text
  DWORD attributes;     ///< as those of a `Place`; broken links aren't listed
};

/// The entries of a folder that match a pattern, in order of names. `error` gets the system's
/// number if the folder can't be read.
std::vector<FolderEntry> MatchingEntries(const std::wstring& folder, std::string_view pattern,
                                         SystemError& error);

/// What tells a file or folder from all others, behind all links.
struct Identity {
  DWORD volume;
  std::uint64_t index;
  DWORD links;  ///< how many names it has

  [[nodiscard]] bool IsSameAs(const Identity& other) const {
    return volume == other.volume && index == other.index;
  }
};
std::optional<Identity> IdentityOf(const std::wstring& native);

/// A folder's path and a name in it.
std::wstring Below(const std::wstring& folder, const std::wstring& name);

/// The folder that a native path in its long form lies in; of a root, itself.
std::wstring FolderOf(const std::wstring& native);

/// The long form of an absolute native path, `\\?\C:\...` or `\\?\UNC\server\share\...`.
std::wstring LongForm(const std::wstring& native);
/// An absolute native path as people write it, `C:\...` or `\\server\share\...`.
std::wstring ShortForm(const std::wstring& native);

/// A native path with all links followed, for a file that exists; nothing if that fails.
std::optional<std::wstring> RealPath(const std::wstring& native);

}  // namespace Windows
