#pragma once

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace Posix {

using WinePrefix = std::optional<std::filesystem::path>;

/// DOS path text taken apart, before the disk is asked: `.` and `..` are worked out.
struct DosPathParts {
  /// False for text that names nothing: empty, with a NUL, with a colon in the wrong place.
  bool valid = false;
  /// Lower-case drive letter; 'z' where the text has none.
  char drive = 'z';
  /// Whether `names` begins at the process's current directory, or at the drive's root.
  bool fromCurrentFolder = false;
  /// How many folders above the current directory `names` begins.
  std::size_t up = 0;
  /// The components as written, engine text.
  std::vector<std::string> names;
  bool endsInSeparator = false;
};

DosPathParts ParseDosPath(std::string_view path);

/// What a path names on disk, worked out once: whoever acts on a path acts on this.
struct Place {
  enum class Kind {
    kNowhere,  ///< a folder on the way is missing, or the text or a link leads nowhere
    kFree,     ///< the folder exists, and nothing in it has the name
    kFile,     ///< an ordinary file, or a link to one
    kFolder,   ///< a folder, or a link to one
    kSpecial,  ///< a device, socket or pipe
  };
  Kind kind = Kind::kNowhere;
  /// With `kNowhere`: the system's number for why.
  int error = ENOENT;
  /// The native path; with `kNowhere` as far as it goes. A link stays one.
  std::string native;
  /// The last component as on disk (or to be), engine text; empty for the root of a drive and
  /// the current directory.
  std::string name;
  /// The last component as written, without trailing dots and blanks.
  std::string asWritten;
  /// The text ends in a separator, and so names no file.
  bool endsInSeparator = false;
  /// With the last three kinds: what the links lead to.
  struct stat status = {};
  /// With `kNowhere` and ENOENT: the components that don't exist, from `native` on.
  std::vector<std::string> missing;

  [[nodiscard]] bool Exists() const { return kind != Kind::kNowhere && kind != Kind::kFree; }
};

/// Looks up a path, or the first parts of it.
Place FindPlace(const WinePrefix& prefix, std::string_view path);
Place FindPlace(const WinePrefix& prefix, const DosPathParts& parts);

/// One name in a folder.
struct FolderEntry {
  std::string native;  ///< the name's own bytes
  std::string name;    ///< the same as engine text
  Place::Kind kind;    ///< after links; broken ones aren't listed
};

/// The entries of a folder that match a pattern, in order of names. `error` gets the system's
/// number if the folder can't be read.
std::vector<FolderEntry> MatchingEntries(const std::string& folder, std::string_view pattern,
                                         int& error);

/// The native folder for a drive letter (lower case) of a prefix; `z` as the prefix has it.
std::optional<std::string> DriveOfPrefix(const std::filesystem::path& prefix, char letter);

/// DOS path text of an absolute native path; nothing if it can't be said.
std::optional<std::string> DosTextOf(const std::filesystem::path& native);

/// Whether a file has no write permission at all: root too then leaves it alone.
bool IsWriteProtected(const struct stat& status);

/// A component without the dots and blanks at its end; nothing is left of those alone.
std::string_view WithoutTrailingDots(std::string_view name);

/// A folder's path and a name in it.
std::string Below(const std::string& folder, const std::string& name);

/// The folder that a native path lies in.
std::string FolderOf(const std::string& native);

/// A native path with all links followed, for a file that exists; nothing if that fails.
std::optional<std::string> RealPath(const std::string& native);

}  // namespace Posix
