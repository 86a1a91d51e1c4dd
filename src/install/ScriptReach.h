#pragma once

#include <cstddef>
#include <string>
#include <vector>

class InstallSession;

/// Something that a script would do beyond the game directory and the temp directory.
struct OutsideDeed {
  enum class Kind {
    kWrites,          ///< makes or changes files at `place`, or in it
    kMoves,           ///< takes the file away from there
    kDeletes,         ///< what `place` names; it may hold wildcards
    kRenames,         ///< a file or folder, from there or to there
    kCreatesFolder,   ///< the folder `place`
    kRemovesFolder,   ///< the folder `place`
    kOpens,           ///< a program, document or address
    kReachesNetwork,  ///< looks for the file on a server
  };
  std::size_t mod;   ///< catalogue number, 1-based; 0 for the end script
  std::size_t line;  ///< of the mod's script, 1-based
  Kind kind;
  std::string place;  ///< DOS path text, or what is opened

  bool operator==(const OutsideDeed&) const = default;
};

/// All that the scripts of the ticked mods and the end script could do outside, each deed of a
/// script once, in their order. Every line counts, whether a run would jump over it or not. A
/// relative name that `Move`, `Delete` and their like find in the current directory is outside,
/// too. What is reached through links that lie in the game directory is inside: no script makes
/// any. Events run meanwhile.
std::vector<OutsideDeed> DeedsOutside(InstallSession& session);
