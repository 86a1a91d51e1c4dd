#pragma once

#include <string_view>

struct ScriptState;

/// The commands that work on files and folders, and `ShellExecute`. Each is run for one argument
/// line of its block; a failure ends the script.
namespace FileCommands {

/// First line of all but `Delete` and `ShellExecute`: the block's path, held as written.
void HoldPath(ScriptState& state, std::string_view path);

void Copy(ScriptState& state, std::string_view source);
void Move(ScriptState& state, std::string_view source);
void Delete(ScriptState& state, std::string_view path);
void Rename(ScriptState& state, std::string_view newName);
void CreateFolder(ScriptState& state, std::string_view name);
void RemoveFolder(ScriptState& state, std::string_view shown);
void OpenFirst(ScriptState& state, std::string_view thing);
void OpenFurther(ScriptState& state, std::string_view path);

}  // namespace FileCommands
