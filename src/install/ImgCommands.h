#pragma once

#include <string_view>

struct ScriptState;

/// The commands that change game archives. Each is run for one argument line of its block; a
/// failure ends the script.
namespace ImgCommands {

/// First line of all but `RebuildIMG`: the game archive, which is loaded.
void LoadArchive(ScriptState& state, std::string_view path);

void AddIMG(ScriptState& state, std::string_view payload);
void RemoveIMG(ScriptState& state, std::string_view entry);
void ReplaceIMG(ScriptState& state, std::string_view payload);
void RebuildFirst(ScriptState& state, std::string_view path);
void RebuildFurther(ScriptState& state, std::string_view path);

}  // namespace ImgCommands
