#include "tools/BeforeInstall.h"

#include <algorithm>
#include <string>
#include <vector>

#include "install/InstallSession.h"
#include "install/PackCheck.h"
#include "install/ScriptReach.h"
#include "platform/Failure.h"
#include "platform/Process.h"
#include "platform/Terminal.h"
#include "platform/Text.h"
#include "platform/WantedStop.h"
#include "tools/Report.h"

namespace {

std::string Described(const PackFinding& finding) {
  const std::string name = " \"" + finding.name + "\"";
  switch (finding.kind) {
    case PackFinding::Kind::kDamaged:
      return "payload" + name + " is damaged: " + finding.cause;
    case PackFinding::Kind::kNoRoom:
      return "the disk of" + name + " is too full: " + finding.cause;
    case PackFinding::Kind::kNotWritten:
      return "folder" + name + ": " + finding.cause;
    case PackFinding::Kind::kMissing:
      return "warning: payload" + name + ": " + finding.cause;
    case PackFinding::Kind::kProtected:
      return "warning: file" + name + ": " + finding.cause;
  }
  return finding.cause;
}

std::string Described(const OutsideDeed& deed) {
  switch (deed.kind) {
    case OutsideDeed::Kind::kWrites:
      return "writes to " + deed.place;
    case OutsideDeed::Kind::kMoves:
      return "moves away " + deed.place;
    case OutsideDeed::Kind::kDeletes:
      return "deletes " + deed.place;
    case OutsideDeed::Kind::kRenames:
      return "renames " + deed.place;
    case OutsideDeed::Kind::kCreatesFolder:
      return "makes the folder " + deed.place;
    case OutsideDeed::Kind::kRemovesFolder:
      return "removes the folder " + deed.place;
    case OutsideDeed::Kind::kOpens:
      return "opens " + deed.place;
    case OutsideDeed::Kind::kReachesNetwork:
      return "reaches for " + deed.place + " on the network";
  }
  return deed.place;
}

/// Asks on the terminal; anything but a clear yes is a no.
bool Confirms(const std::string& question) {
  const std::string answer = Text::LowerCase(Terminal::Ask(question + " [y/N] "));
  if (const int signal = Process::StopRequested()) throw WantedStop{signal};
  return answer == "y" || answer == "yes";
}

}  // namespace

bool IsSound(InstallSession& session, bool force) {
  const std::vector<PackFinding> findings = CheckPack(session, [](std::size_t, std::size_t) {});
  for (const PackFinding& finding : findings) PrintError(Described(finding));
  const bool refuses = std::any_of(findings.begin(), findings.end(),
                                   [](const PackFinding& finding) { return finding.Refuses(); });
  if (!refuses || force) return true;
  PrintError("nothing has been changed (--force installs all the same)");
  return false;
}

bool IsTrusted(InstallSession& session, bool trust) {
  if (trust) return true;
  const std::vector<OutsideDeed> deeds = DeedsOutside(session);
  if (deeds.empty()) return true;
  PrintError("the pack's scripts do something outside the game directory:");
  for (const OutsideDeed& deed : deeds) {
    PrintError(
        Concat(ScriptName(session.Pack, deed.mod), ", line ", deed.line, ": ", Described(deed)));
  }
  if (Terminal::IsStandardInput() && Confirms("Install all the same?")) return true;
  PrintError("nothing has been changed (--trust installs all the same)");
  return false;
}
