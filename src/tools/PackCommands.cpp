#include "tools/PackCommands.h"

#include <iostream>
#include <memory>
#include <optional>

#include <CLI/CLI.hpp>

#include "pack/Catalogue.h"
#include "pack/clsEncryption.h"
#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "tools/JsonOutput.h"
#include "tools/OpenPack.h"
#include "tools/OwnTempFolder.h"
#include "tools/PackBuilder.h"
#include "tools/PackUnpacker.h"
#include "tools/Paths.h"

namespace {

struct PackArguments {
  std::string from;
  std::string to;
  std::optional<std::string> pass;
  bool json = false;
};

std::string PassPhrase(const std::optional<std::string>& utf8) {
  if (!utf8) return clsEncryption::IndexPassword();
  const std::optional<std::string> phrase = Text::FromUtf8(*utf8);
  if (!phrase) throw UsageError("--pass: a character that Windows-1252 doesn't have");
  if (phrase->empty() || phrase->size() > clsEncryption::kLongestPassword) {
    throw UsageError(
        Concat("--pass: a pass phrase has 1 to ", clsEncryption::kLongestPassword, " characters"));
  }
  return *phrase;
}

int Cipher(const PackArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  clsEncryption cipher(files);
  cipher.Password = PassPhrase(arguments.pass);
  cipher.InputFileName = ExistingFile(files, arguments.from);
  cipher.OutputFileName = files.ToDosText(NativePath(arguments.to));
  if (IsSameFile(arguments.from, arguments.to)) {
    throw UsageError("input and output are the same file");
  }
  std::optional<std::string> failure;
  cipher.MessageBox = [&](const std::string& text, const std::string&) { failure = text; };
  cipher.EncryptFile();
  if (failure) Fail(*failure);
  return ExitStatus::kDone;
}

void PrintCatalogue(const Catalogue& catalogue) {
  std::cout << Printable(catalogue.Title) + "\n";
  for (std::size_t i = 1; i < catalogue.ModTypes.size(); ++i) {
    const udtModType& type = catalogue.ModTypes[i];
    std::cout << "Type " + std::to_string(type.TypeID) + ": " + Printable(type.Name) + " (" +
                     std::to_string(type.ModCount) + " mods)\n";
  }
  for (std::size_t i = 1; i < catalogue.Mods.size(); ++i) {
    const udtMod& mod = catalogue.Mods[i];
    std::cout << "Mod " + std::to_string(i) + ", type " + std::to_string(mod.TypeID) + ": " +
                     Printable(mod.Name) + " - " + Printable(mod.Description) + "\n";
  }
}

int Info(const PackArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  const OwnTempFolder temp(files);
  clsIMGtool pack(files);
  Catalogue catalogue;
  const auto defect = OpenPack(files, pack, temp.DosPath(), catalogue, arguments.from);
  if (arguments.json) {
    std::cout << CatalogueJson(catalogue).dump(2) << '\n';
  } else {
    PrintCatalogue(catalogue);
  }
  if (!defect) return ExitStatus::kDone;
  PrintError(*defect);
  return ExitStatus::kUnusable;
}

/// How `build` and `unpack` tell what a person should know but can't stop them.
void PrintWarning(const std::string& text) {
  PrintError("warning: " + text);
}

int Build(const PackArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  BuildPack(files, ExistingFolder(files, arguments.from), files.ToDosText(NativePath(arguments.to)),
            PrintWarning);
  return ExitStatus::kDone;
}

int Unpack(const PackArguments& arguments) {
  const FileSystem files(FileSystemOptions::FromEnvironment());
  const OwnTempFolder temp(files);
  clsIMGtool pack(files);
  Catalogue catalogue;
  OpenWholePack(files, pack, temp.DosPath(), catalogue, arguments.from);
  const std::string folder = MakeEmptyFolder(files, arguments.to);
  const std::size_t lost = UnpackPack(files, pack, catalogue, folder, PrintWarning);
  if (lost > 0)
    Fail("pack \"", Text::FromUtf8Lossy(arguments.from), "\": ", lost, " entries can't be read");
  return ExitStatus::kDone;
}

CLI::App* AddCommand(CLI::App& app, Action& chosen, const std::string& name,
                     const std::string& description,
                     const std::shared_ptr<PackArguments>& arguments,
                     int (*procedure)(const PackArguments&)) {
  CLI::App* const command = app.add_subcommand(name, description);
  command->callback(
      [&chosen, arguments, procedure] { chosen = [=] { return procedure(*arguments); }; });
  return command;
}

}  // namespace

void AddPackCommands(CLI::App& app, Action& chosen) {
  const auto arguments = std::make_shared<PackArguments>();
  CLI::App* const cipher =
      AddCommand(app, chosen, "cipher", "Encipher or decipher a file", arguments, Cipher);
  cipher->add_option("IN", arguments->from, "the file to read")->required();
  cipher->add_option("OUT", arguments->to, "the file to write, which is replaced")->required();
  cipher->add_option_function<std::string>(
      "--pass", [arguments](const std::string& phrase) { arguments->pass = phrase; },
      "the pass phrase; default that of a pack's index");

  CLI::App* const info =
      AddCommand(app, chosen, "info", "Show a pack's catalogue", arguments, Info);
  info->add_option("PACK", arguments->from, "the pack")->required();
  info->add_flag("--json", arguments->json, "as JSON");

  CLI::App* const build =
      AddCommand(app, chosen, "build", "Make a pack from a folder", arguments, Build);
  build->add_option("SOURCE", arguments->from, "the folder, as docs/pack-source.md describes it")
      ->required();
  build->add_option("PACK", arguments->to, "the pack, which is replaced")->required();

  CLI::App* const unpack =
      AddCommand(app, chosen, "unpack", "Turn a pack back into such a folder", arguments, Unpack);
  unpack->add_option("PACK", arguments->from, "the pack")->required();
  unpack->add_option("DEST", arguments->to, "the folder: a new or an empty one")->required();
}
