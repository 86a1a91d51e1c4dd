#include "tools/PackUnpacker.h"

#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "core/basIni.h"
#include "pack/ArchiveFormat.h"
#include "pack/Catalogue.h"
#include "pack/ZlibStream.h"
#include "pack/clsIMGtool.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

using PackSource::Warn;

constexpr std::size_t kSector = ArchiveFormat::kSector;
constexpr const char* kEndScriptFile = "end.txt";
constexpr const char* kPageFile = "page.html";
constexpr const char* kScriptFile = "install.txt";
constexpr const char* kReadmeFile = "readme.txt";

/// `number` with leading zeros.
std::string Padded(std::size_t number, std::size_t width) {
  std::string digits = std::to_string(number);
  return digits.size() >= width ? digits : std::string(width - digits.size(), '0') + digits;
}

/// A name in lower case without anything that a folder's name could stumble over.
std::string Slug(const std::string& name) {
  constexpr std::size_t kLongest = 30;
  static const std::map<char, std::string> kUmlauts{
      {'\xE4', "ae"}, {'\xF6', "oe"}, {'\xFC', "ue"}, {'\xDF', "ss"}};
  std::string slug;
  for (const char letter : Text::LowerCase(name)) {
    if (slug.size() >= kLongest) break;
    if (const auto umlaut = kUmlauts.find(letter); umlaut != kUmlauts.end()) {
      slug += umlaut->second;
    } else if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) {
      slug += letter;
    } else if (!slug.empty() && slug.back() != '-') {
      slug += '-';
    }
  }
  while (slug.ends_with('-')) slug.pop_back();
  return slug;
}

/// A text as a file for people: UTF-8, one line end more than the text has. Line ends are LF; CR
/// LF if the text has CRs of its own, which would else be lost at the end of a line.
std::string SourceText(const std::string& text) {
  const std::string linesOnly = Text::Replace(text, "\r\n", "\n");
  const bool hasLoneCr = linesOnly.find('\r') != std::string::npos;
  return Text::ToUtf8(hasLoneCr ? text + "\r\n" : linesOnly + "\n");
}

/// One "Key=value" line of an INI file for people.
std::string IniLine(std::string_view key, const std::string& value) {
  std::string written = basIni::Quoted(value);
  // A CR at the end would be taken for a part of the line's end.
  if (written.ends_with('\r')) written = "\"" + value + "\"";
  return std::string(key) + "=" + Text::ToUtf8(written) + "\n";
}

std::string IniLineUnlessEmpty(std::string_view key, const std::string& value) {
  return value.empty() ? std::string() : IniLine(key, value);
}

/// Fill at the end of stored data goes, as far as building puts it back.
std::string WithoutFill(std::string data) {
  std::size_t fill = 0;
  while (fill + 1 < kSector && fill < data.size() && data[data.size() - 1 - fill] == '\0') ++fill;
  data.resize(data.size() - fill);
  return data;
}

bool LooksCompressed(const std::string& data) {
  if (data.size() < 2) return false;
  const auto method = static_cast<unsigned char>(data[0]);
  const auto flags = static_cast<unsigned char>(data[1]);
  return (method & 0x0FU) == 8 && (method * 256U + flags) % 31 == 0;
}

/// Who uses an entry: a mod's number, or 0 for several or the pack as a whole.
class Users {
 public:
  void Add(std::string_view entry, std::size_t mod) {
    const auto [user, isNew] = users_.try_emplace(std::string(entry), mod);
    if (!isNew && user->second != mod) user->second = 0;
  }
  [[nodiscard]] std::optional<std::size_t> Of(const std::string& entry) const {
    const auto user = users_.find(entry);
    return user == users_.end() ? std::nullopt : std::optional(user->second);
  }

 private:
  std::map<std::string, std::size_t> users_;
};

class PackUnpacker {
 public:
  PackUnpacker(const FileSystem& files, const clsIMGtool& pack, const Catalogue& catalogue,
               std::string folder, const Warn& warn)
      : files_(files), pack_(pack), catalogue_(catalogue), folder_(std::move(folder)), warn_(warn) {
    for (const udtIMGEntry& entry : pack.Entries()) {
      names_.insert(entry.Name);
      reserved_.insert(Text::LowerCase(entry.Name));
    }
  }

  std::size_t Run() {
    NameModFolders();
    FindUsers();
    WriteEntries();
    for (std::size_t i = 1; i < catalogue_.Mods.size(); ++i) WriteMod(i);
    WritePackIni();
    return lost_;
  }

 private:
  void NameModFolders();
  void FindUsers();
  void WriteEntries();
  void WriteEntry(const File& archive, std::size_t index);
  void WriteData(const std::string& folder, std::size_t index, std::string_view data);
  std::string FileNameFor(std::size_t index);
  [[nodiscard]] std::string FolderOf(const std::string& entry, const Users& users,
                                     std::string_view kind) const;
  void WriteMod(std::size_t index);
  void WritePackIni();
  [[nodiscard]] std::string MissingPayload() const;
  void Write(const std::string& folder, std::string_view name, std::string_view content);
  void MakeFolder(const std::string& folder);
  [[nodiscard]] const udtIMGEntry& Entry(std::size_t index) const { return pack_.Entries()[index]; }
  void WarnOf(std::size_t index, std::string_view text) const {
    warn_(Concat("entry ", index + 1, ", \"", Entry(index).Name, "\": ", text));
  }

  const FileSystem& files_;
  const clsIMGtool& pack_;
  const Catalogue& catalogue_;
  std::string folder_;
  const Warn& warn_;

  std::set<std::string, std::less<>> names_;  // of all entries
  std::set<std::string> reserved_;            // the same in lower case
  std::vector<std::string> modFolders_;       // "mods/010-name", by catalogue number
  Users payloadUsers_;
  Users pictureUsers_;
  std::set<std::string> folders_;  // made so far
  // Lower-case file names in use: entries share one name space, which the index is part of.
  std::set<std::string> taken_{std::string(kIndexEntry)};
  std::string entryNames_;  // lines of [Entries]
  std::size_t lost_ = 0;
};

void PackUnpacker::NameModFolders() {
  const std::size_t width = std::max<std::size_t>(std::to_string(catalogue_.Mods.size()).size(), 2);
  modFolders_.emplace_back();
  for (std::size_t i = 1; i < catalogue_.Mods.size(); ++i) {
    const std::string slug = Slug(catalogue_.Mods[i].Name);
    modFolders_.push_back(std::string(PackSource::kMods) + "/" + Padded(i, width) + "0" +
                          (slug.empty() ? "" : "-" + slug));
  }
}

void PackUnpacker::FindUsers() {
  const auto addArguments = [&](const std::string& script, std::size_t mod) {
    for (const std::string_view argument : PackSource::Arguments(script)) {
      if (names_.contains(argument)) payloadUsers_.Add(argument, mod);
    }
  };
  for (std::size_t i = 1; i < catalogue_.Mods.size(); ++i) {
    addArguments(catalogue_.Mods[i].InstallScript, i);
    pictureUsers_.Add(catalogue_.Mods[i].Picture, i);
  }
  addArguments(catalogue_.EndScript, 0);
  for (std::size_t i = 1; i < catalogue_.ModTypes.size(); ++i) {
    pictureUsers_.Add(catalogue_.ModTypes[i].Picture, 0);
  }
}

void PackUnpacker::WriteEntries() {
  const File archive = files_.OpenForReading(pack_.IMGFile());
  std::set<std::string> seen;
  for (std::size_t i = 0; i < pack_.Entries().size(); ++i) {
    const std::string& name = Entry(i).Name;
    if (!seen.insert(name).second) {
      WarnOf(i, "left out; nothing can see it behind an earlier one of the same name");
    } else if (name != kIndexEntry) {
      WriteEntry(archive, i);
    }
  }
}

void PackUnpacker::WriteEntry(const File& archive, std::size_t index) {
  const udtIMGEntry& entry = Entry(index);
  std::string data;
  try {
    if (entry.Offset < 0 || entry.Size < 0) Fail("its place is below 0");
    data = archive.ReadAt(entry.Offset, std::int64_t{entry.Size});
  } catch (const Failure& failure) {
    WarnOf(index, Concat("left out; ", failure.what()));
    names_.erase(entry.Name);
    ++lost_;
    return;
  }
  if (pictureUsers_.Of(entry.Name)) {
    WriteData(FolderOf(entry.Name, pictureUsers_, PackSource::kPictures), index,
              WithoutFill(std::move(data)));
    return;
  }
  const std::optional<ZlibStream> payload = Decompressed(data);
  if (payload && data.size() - payload->length < kSector) {
    WriteData(FolderOf(entry.Name, payloadUsers_, PackSource::kPayload), index, payload->data);
    return;
  }
  if (!payload && LooksCompressed(data)) WarnOf(index, "kept as it is; its data is damaged");
  WriteData(std::string(PackSource::kRaw), index, WithoutFill(std::move(data)));
}

std::string PackUnpacker::FolderOf(const std::string& entry, const Users& users,
                                   std::string_view kind) const {
  const std::size_t mod = users.Of(entry).value_or(0);
  return (mod == 0 ? "" : modFolders_[mod] + "/") + std::string(kind);
}

void PackUnpacker::WriteData(const std::string& folder, std::size_t index, std::string_view data) {
  const std::string& name = Entry(index).Name;
  const std::string fileName = FileNameFor(index);
  if (fileName != name) {
    entryNames_ += IniLine(folder + "/" + fileName, PackSource::EscapedName(name));
  }
  Write(folder, fileName, data);
}

std::string PackUnpacker::FileNameFor(std::size_t index) {
  const std::string& name = Entry(index).Name;
  if (PackSource::CanNameFile(name) && taken_.insert(Text::LowerCase(name)).second) return name;
  const std::string stem = "entry-" + Padded(index + 1, 4);
  std::string made = stem + ".bin";
  for (std::size_t i = 2; !reserved_.insert(made).second; ++i) made = Concat(stem, "-", i, ".bin");
  return made;
}

void PackUnpacker::WriteMod(std::size_t index) {
  const udtMod& mod = catalogue_.Mods[index];
  const std::string& folder = modFolders_[index];
  std::string ini = "[Mod]\n" + IniLine("TypeID", std::to_string(mod.TypeID)) +
                    IniLine("Name", mod.Name) + IniLineUnlessEmpty("Description", mod.Description) +
                    IniLineUnlessEmpty("Picture", mod.Picture);
  if (!mod.InstallScript.empty()) {
    ini += IniLine("InstallScript", kScriptFile);
    Write(folder, kScriptFile, SourceText(mod.InstallScript));
  }
  if (!mod.Readme.empty()) {
    ini += IniLine("Readme", kReadmeFile);
    Write(folder, kReadmeFile, SourceText(mod.Readme));
  }
  Write(folder, PackSource::kModIni, ini + IniLineUnlessEmpty("Files", mod.Files));
}

void PackUnpacker::WritePackIni() {
  std::string ini = "[Pack]\n" + IniLine("Title", catalogue_.Title);
  if (!catalogue_.EndScript.empty()) {
    ini += IniLine("EndScript", kEndScriptFile);
    Write("", kEndScriptFile, SourceText(catalogue_.EndScript));
  }
  if (!catalogue_.HTML.empty()) {
    ini +=
        IniLine("Html", kPageFile) + IniLine("HtmlHeight", std::to_string(catalogue_.HTMLHeight));
    Write("", kPageFile, SourceText(catalogue_.HTML));
  }
  for (std::size_t i = 1; i < catalogue_.ModTypes.size(); ++i) {
    const udtModType& type = catalogue_.ModTypes[i];
    ini += Concat("\n[Type", i, "]\n") + IniLine("TypeID", std::to_string(type.TypeID)) +
           IniLine("Name", type.Name) + IniLine("Description", type.Description) +
           IniLineUnlessEmpty("Picture", type.Picture);
  }
  if (!entryNames_.empty()) ini += "\n[Entries]\n" + entryNames_;
  if (const std::string missing = MissingPayload(); !missing.empty()) {
    ini += "\n[Missing]\n" + missing;
  }
  Write("", PackSource::kPackIni, ini);
}

std::string PackUnpacker::MissingPayload() const {
  std::set<std::string> missing;
  const auto addMissing = [&](const std::string& script) {
    for (const PackSource::PayloadUse& use : PackSource::PayloadUses(script)) {
      if (!names_.contains(use.name)) missing.emplace(use.name);
    }
  };
  for (const udtMod& mod : catalogue_.Mods) addMissing(mod.InstallScript);
  addMissing(catalogue_.EndScript);
  std::string lines;
  std::size_t number = 0;
  for (const std::string& name : missing) {
    lines += IniLine(std::to_string(++number), PackSource::EscapedName(name));
  }
  return lines;
}

void PackUnpacker::Write(const std::string& folder, std::string_view name,
                         std::string_view content) {
  MakeFolder(folder);
  files_.WriteWhole(DosPath::Join(DosPath::Join(folder_, folder), name), content);
}

void PackUnpacker::MakeFolder(const std::string& folder) {
  if (folder.empty() || !folders_.insert(folder).second) return;
  const std::size_t parentEnd = folder.rfind('/');
  if (parentEnd != std::string::npos) MakeFolder(folder.substr(0, parentEnd));
  files_.CreateFolder(DosPath::Join(folder_, folder));
}

}  // namespace

std::size_t UnpackPack(const FileSystem& files, const clsIMGtool& pack, const Catalogue& catalogue,
                       const std::string& folder, const Warn& warn) {
  return PackUnpacker(files, pack, catalogue, folder, warn).Run();
}
