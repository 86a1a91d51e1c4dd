#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

class InstallSession;

/// Something that would go wrong in a run, found ahead of it.
struct PackFinding {
  enum class Kind {
    kDamaged,     ///< a payload whose stream doesn't unpack
    kNoRoom,      ///< a disk that is too full
    kNotWritten,  ///< a folder that the user may not write to
    kMissing,     ///< a payload that a line names and the pack lacks; the line may never run
    kProtected,   ///< a file that the user may not write to; the rest of the script goes on
  };
  Kind kind;
  std::string name;   ///< of the payload, or a path
  std::string cause;  ///< for developers

  /// Whether a careful user wouldn't start the run.
  [[nodiscard]] bool Refuses() const { return kind != Kind::kMissing && kind != Kind::kProtected; }
};

/// Looks ahead at the run of the ticked mods' scripts and the end script, every line of them:
/// unpacks each payload that they name, and looks at the room on the disks and the right to write.
/// Changes nothing. `progress` hears how many payloads of how many are done, from 0 on; events run
/// meanwhile.
std::vector<PackFinding> CheckPack(
    InstallSession& session,
    const std::function<void(std::size_t done, std::size_t count)>& progress);
