#pragma once

#include <string>
#include <string_view>

/// Rules of DOS path text that need no file system: paths in scripts, in settings and of the
/// program's own files are such text everywhere in the engine.
namespace DosPath {

/// The backslash rule: each pair of adjacent backslashes becomes one, in one pass from left to
/// right (three become two).
std::string Collapse(std::string_view path);

/// `folder`, a backslash and `name`, under the backslash rule.
std::string Join(std::string_view folder, std::string_view name);

/// Whether a script's path is absolute: a colon directly followed by a backslash stands
/// somewhere in `path` + backslash, after the backslash rule.
bool IsAbsolute(std::string_view path);

/// Whether the text begins with one character, a colon and a backslash.
bool IsFullPath(std::string_view path);

/// Whether the text begins as a path on a server does, with two separators of either kind.
bool IsNetworkPath(std::string_view path);

/// The text up to and including its last backslash; empty if there is none.
std::string_view FolderPart(std::string_view path);

/// Whether `name` can stand for exactly one new file in a folder: not empty, no separator,
/// colon, wildcard or other character that Windows refuses in names, not dots and blanks alone,
/// and no DOS device name (CON, NUL, COM1, LPT1, ..., with or without an extension).
bool IsPlainFileName(std::string_view name);

/// Whether `text` holds a wildcard, `*` or `?`.
bool HasWildcards(std::string_view text);

/// Whether a directory entry's name matches a pattern with `*` and `?` as DOS has them, without
/// regard to case: `*.*` matches every name, a `?` at the end of the name or of its base matches
/// nothing too, a pattern that ends in `.` matches names without an extension.
bool MatchesWildcards(std::string_view name, std::string_view pattern);

}  // namespace DosPath
