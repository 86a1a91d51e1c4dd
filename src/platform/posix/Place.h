#pragma once

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

#include "platform/FileSystem.h"
#include "platform/Lookup.h"
#include "platform/posix/System.h"

namespace Posix {

using NativeText = std::filesystem::path::string_type;

/// What a new file is made with, less what the user's mask takes off.
using Permissions = mode_t;
inline constexpr Permissions kNewFile = 0666;

/// DOS path text taken apart; what has a colon in the wrong place, or a NUL, names nothing.
struct DosPathParts : Lookup::PathParts {
  /// Lower-case drive letter; 'z' where the text has none.
  char drive = 'z';
  /// Whether `names` begins at the process's current directory, or at the drive's root.
  bool fromCurrentFolder = false;
};

DosPathParts ParseDosPath(std::string_view path);

/// Whether a file has no write permission at all: root too then leaves it alone.
bool IsWriteProtected(const struct stat& status);

/// A place, whose native path with `kNowhere` goes as far as there are folders.
struct Place : Lookup::Place {
  /// With `kNowhere`: the system's number for why.
  SystemError error = ENOENT;
  /// With the last three kinds: what the links lead to.
  struct stat status = {};
  /// With `kNowhere` and ENOENT: the components that don't exist, from `native` on.
  std::vector<std::string> missing;

  [[nodiscard]] bool IsWriteProtected() const {
    return kind == Kind::kFile && Posix::IsWriteProtected(status);
  }
};

/// Looks up a path, or the first parts of it.
Place FindPlace(const FileSystemOptions& options, std::string_view path);
Place FindPlace(const FileSystemOptions& options, const DosPathParts& parts);

/// One name in a folder.
struct FolderEntry {
  std::string native;  ///< the name's own bytes
  std::string name;    ///< the same as engine text
  Place::Kind kind;    ///< after links; broken ones aren't listed
};

/// The entries of a folder that match a pattern, in order of names. `error` gets the system's
/// number if the folder can't be read.
std::vector<FolderEntry> MatchingEntries(const std::string& folder, std::string_view pattern,
                                         SystemError& error);

/// The native folder for a drive letter (lower case) of a prefix; `z` as the prefix has it.
std::optional<std::string> DriveOfPrefix(const std::filesystem::path& prefix, char letter);

/// The name on disk that a new entry gets, UTF-8.
std::string NativeName(const std::string& name);

/// DOS path text of an absolute native path; nothing if it can't be said.
std::optional<std::string> DosTextOf(const std::filesystem::path& native);

/// A folder's path and a name in it.
std::string Below(const std::string& folder, const std::string& name);

/// The folder that a native path lies in.
std::string FolderOf(const std::string& native);

/// A native path with all links followed, for a file that exists; nothing if that fails.
std::optional<std::string> RealPath(const std::string& native);

}  // namespace Posix
