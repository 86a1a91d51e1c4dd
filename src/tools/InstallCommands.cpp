#include "tools/InstallCommands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include <CLI/CLI.hpp>

#include "core/basMain.h"
#include "install/InstallRun.h"
#include "install/InstallSession.h"
#include "install/RunLock.h"
#include "install/basScript.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/FolderLock.h"
#include "platform/Process.h"
#include "platform/Shell.h"
#include "platform/Terminal.h"
#include "platform/Text.h"
#include "platform/WantedStop.h"
#include "tools/BeforeInstall.h"
#include "tools/ConsoleHost.h"
#include "tools/OpenPack.h"
#include "tools/OwnTempFolder.h"
#include "tools/Paths.h"
#include "tools/SourceFiles.h"

namespace {

struct InstallArguments {
  std::string script;
  std::string pack;
  std::string game;
  std::string temp;
  std::string current;
  std::optional<std::string> mods;
  bool anyDirectory = false;
  bool force = false;
  bool trust = false;
  bool quiet = false;
  bool isSource = false;
};

constexpr std::string_view kProgram = "kvpk";

std::string Named(const FolderLock::Holder& holder) {
  return holder.program.empty() ? "another program"
                                : Concat(holder.program, ", process ", holder.process);
}

/// Fails if another program is changing the game directory.
RunLock LockGame(const FileSystem& files, const std::string& dosPath, const std::string& named) {
  RunLock lock(files, dosPath, kProgram);
  if (const auto other = lock.Other())
    Fail("\"", Text::FromUtf8Lossy(named), "\" is being changed by ", Named(*other));
  return lock;
}

/// The folder for the run's temp files: the one that the user names, which is made if need be and
/// stays, or else one of the run's own.
class RunFolder {
 public:
  RunFolder(const FileSystem& files, const std::string& named, const std::string& game) {
    if (named.empty()) {
      dosPath_ = own_.emplace(files).DosPath();
      return;
    }
    dosPath_ = files.ToDosText(NativePath(named));
    if (!std::filesystem::is_directory(NativePath(named))) files.CreateFolder(dosPath_);
    // The game directory itself is locked already, and may be made of links.
    if (IsSameFile(named, game)) return;
    lock_ = FolderLock::Take(NativePath(named), kProgram);
    if (lock_.GetState() == FolderLock::State::kTaken)
      Fail("--temp \"", Text::FromUtf8Lossy(named), "\" is in use by ", Named(lock_.GetHolder()));
    files.WriteOnlyOwnFilesIn(dosPath_);
  }
  [[nodiscard]] const std::string& DosPath() const { return dosPath_; }

 private:
  std::optional<OwnTempFolder> own_;
  FolderLock lock_;
  std::string dosPath_;
};

/// The folder that a run has as its current one: the one that the user names, or else an empty one,
/// so that no file that happens to lie where the caller stands comes between a script and its
/// payload.
class CurrentFolder {
 public:
  CurrentFolder(const FileSystem& files, const std::string& named)
      : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(named.empty() ? files.ToNative(own_.emplace(files).DosPath())
                                                : NativePath(named));
  }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;
  CurrentFolder(CurrentFolder&&) = delete;
  CurrentFolder& operator=(CurrentFolder&&) = delete;
  ~CurrentFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }

 private:
  std::optional<OwnTempFolder> own_;
  std::filesystem::path before_;
};

/// One failure on stderr; `script` says whose.
void PrintFailure(const std::string& script, const basScript::LineFailure& failure) {
  if (failure.lineNumber == 0) return PrintError(failure.cause);
  PrintError(Concat(script, failure.endedScript ? ", stopped early at line " : ", line ",
                    failure.lineNumber, ", \"", failure.line, "\": ", failure.cause));
}

/// The script as a run takes it.
std::string ScriptText(const FileSystem& files, const InstallArguments& arguments) {
  const std::string path = ExistingFile(files, arguments.script);
  if (arguments.isSource) return SourceText(files, path);
  std::string script = files.ReadWhole(path);
  if (script.find('\n') != std::string::npos && script.find("\r\n") == std::string::npos) {
    PrintError("warning: \"" + Text::FromUtf8Lossy(arguments.script) +
               "\" has no CR LF line ends, so all of it is one line (--source takes the script of "
               "a pack's source folder)");
  }
  return script;
}

/// Tells where a run was stopped; the exit status.
int Stopped(const std::string& script, const InstallSession& session, const WantedStop& stop) {
  PrintError(Concat("stopped in ", script, " at line ", session.LineNumber,
                    "; what was done until then stays done"));
  return ExitStatus::OfStop(stop);
}

int RunScript(const InstallArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  const std::string script = ScriptText(files, arguments);
  const std::string game = ExistingFolder(files, arguments.game);
  const RunLock lock = LockGame(files, game, arguments.game);
  const RunFolder temp(files, arguments.temp, arguments.game);
  ScriptConsole host;
  DesktopOpener shell(files);
  InstallSession session(files, host, shell, temp.DosPath());
  session.SAInstallDir = game;
  if (!arguments.pack.empty()) LoadExisting(files, session.ModPackIMG, arguments.pack);

  const std::string name = "\"" + Text::FromUtf8Lossy(arguments.script) + "\"";
  std::vector<basScript::LineFailure> failures;
  try {
    failures = basScript::RunInstallScript(session, script);
  } catch (const WantedStop& stop) {
    return Stopped(name, session, stop);
  }
  std::cout << "progress: " << host.ModBar().value << '/' << host.ModBar().max << '\n';
  for (const basScript::LineFailure& failure : failures) {
    PrintFailure(name, failure);
  }
  const bool ended = !failures.empty() && failures.back().endedScript;
  return ended ? ExitStatus::kFailed : ExitStatus::kDone;
}

/// Ticks exactly the mods that `list` names by their catalogue numbers, such as "1,3,4".
void SelectMods(Catalogue& catalogue, const std::string& list) {
  for (udtMod& mod : catalogue.Mods) mod.Selected = false;
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    const std::string item = list.substr(begin, end - begin);
    const auto number = static_cast<std::size_t>(Text::WholeNumber(item).value_or(0));
    if (number < 1 || number >= catalogue.Mods.size()) {
      throw UsageError(Concat("--mods: \"", Text::FromUtf8Lossy(item),
                              "\" is no number of a mod; the pack ", "has ",
                              catalogue.Mods.size() - 1));
    }
    catalogue.Mods[number].Selected = true;
    begin = end + 1;
  }
}

int Install(const InstallArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  const std::string game = ExistingFolder(files, arguments.game);
  if (!arguments.anyDirectory && !basMain::IsGameDirectory(files, game)) {
    Fail("\"", Text::FromUtf8Lossy(arguments.game),
         "\" isn't a game directory: it has no gta_sa.exe ",
         "(--any-directory installs all the same)");
  }
  const RunLock lock = LockGame(files, game, arguments.game);
  const RunFolder temp(files, arguments.temp, arguments.game);
  QuietConsole quiet;
  InstallConsole loud(Terminal::IsStandardOutput());
  ConsoleHost& host = arguments.quiet ? static_cast<ConsoleHost&>(quiet) : loud;
  DesktopOpener shell(files);
  InstallSession session(files, host, shell, temp.DosPath());
  session.SAInstallDir = game;
  OpenWholePack(files, session.ModPackIMG, session.TempDir, session.Pack, arguments.pack);
  if (arguments.mods) SelectMods(session.Pack, *arguments.mods);

  const CurrentFolder current(files, arguments.current);
  if (!IsSound(session, arguments.force)) return ExitStatus::kUnusable;
  if (!IsTrusted(session, arguments.trust)) return ExitStatus::kUnusable;
  std::vector<RunFailure> failures;
  try {
    failures = RunInstall(session);
  } catch (const WantedStop& stop) {
    host.ClearProgress();
    return Stopped(ScriptName(session.Pack, session.ModNumber), session, stop);
  }
  for (const auto& [mod, failure] : failures) {
    PrintFailure(ScriptName(session.Pack, mod), failure);
  }
  return failures.empty() ? ExitStatus::kDone : ExitStatus::kFailed;
}

/// Runs a procedure that looks at every turn whether it shall stop, and then ends in order.
int Stoppable(int (*procedure)(const InstallArguments&), const InstallArguments& arguments) {
  Process::CatchStop();
  return procedure(arguments);
}

CLI::App* AddCommand(CLI::App& app, Action& chosen, const std::string& name,
                     const std::string& description,
                     const std::shared_ptr<InstallArguments>& arguments,
                     int (*procedure)(const InstallArguments&)) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_option("--game", arguments->game, "the game directory")->required();
  command->add_option("--temp", arguments->temp,
                      "a folder for temporary files, which stays; else one is made and removed");
  command->callback([&chosen, arguments, procedure] {
    chosen = [=] { return Stoppable(procedure, *arguments); };
  });
  return command;
}

}  // namespace

void AddInstallCommands(CLI::App& app, Action& chosen) {
  const auto arguments = std::make_shared<InstallArguments>();
  CLI::App* const script =
      AddCommand(app, chosen, "script", "Run one install script in the current directory",
                 arguments, RunScript);
  script->add_option("SCRIPT", arguments->script, "the script, with CR LF lines")->required();
  script->add_flag("--source", arguments->isSource,
                   "it is a script of a pack's source folder: UTF-8, any line ends");
  script->add_option("--pack", arguments->pack, "the pack that payload is taken from");

  CLI::App* const install = AddCommand(
      app, chosen, "install", "Install a pack's mods, then run its end script", arguments, Install);
  install->add_option("PACK", arguments->pack, "the pack")->required();
  install->add_option("--mods", arguments->mods, "numbers of the mods, such as 1,3,4; default all");
  install->add_option(
      "--current", arguments->current,
      "the folder in which scripts find files by relative names; else an empty one");
  install->add_flag("--force", arguments->force, "install although the check finds defects");
  install->add_flag("--trust", arguments->trust,
                    "don't ask about what scripts do outside the game directory");
  install->add_flag("--quiet", arguments->quiet, "print nothing but errors");
  install->add_flag("--any-directory", arguments->anyDirectory,
                    "don't ask for the game's program file in the game directory");
}
