// AddLine, RemoveLine, ReplaceLine: line 1 of a block is the text file, line 2 the pattern.

#include "install/InstallSession.h"
#include "install/ScriptRun.h"
#include "install/basTextEdit.h"
#include "platform/FileSystem.h"

void ScriptRun::AddLine(std::string_view line) {
  session_.SetStatus("F\xFCge Zeile hinzu..." + FirstArgName());
  basTextEdit::AddLine(session_.Files, session_.SAInstallDir, FirstArg, SecondArg, line);
  SecondArg = line;  // the next text goes below this one
}

void ScriptRun::RemoveLine(std::string_view /*line*/) {
  session_.SetStatus("L\xF6sche Zeile..." + FirstArgName());
  basTextEdit::RemoveLine(session_.Files, session_.SAInstallDir, FirstArg, SecondArg);
}

void ScriptRun::ReplaceLine(std::string_view line) {
  basTextEdit::ReplaceLine(session_.Files, session_.SAInstallDir, FirstArg, SecondArg, line);
}
