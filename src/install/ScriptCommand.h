#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

struct ScriptState;

/// What an argument line is to its command: what stands in it, what a path is relative to, and what
/// becomes of that place.
struct ArgumentRole {
  enum class Content : std::uint8_t {
    kNothing,    ///< never looked at
    kPath,       ///< of a file or folder
    kArchive,    ///< path of a game archive
    kSource,     ///< a file on disk, or, where there is none, a payload of the pack
    kPayload,    ///< name of a payload of the pack
    kEntry,      ///< name of an entry of the block's archive
    kPattern,    ///< what a line of the block's file is sought by
    kText,       ///< a line's text
    kBareName,   ///< a new name of, or below, the block's path
    kTrigger,    ///< any text: the line only makes the command run on the block's path
    kTestKind,   ///< "file", "img" or "line"
    kLabel,      ///< where a jump goes
    kOpenedHere  ///< what is opened: as written, unless it begins with a backslash
  };
  enum class Base : std::uint8_t {
    kNone,
    kGame,             ///< the game directory, unless the path is absolute
    kCurrent,          ///< as written: the current directory
    kCurrentElseTemp,  ///< as written; what isn't found so lies below the temp directory
  };
  enum class Effect : std::uint8_t {
    kNone,
    kReads,
    kWrites,   ///< a file is made or changed, or files are put into a folder
    kMoves,    ///< a file is taken away from where it is
    kDeletes,  ///< by a name that may hold wildcards
    kRenames,
    kCreates,  ///< a folder
    kRemoves,  ///< a folder
    kOpens,    ///< a program or document, with the system's means
  };

  Content content = Content::kNothing;
  Base base = Base::kNone;
  Effect effect = Effect::kNone;

  bool operator==(const ArgumentRole&) const = default;
};

/// One of the sixteen commands: how its block is read, and what runs it.
struct ScriptCommand {
  using Handler = void (*)(ScriptState& state, std::string_view argument);

  std::string_view head;        ///< the line that opens its block
  std::int32_t firstArgIndex;   ///< of the block's first line; 2 where each line is a further one
  std::int32_t secondArgIndex;  ///< of the line behind the first; 2 where that is a further one
  ArgumentRole first;           ///< the line at index 0
  ArgumentRole second;          ///< the line at index 1
  ArgumentRole further;         ///< each line at index 2 and more
  Handler onFirst = nullptr;    ///< none where the walk itself does what there is to do
  Handler onFurther = nullptr;
};

/// The whole language.
const std::vector<ScriptCommand>& ScriptCommands();

/// The command whose block a line opens: the line is a head, in any case, with nothing before or
/// behind it. Null for any other line.
const ScriptCommand* CommandOf(std::string_view line);
