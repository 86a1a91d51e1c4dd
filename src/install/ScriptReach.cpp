#include "install/ScriptReach.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "install/InstallRun.h"
#include "install/InstallSession.h"
#include "install/ScriptWalk.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"

namespace {

using Base = ArgumentRole::Base;
using Content = ArgumentRole::Content;
using Effect = ArgumentRole::Effect;
using Kind = OutsideDeed::Kind;

/// The scripts, looked at line by line.
class Reach {
 public:
  explicit Reach(const InstallSession& session) : session_(session) {}

  void Take(std::size_t mod, const ScriptStep& step, std::size_t line) {
    if (step.command == nullptr) return;
    mod_ = mod;
    line_ = line;
    if (step.index == 0) first_ = step.argument;
    if (step.index == 1) second_ = step.argument;
    LookForNetwork(step);
    // An archive's own line opens it for writing; all other paths wait for a further line.
    if (step.role.content == Content::kArchive) NoteWriting(step.argument);
    if (step.role.effect == Effect::kOpens) NoteOpening(step);
    // The test for an entry makes the archive, empty, if it isn't there.
    if (step.test == ScriptStep::Test::kEntry) NoteWriting(second_);
    if (step.index >= 2) TakeFurther(*step.command, step.argument);
  }
  std::vector<OutsideDeed> TakeDeeds() { return std::move(deeds_); }

 private:
  void TakeFurther(const ScriptCommand& command, std::string_view argument) {
    if (command.first.effect == Effect::kWrites) NoteWriting(first_);
    switch (command.further.effect) {
      case Effect::kReads:
      case Effect::kMoves:
        return NoteSource(command.further.effect, argument);
      case Effect::kDeletes:
        return Note(Kind::kDeletes, HereOrInTemp(argument, kFindHidden));
      case Effect::kRenames:
        Note(Kind::kRenames, HereOrInTemp(first_, kFindHidden | kFindFolders));
        return NoteNewName(Kind::kRenames, std::string(DosPath::FolderPart(first_)), argument);
      case Effect::kCreates:
        Note(Kind::kCreatesFolder, DosPath::Join(HereOrInTemp(first_, kFindFolders), argument));
        return NoteNewName(Kind::kCreatesFolder, DosPath::Join(first_, ""), argument);
      default:
        if (command.first.effect != Effect::kRemoves) return;
        return Note(Kind::kRemovesFolder, HereOrInTemp(first_, kFindFolders));
    }
  }

  /// A new name that is a path leads anywhere, whether its file is there yet or comes in the run.
  void NoteNewName(Kind kind, const std::string& folder, std::string_view name) {
    if (DosPath::IsPlainFileName(name)) return;
    const std::string path = folder + std::string(name);
    Note(kind, path);
    Note(kind, DosPath::Join(session_.TempDir, path));
  }

  void NoteWriting(std::string_view path) { Note(Kind::kWrites, session_.ResolvePath(path)); }

  void NoteOpening(const ScriptStep& step) {
    const bool asWritten =
        step.role.content == Content::kOpenedHere && !step.argument.starts_with('\\');
    Add(Kind::kOpens, asWritten ? std::string(step.argument) : session_.ResolvePath(step.argument));
  }

  /// A source that isn't found as written is looked for in the temp directory, and deleted there.
  void NoteSource(Effect effect, std::string_view argument) {
    const std::string source(argument);
    if (DosPath::IsNetworkPath(source)) return;
    if (DosPath::IsFullPath(source) || Exists(source, kFindHidden)) {
      if (effect == Effect::kMoves) Note(Kind::kMoves, source);
    } else if (!DosPath::IsPlainFileName(source)) {
      Note(Kind::kDeletes, session_.TempPath(source));
    }
  }

  /// What isn't found as written is looked for below the temp directory. A whole path that isn't
  /// there now may be by the time that its line is run.
  [[nodiscard]] std::string HereOrInTemp(std::string_view path, int mask) {
    const bool isHere = DosPath::IsFullPath(path) || DosPath::IsNetworkPath(path) ||
                        Exists(std::string(path), mask);
    return isHere ? std::string(path) : DosPath::Join(session_.TempDir, path);
  }

  /// Nobody looks for a file on a server before the user has been asked.
  [[nodiscard]] bool Exists(const std::string& path, int mask) {
    const auto [known, isNew] = exists_.try_emplace({path, mask}, false);
    if (isNew) known->second = !session_.Files.FindFirst(path, mask).empty();
    return known->second;
  }

  void LookForNetwork(const ScriptStep& step) {
    if (step.role.base == Base::kNone || step.role.effect == Effect::kOpens) return;
    const std::string path = step.role.base == Base::kGame ? session_.ResolvePath(step.argument)
                                                           : std::string(step.argument);
    if (DosPath::IsNetworkPath(path)) Add(Kind::kReachesNetwork, path);
  }

  /// Takes note of a deed, unless it stays inside.
  void Note(Kind kind, const std::string& path) {
    // The last name of a path may hold wildcards, which name nothing.
    const std::string place =
        DosPath::HasWildcards(path) ? std::string(DosPath::FolderPart(path)) : path;
    if (DosPath::IsNetworkPath(path)) return Add(Kind::kReachesNetwork, path);
    const FileSystem& files = session_.Files;
    const bool isInside = !files.IsNameable(place) || files.LiesIn(place, session_.SAInstallDir) ||
                          files.LiesIn(place, session_.TempDir);
    if (!isInside) Add(kind, path);
  }

  void Add(Kind kind, const std::string& place) {
    if (known_.emplace(mod_, kind, place).second) deeds_.push_back({mod_, line_, kind, place});
  }

  const InstallSession& session_;
  std::vector<OutsideDeed> deeds_;
  std::set<std::tuple<std::size_t, Kind, std::string>> known_;
  std::size_t mod_ = 0;
  std::size_t line_ = 0;
  std::string first_;   // the open block's first argument
  std::string second_;  // and its second
  std::map<std::pair<std::string, int>, bool> exists_;
};

}  // namespace

std::vector<OutsideDeed> DeedsOutside(InstallSession& session) {
  Reach reach(session);
  for (const ScriptToRun& script : ScriptsToRun(session.Pack)) {
    ForEachArgument(script.text, [&](const ScriptStep& step, std::size_t line) {
      reach.Take(script.mod, step, line);
      session.Host.DoEvents();
    });
  }
  return reach.TakeDeeds();
}
