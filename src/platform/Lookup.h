#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// What looking up paths has in common on every system. For the file layer alone.
namespace Lookup {

/// DOS path text taken apart, before the disk is asked. What a path begins with is the system's.
struct PathParts {
  /// False for text that names nothing.
  bool valid = false;
  /// How many folders above a current folder `names` begins.
  std::size_t up = 0;
  /// The components as written, engine text; `.` and `..` are worked out.
  std::vector<std::string> names;
  bool endsInSeparator = false;

  /// Adds the components of `text`.
  void AddNames(std::string_view text);
  /// Whether the last component holds wildcards.
  [[nodiscard]] bool EndsInPattern() const;
  /// Takes the last component off, so that its folder's path is left.
  std::string TakeLast();
};

/// What a path names on disk, worked out once: whoever acts on a path acts on this.
struct Place {
  enum class Kind {
    kNowhere,  ///< a folder on the way is missing, or the text or a link leads nowhere
    kFree,     ///< the folder exists, and nothing in it has the name
    kFile,     ///< an ordinary file, or a link to one
    kFolder,   ///< a folder, or a link to one
    kSpecial,  ///< a device, socket or pipe; Windows has no names for these
  };
  Kind kind = Kind::kNowhere;
  /// The native path. A link stays one.
  std::filesystem::path::string_type native;
  /// The last component as on disk (or to be), engine text; empty for the root of a drive and
  /// the current directory.
  std::string name;
  /// The last component as written, without trailing dots and blanks.
  std::string asWritten;
  /// The text ends in a separator, and so names no file.
  bool endsInSeparator = false;

  [[nodiscard]] bool Exists() const { return kind != Kind::kNowhere && kind != Kind::kFree; }
};

/// Whether a drive can have this letter.
bool IsDriveLetter(char letter);

/// Whether a character stands between the components of a path.
bool IsSeparator(char letter);

/// Takes the next component off the front of `rest`, and the separator behind it.
std::string_view NextName(std::string_view& rest);

/// A component without the dots and blanks at its end; nothing is left of those alone.
std::string_view WithoutTrailingDots(std::string_view name);

/// Whether a component is the name of a `FolderLock`'s file, which no path leads to.
bool IsLockFile(std::string_view name);

/// The order of names.
bool ComesBefore(const std::string& left, const std::string& right);

}  // namespace Lookup
