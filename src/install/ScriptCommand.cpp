#include "install/ScriptCommand.h"

#include <algorithm>

#include "install/FileCommands.h"
#include "install/ImgCommands.h"
#include "install/LineCommands.h"
#include "platform/Text.h"

namespace {

using Content = ArgumentRole::Content;
using Base = ArgumentRole::Base;
using Effect = ArgumentRole::Effect;

constexpr ArgumentRole kNothing{};
constexpr ArgumentRole kTextFile{Content::kPath, Base::kGame, Effect::kWrites};
constexpr ArgumentRole kArchive{Content::kArchive, Base::kGame, Effect::kWrites};
constexpr ArgumentRole kTargetFolder{Content::kPath, Base::kGame, Effect::kWrites};
constexpr ArgumentRole kTested{Content::kPath, Base::kGame, Effect::kReads};
constexpr ArgumentRole kCopied{Content::kSource, Base::kCurrent, Effect::kReads};
constexpr ArgumentRole kMoved{Content::kSource, Base::kCurrent, Effect::kMoves};
constexpr ArgumentRole kDeleted{Content::kPath, Base::kCurrentElseTemp, Effect::kDeletes};
constexpr ArgumentRole kRenamed{Content::kPath, Base::kCurrentElseTemp, Effect::kRenames};
constexpr ArgumentRole kParent{Content::kPath, Base::kCurrentElseTemp, Effect::kCreates};
constexpr ArgumentRole kRemoved{Content::kPath, Base::kCurrentElseTemp, Effect::kRemoves};
constexpr ArgumentRole kOpenedHere{Content::kOpenedHere, Base::kCurrent, Effect::kOpens};
constexpr ArgumentRole kOpened{Content::kPath, Base::kGame, Effect::kOpens};
constexpr ArgumentRole kPayload{Content::kPayload};
constexpr ArgumentRole kEntry{Content::kEntry};
constexpr ArgumentRole kPattern{Content::kPattern};
constexpr ArgumentRole kText{Content::kText};
constexpr ArgumentRole kTrigger{Content::kTrigger};
constexpr ArgumentRole kNewName{Content::kBareName, Base::kNone, Effect::kRenames};
constexpr ArgumentRole kNewFolder{Content::kBareName, Base::kNone, Effect::kCreates};
constexpr ArgumentRole kTestKind{Content::kTestKind};
constexpr ArgumentRole kLabel{Content::kLabel};

}  // namespace

// clang-format off
const std::vector<ScriptCommand>& ScriptCommands() {
  using namespace LineCommands;
  using namespace ImgCommands;
  using namespace FileCommands;
  static const std::vector<ScriptCommand> commands = {
      {"AddLine {",      0, 1, kTextFile,     kPattern, kText,      HoldTextFile,  AddLine},
      {"RemoveLine {",   0, 1, kTextFile,     kPattern, kTrigger,   HoldTextFile,  RemoveLine},
      {"ReplaceLine {",  0, 1, kTextFile,     kPattern, kText,      HoldTextFile,  ReplaceLine},
      {"AddIMG {",       0, 2, kArchive,      kNothing, kPayload,   LoadArchive,   AddIMG},
      {"RemoveIMG {",    0, 2, kArchive,      kNothing, kEntry,     LoadArchive,   RemoveIMG},
      {"ReplaceIMG {",   0, 2, kArchive,      kNothing, kPayload,   LoadArchive,   ReplaceIMG},
      {"RebuildIMG {",   0, 2, kArchive,      kNothing, kArchive,   RebuildFirst,  RebuildFurther},
      {"Copy {",         0, 2, kTargetFolder, kNothing, kCopied,    HoldPath,      Copy},
      {"Move {",         0, 2, kTargetFolder, kNothing, kMoved,     HoldPath,      Move},
      {"Delete {",       2, 2, kNothing,      kNothing, kDeleted,   nullptr,       Delete},
      {"Rename {",       0, 2, kRenamed,      kNothing, kNewName,   HoldPath,      Rename},
      {"CreateFolder {", 0, 2, kParent,       kNothing, kNewFolder, HoldPath,      CreateFolder},
      {"RemoveFolder {", 0, 2, kRemoved,      kNothing, kTrigger,   HoldPath,      RemoveFolder},
      {"ShellExecute {", 0, 2, kOpenedHere,   kNothing, kOpened,    OpenFirst,     OpenFurther},
      // What stands in the further lines depends on the kind of test; the walk knows.
      {"IfExistGoto {",  0, 1, kTestKind,     kTested,  kLabel},
      {"Goto {",         0, 1, kLabel,        kNothing, kNothing},
  };
  return commands;
}
// clang-format on

const ScriptCommand* CommandOf(std::string_view line) {
  const auto found = std::find_if(
      ScriptCommands().begin(), ScriptCommands().end(),
      [&](const ScriptCommand& command) { return Text::EqualsIgnoringCase(line, command.head); });
  return found == ScriptCommands().end() ? nullptr : &*found;
}
