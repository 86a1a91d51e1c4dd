// AddLine, RemoveLine, ReplaceLine: line 1 of a block is the text file, line 2 the pattern.

#include "install/LineCommands.h"

#include <optional>
#include <string>

#include "install/InstallSession.h"
#include "install/ScriptState.h"
#include "install/basTextEdit.h"
#include "platform/Failure.h"

namespace {

void NoteSetback(ScriptState& state, const std::optional<std::string>& cause) {
  if (!cause) return;
  state.Setbacks.push_back(
      Concat("edit of \"", state.FirstArg, "\" at \"", state.SecondArg, "\": ", *cause));
}

basTextEdit::DoEvents EventsOf(const ScriptState& state) {
  return [&host = state.Session.Host] { host.DoEvents(); };
}

}  // namespace

namespace LineCommands {

void HoldTextFile(ScriptState& state, std::string_view path) {
  state.FirstArg = state.Session.ResolvePath(path);
}

void AddLine(ScriptState& state, std::string_view text) {
  const InstallSession& session = state.Session;
  state.Session.SetStatus("F\xFCge Zeile hinzu..." + state.FirstArgName());
  NoteSetback(state, basTextEdit::AddLine(session.Files, session.SAInstallDir, state.FirstArg,
                                          state.SecondArg, text, EventsOf(state)));
  state.SecondArg = text;  // the next text goes below this one
}

void RemoveLine(ScriptState& state, std::string_view /*trigger*/) {
  const InstallSession& session = state.Session;
  state.Session.SetStatus("L\xF6sche Zeile..." + state.FirstArgName());
  NoteSetback(state, basTextEdit::RemoveLine(session.Files, session.SAInstallDir, state.FirstArg,
                                             state.SecondArg, EventsOf(state)));
}

void ReplaceLine(ScriptState& state, std::string_view text) {
  const InstallSession& session = state.Session;
  NoteSetback(state, basTextEdit::ReplaceLine(session.Files, session.SAInstallDir, state.FirstArg,
                                              state.SecondArg, text, EventsOf(state)));
}

}  // namespace LineCommands
