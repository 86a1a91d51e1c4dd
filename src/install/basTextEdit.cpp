#include "install/basTextEdit.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "core/LinePattern.h"
#include "core/basDebugLog.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace basTextEdit {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::int64_t kLineEndLength = 2;

/// A line of a text that matched.
struct FoundLine {
  std::int64_t position;  // 1-based, of the byte just behind the line's end
  std::int64_t length;    // without its end
};

/// The first line of `text` that matches, or nothing.
std::optional<FoundLine> FindLine(std::string_view text, const LinePattern& pattern,
                                  const DoEvents& doEvents) {
  EventPacer pacer(doEvents);
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\r', start), text.size());
    std::size_t next = std::min(end + 1, text.size());
    if (next < text.size() && text[next] == '\n') ++next;
    pacer.Work(end - start);
    if (pattern.MatchesOrEquals(text.substr(start, end - start), pacer)) {
      return FoundLine{static_cast<std::int64_t>(next) + 1, static_cast<std::int64_t>(end - start)};
    }
    start = next;
  }
  return std::nullopt;
}

/// The first `count` bytes of `text`.
std::string_view Left(std::string_view text, std::int64_t count) {
  if (count < 0 || count > static_cast<std::int64_t>(text.size())) {
    Fail("a text of ", text.size(), " bytes has no first ", count);
  }
  return text.substr(0, static_cast<std::size_t>(count));
}

/// What stands in `text` from the 1-based `position` on.
std::string_view From(std::string_view text, std::int64_t position) {
  if (position < 1 || position > static_cast<std::int64_t>(text.size()) + 1) {
    Fail("a text of ", text.size(), " bytes has no position ", position);
  }
  return text.substr(static_cast<std::size_t>(position - 1));
}

/// The whole text after an edit at the found line, in parts: the text before the edit, the new
/// text, and the text behind. They point into `all` and `newText`: these files are edited a line at
/// a time, and a copy of all the rest for each line would cost more than the reading and writing.
///
/// The positions take every line end to be two bytes long, also a lone CR. An added text takes
/// the line end of the line above it once more as its own, and one that found no place goes to
/// the end without a line end. Other people's packs rely on all of this: it stays.
std::vector<std::string_view> Edited(std::string_view all, const std::optional<FoundLine>& found,
                                     std::string_view newText, EditMode mode) {
  if (!found) {
    if (mode == EditMode::kAdd) return {all, newText};
    Fail("no line matches");
  }
  const std::int64_t position = found->position;
  const std::int64_t lengthBefore = position - 1 - (found->length + kLineEndLength);
  switch (mode) {
    case EditMode::kAdd:
      return {Left(all, position - 1), newText, From(all, position - kLineEndLength)};
    case EditMode::kRemove:
      return {Left(all, lengthBefore), newText, From(all, position)};
    case EditMode::kReplace:
      return {Left(all, lengthBefore), newText, From(all, position - kLineEndLength)};
  }
  Fail("there is no edit mode ", static_cast<int>(mode));
}

}  // namespace

std::string ResolvePath(std::string_view path, std::string_view gameDirectory) {
  return DosPath::IsAbsolute(path) ? std::string(path) : DosPath::Join(gameDirectory, path);
}

std::optional<std::string> ModifyLine(const FileSystem& files, std::string_view gameDirectory,
                                      std::string filePath, std::string_view search,
                                      std::string_view newText, EditMode mode,
                                      const DoEvents& doEvents) {
  return CauseOf("basTextEdit.ModifyLine", [&] {
    if (files.FindFirst(filePath, kFindFiles).empty()) {
      filePath = ResolvePath(filePath, gameDirectory);
    }
    std::string text = files.ReadWhole(filePath);
    const bool lacksEnd = !text.ends_with(kLineEnd);
    if (lacksEnd) text += kLineEnd;
    // The file keeps this, even if the edit finds nothing or the pattern is malformed.
    const auto writeEnd = [&] {
      if (lacksEnd) files.WriteWhole(filePath, text);
    };
    std::optional<LinePattern> pattern;
    try {
      if (!search.empty()) pattern.emplace(search);
    } catch (const Failure&) {
      writeEnd();
      throw;
    }
    // Events run in here alone, ahead of the first write: one that ends the run leaves the file
    // as it was.
    const auto found = pattern ? FindLine(text, *pattern, doEvents) : std::nullopt;
    writeEnd();
    files.WriteWhole(filePath, Edited(text, found, newText, mode));
  });
}

std::optional<std::string> AddLine(const FileSystem& files, std::string_view gameDirectory,
                                   std::string_view filePath, std::string_view search,
                                   std::string_view newText, const DoEvents& doEvents) {
  return ModifyLine(files, gameDirectory, std::string(filePath), search, newText, EditMode::kAdd,
                    doEvents);
}

std::optional<std::string> RemoveLine(const FileSystem& files, std::string_view gameDirectory,
                                      std::string_view filePath, std::string_view search,
                                      const DoEvents& doEvents) {
  return ModifyLine(files, gameDirectory, std::string(filePath), search, "", EditMode::kRemove,
                    doEvents);
}

std::optional<std::string> ReplaceLine(const FileSystem& files, std::string_view gameDirectory,
                                       std::string_view filePath, std::string_view search,
                                       std::string_view newText, const DoEvents& doEvents) {
  return ModifyLine(files, gameDirectory, std::string(filePath), search, newText,
                    EditMode::kReplace, doEvents);
}

bool LineExists(const FileSystem& files, std::string_view filePath, std::string_view search,
                const DoEvents& doEvents) {
  return FindLine(files.ReadWhole(filePath), LinePattern(search), doEvents).has_value();
}

}  // namespace basTextEdit
