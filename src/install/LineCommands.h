#pragma once

#include <string_view>

struct ScriptState;

/// The commands that edit text files line by line. Each is run for one argument line of its block.
/// An edit that fails is noted as a setback and doesn't end the script.
namespace LineCommands {

/// First line: the text file.
void HoldTextFile(ScriptState& state, std::string_view path);

void AddLine(ScriptState& state, std::string_view text);
void RemoveLine(ScriptState& state, std::string_view trigger);
void ReplaceLine(ScriptState& state, std::string_view text);

}  // namespace LineCommands
