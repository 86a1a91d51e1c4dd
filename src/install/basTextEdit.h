#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

class FileSystem;

/// Line by line editing of text files, and the path rule of scripts. Text is Windows-1252; a line
/// ends at a CR or a CR LF pair, and a lone LF doesn't end a line. Patterns are `LinePattern`.
namespace basTextEdit {

/// Lets pending events run; called when the search for a line takes long. What it throws ends the
/// operation, with the file as it was.
using DoEvents = std::function<void()>;

enum class EditMode { kAdd = 0, kRemove = 1, kReplace = 2 };

/// The path rule of scripts: an absolute path (see `DosPath::IsAbsolute`) unchanged, any other
/// below the game directory, under the backslash rule.
std::string ResolvePath(std::string_view path, std::string_view gameDirectory);

/// Finds the first line of the file that matches `search` and inserts `newText` behind it,
/// removes it or replaces it. Has a trap: a failure changes nothing more and isn't passed on; its
/// cause comes back for developers, as from the three that follow.
// The callers by design need not look at the results. NOLINTBEGIN(modernize-use-nodiscard)
std::optional<std::string> ModifyLine(const FileSystem& files, std::string_view gameDirectory,
                                      std::string filePath, std::string_view search,
                                      std::string_view newText, EditMode mode,
                                      const DoEvents& doEvents = {});

std::optional<std::string> AddLine(const FileSystem& files, std::string_view gameDirectory,
                                   std::string_view filePath, std::string_view search,
                                   std::string_view newText, const DoEvents& doEvents = {});
std::optional<std::string> RemoveLine(const FileSystem& files, std::string_view gameDirectory,
                                      std::string_view filePath, std::string_view search,
                                      const DoEvents& doEvents = {});
std::optional<std::string> ReplaceLine(const FileSystem& files, std::string_view gameDirectory,
                                       std::string_view filePath, std::string_view search,
                                       std::string_view newText, const DoEvents& doEvents = {});
// NOLINTEND(modernize-use-nodiscard)

/// Whether a line of the file matches. The path is resolved already. Fails on a missing file and
/// on a malformed pattern.
bool LineExists(const FileSystem& files, std::string_view filePath, std::string_view search,
                const DoEvents& doEvents = {});

}  // namespace basTextEdit
