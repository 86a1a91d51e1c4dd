#pragma once

#include <string>
#include <utility>
#include <vector>

class InstallSession;

/// What the handlers of one script's commands have in hand, beside the line itself. Nothing is kept
/// from one script to the next.
struct ScriptState {
  explicit ScriptState(InstallSession& session) : Session(session) {}

  InstallSession& Session;
  std::string FirstArg;        // the path that the open block works on
  std::string RawFirstArg;     // the first argument as written, for the file commands
  std::string SecondArg;       // the second argument; `AddLine` moves it on
  bool ArchiveUsable = false;  // the first line of an IMG block named an archive
  bool Unpacked = false;       // the source of the current line was unpacked into `TempDir`
  /// What went wrong in the current line without ending the script, for developers.
  std::vector<std::string> Setbacks;

  /// The bare name of the file that `FirstArg` names, as on disk.
  [[nodiscard]] std::string FirstArgName() const;
  /// Turns a pack entry into the plain file of that name in `TempDir`. A name that can't stand for
  /// one file there is treated like one that the pack doesn't have: nothing is written.
  void UnpackPayload(std::string_view name);
  /// Deletes what that left, first the packed file.
  void DeletePayload(std::string_view name) const;
};
