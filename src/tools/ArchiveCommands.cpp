#include "tools/ArchiveCommands.h"

#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include <CLI/CLI.hpp>

#include "pack/clsIMGtool.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/Text.h"
#include "platform/WantedStop.h"
#include "tools/JsonOutput.h"
#include "tools/Paths.h"

namespace {

struct ArchiveArguments {
  std::string archive;
  std::vector<std::string> names;  // of files or entries
  std::string name;
  std::string destination;
  bool json = false;
};

void PrintDirectory(const clsIMGtool& archive) {
  for (const udtIMGEntry& entry : archive.Entries()) {
    std::cout << Concat(entry.Offset, '\t', entry.Size, '\t') + Printable(entry.Name) + "\n";
  }
  std::cout << archive.Entries().size() << " entries\n";
}

int List(const ArchiveArguments& arguments) {
  FileSystemOptions options = FileSystemOptions::FromEnvironment();
  options.readOnly = true;
  const FileSystem files(options);
  clsIMGtool archive(files);
  LoadExisting(files, archive, arguments.archive);
  if (arguments.json) {
    std::cout << DirectoryJson(archive).dump(2) << '\n';
  } else {
    PrintDirectory(archive);
  }
  return ExitStatus::kDone;
}

int Add(const ArchiveArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  clsIMGtool archive(files);
  LoadExisting(files, archive, arguments.archive);
  std::vector<std::string> paths;
  for (const std::string& file : arguments.names) {
    paths.push_back(ExistingFile(files, file));
    if (Text::FromAlias(paths.back().substr(DosPath::FolderPart(paths.back()).size())))
      Fail("\"", Text::FromUtf8Lossy(file), "\": Windows-1252 can't say this name");
    if (IsSameFile(file, arguments.archive)) {
      throw UsageError("an archive can't be added to itself: " + Text::FromUtf8Lossy(file));
    }
  }
  for (const std::string& path : paths) archive.AddFile(path);
  return ExitStatus::kDone;
}

int Remove(const ArchiveArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  clsIMGtool archive(files);
  LoadExisting(files, archive, arguments.archive);
  std::string missing;
  for (const std::string& utf8 : arguments.names) {
    const double countBefore = archive.EntryCount();
    const std::optional<std::string> name = Text::FromUtf8(utf8);
    if (name) archive.RemoveFile(*name);
    if (archive.EntryCount() == countBefore) missing += " \"" + Text::FromUtf8Lossy(utf8) + "\"";
  }
  if (!missing.empty()) {
    Fail("archive \"", Text::FromUtf8Lossy(arguments.archive), "\": no such entry:", missing);
  }
  return ExitStatus::kDone;
}

int Export(const ArchiveArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  clsIMGtool archive(files);
  LoadExisting(files, archive, arguments.archive);
  if (IsSameFile(arguments.destination, arguments.archive)) {
    throw UsageError("an entry can't be exported onto its own archive");
  }
  const std::optional<std::string> name = Text::FromUtf8(arguments.name);
  if (!name || !archive.Export(*name, files.ToDosText(NativePath(arguments.destination)))) {
    Fail("archive \"", Text::FromUtf8Lossy(arguments.archive), "\": no such entry: \"",
         Text::FromUtf8Lossy(arguments.name), "\"");
  }
  return ExitStatus::kDone;
}

int Rebuild(const ArchiveArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  clsIMGtool archive(files);
  LoadExisting(files, archive, arguments.archive);
  Process::CatchStop();
  archive.DoEvents = [] {
    if (const int signal = Process::StopRequested()) throw WantedStop{signal};
  };
  if (!archive.RebuildIMG("")) {
    Fail("archive \"", Text::FromUtf8Lossy(arguments.archive), "\": it wasn't rebuilt");
  }
  return ExitStatus::kDone;
}

using Procedure = int (*)(const ArchiveArguments&);

/// Adds a subcommand with its first argument, the archive.
CLI::App* AddCommand(CLI::App& app, Action& chosen, const std::string& name,
                     const std::string& description,
                     const std::shared_ptr<ArchiveArguments>& arguments, Procedure procedure) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->add_option("ARCHIVE", arguments->archive, "an IMG archive or pack")->required();
  command->callback(
      [&chosen, arguments, procedure] { chosen = [=] { return procedure(*arguments); }; });
  return command;
}

}  // namespace

void AddArchiveCommands(CLI::App& app, Action& chosen) {
  const auto arguments = std::make_shared<ArchiveArguments>();
  AddCommand(app, chosen, "list", "Show an archive's directory; changes nothing", arguments, List)
      ->add_flag("--json", arguments->json, "as JSON");
  AddCommand(app, chosen, "add", "Add files to an archive, each under its own name", arguments, Add)
      ->add_option("FILE", arguments->names, "files to add")
      ->required();
  AddCommand(app, chosen, "remove", "Take entries out of an archive's directory", arguments, Remove)
      ->add_option("NAME", arguments->names, "names of entries, in any case")
      ->required();
  CLI::App* const exporting =
      AddCommand(app, chosen, "export", "Write an entry's data to a file", arguments, Export);
  exporting->add_option("NAME", arguments->name, "the entry's exact name")->required();
  exporting->add_option("DEST", arguments->destination, "the file; a longer one keeps its tail")
      ->required();
  AddCommand(app, chosen, "rebuild", "Write an archive anew, without dead data", arguments,
             Rebuild);
}
