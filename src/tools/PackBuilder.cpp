#include "tools/PackBuilder.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "pack/ArchiveWriter.h"
#include "pack/Catalogue.h"
#include "pack/ZlibStream.h"
#include "pack/clsEncryption.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "tools/SourceFiles.h"

namespace {

using PackSource::Warn;

constexpr int kLargestTypeID = std::numeric_limits<std::int16_t>::max();
/// What the search in an archive, and the numbering of the index, can take.
constexpr std::size_t kMostRecords = 32767;

struct SourceEntry {
  std::string name;
  SourcePlace place;
  std::string path;  // DOS path text
  bool compressed = false;
  bool renamed = false;  // by [Entries]
};

/// A script with the file that it comes from.
struct SourceScript {
  std::string file;
  std::string text;
};

/// All that goes into the pack.
struct PackContent {
  Catalogue catalogue;
  std::vector<SourceScript> scripts;
  std::vector<SourceEntry> entries;
  std::set<std::string> knownMissing;  // payload that scripts name and that isn't meant to be there
};

/// Reads a source folder, with all checks.
class SourceReader {
 public:
  SourceReader(const FileSystem& files, SourceFolder root, const Warn& warn)
      : files_(files), root_(std::move(root)), warn_(warn), rootContent_(ContentOf(files, root_)) {}

  PackContent Read() {
    const SourceIni ini = ReadIni(root_, rootContent_, PackSource::kPackIni);
    ReadEntryNames(ini);
    ReadPack(ini);
    ReadTypes(ini);
    RefuseUnknownSections(ini);
    ReadFolders(root_, rootContent_.folders);
    ReadMods();
    RenameEntries();
    CheckEntryNames();
    SortEntries();
    CheckPayloadUses();
    return std::move(content_);
  }

 private:
  [[nodiscard]] SourceIni ReadIni(const SourceFolder& folder, const FolderContent& content,
                                  std::string_view name) const;
  void ReadEntryNames(const SourceIni& ini);
  [[nodiscard]] std::string UnescapedName(const SourceValue& value) const;
  void ReadPack(const SourceIni& ini);
  void ReadTypes(const SourceIni& ini);
  void RefuseUnknownSections(const SourceIni& ini) const;
  void ReadMods();
  void ReadMod(const SourceFolder& folder);
  std::string ReadNamedText(const SourceFolder& folder, const FolderContent& content,
                            const SourceValue& name, std::set<std::string>& used) const;
  static void RefuseOtherFiles(const SourceFolder& folder, const FolderContent& content,
                               const std::set<std::string>& used);
  void ReadFolders(const SourceFolder& parent, const std::vector<std::string>& folders);
  void ReadEntries(const SourceFolder& folder, bool compressed);
  void RenameEntries();
  void CheckEntryNames();
  static void CheckEntryName(const SourceEntry& entry);
  void SortEntries();
  void CheckPayloadUses() const;

  const FileSystem& files_;
  SourceFolder root_;
  const Warn& warn_;
  FolderContent rootContent_;
  std::map<std::string, SourceValue> entryNames_;  // file to entry name, from [Entries]
  PackContent content_;
};

SourceIni SourceReader::ReadIni(const SourceFolder& folder, const FolderContent& content,
                                std::string_view name) const {
  if (std::find(content.files.begin(), content.files.end(), name) == content.files.end()) {
    FailAt(folder.PlaceOf(name), "there is no such file");
  }
  return {files_, folder, name};
}

std::string SourceReader::UnescapedName(const SourceValue& value) const {
  const auto name = PackSource::UnescapedName(value.text);
  if (!name || name->find('\0') != std::string::npos) {
    FailAt(value.place, "\"%\" must be followed by the two hexadecimal digits of a byte above 0");
  }
  return *name;
}

void SourceReader::ReadEntryNames(const SourceIni& ini) {
  for (SourceIni::Pair& pair : ini.Pairs("Entries")) {
    entryNames_[pair.key] = {UnescapedName(pair.value), pair.value.place};
  }
  for (const SourceIni::Pair& pair : ini.Pairs("Missing")) {
    content_.knownMissing.insert(UnescapedName(pair.value));
  }
}

void SourceReader::ReadPack(const SourceIni& ini) {
  ini.AllowKeys("Pack", {"Title", "EndScript", "Html", "HtmlHeight"});
  std::set<std::string> used{std::string(PackSource::kPackIni)};
  Catalogue& catalogue = content_.catalogue;
  catalogue.Title = ini.Value("Pack", "Title").text;
  const SourceValue endScript = ini.Value("Pack", "EndScript");
  catalogue.EndScript = ReadNamedText(root_, rootContent_, endScript, used);
  content_.scripts.push_back({root_.PlaceOf(endScript.text).file, catalogue.EndScript});
  catalogue.HTML = ReadNamedText(root_, rootContent_, ini.Value("Pack", "Html"), used);
  if (ini.Find("Pack", "HtmlHeight")) {
    using Limits = std::numeric_limits<std::int16_t>;
    catalogue.HTMLHeight =
        static_cast<std::int16_t>(ini.Number("Pack", "HtmlHeight", Limits::min(), Limits::max()));
  }
  RefuseOtherFiles(root_, rootContent_, used);
}

void SourceReader::ReadTypes(const SourceIni& ini) {
  for (std::size_t number = 1; ini.Has(Concat("Type", number)); ++number) {
    const std::string section = Concat("Type", number);
    ini.AllowKeys(section, {"TypeID", "Name", "Description", "Picture"});
    udtModType type;
    type.TypeID = static_cast<std::int16_t>(ini.Number(section, "TypeID", 0, kLargestTypeID));
    type.Name = ini.Value(section, "Name").text;
    type.Description = ini.Value(section, "Description").text;
    type.Picture = ini.Value(section, "Picture").text;
    content_.catalogue.ModTypes.push_back(std::move(type));
  }
}

void SourceReader::RefuseUnknownSections(const SourceIni& ini) const {
  std::set<std::string> known{"pack", "entries", "missing"};
  for (std::size_t i = 1; i < content_.catalogue.ModTypes.size(); ++i) {
    known.insert(Concat("type", i));
  }
  for (const SourceValue& section : ini.Sections()) {
    if (known.contains(Text::LowerCase(section.text))) continue;
    FailAt(section.place, "unknown section [", section.text,
           "] (types are [Type1], [Type2], ... without a gap)");
  }
}

std::string SourceReader::ReadNamedText(const SourceFolder& folder, const FolderContent& content,
                                        const SourceValue& name,
                                        std::set<std::string>& used) const {
  if (name.text.empty()) return {};
  const auto& files = content.files;
  if (std::find(files.begin(), files.end(), name.text) == files.end()) {
    FailAt(name.place, "the folder has no file \"", name.text, "\"");
  }
  used.insert(name.text);
  return ReadSourceText(files_, folder, name.text);
}

void SourceReader::RefuseOtherFiles(const SourceFolder& folder, const FolderContent& content,
                                    const std::set<std::string>& used) {
  for (const std::string& file : content.files) {
    if (used.contains(file)) continue;
    FailAt(folder.PlaceOf(file), "nothing names this file, and it has no place here");
  }
}

void SourceReader::ReadFolders(const SourceFolder& parent,
                               const std::vector<std::string>& folders) {
  const bool isRoot = parent.shown.empty();
  for (const std::string& name : folders) {
    if (name == PackSource::kPayload) {
      ReadEntries(parent.Below(name), true);
    } else if (name == PackSource::kPictures || (isRoot && name == PackSource::kRaw)) {
      ReadEntries(parent.Below(name), false);
    } else if (!isRoot || name != PackSource::kMods) {
      FailAt(parent.PlaceOf(name), "a folder of this name has no place here");
    }
  }
}

void SourceReader::ReadMods() {
  const SourceFolder mods = root_.Below(PackSource::kMods);
  const FolderContent content = ContentOf(files_, mods);
  RefuseOtherFiles(mods, content, {});
  if (content.folders.size() > kMostRecords) {
    FailAt(root_.PlaceOf(PackSource::kMods), content.folders.size(), " mods; a pack takes ",
           kMostRecords);
  }
  for (const std::string& folder : content.folders) ReadMod(mods.Below(folder));
}

void SourceReader::ReadMod(const SourceFolder& folder) {
  const FolderContent content = ContentOf(files_, folder);
  const SourceIni ini = ReadIni(folder, content, PackSource::kModIni);
  for (const SourceValue& section : ini.Sections()) {
    if (Text::EqualsIgnoringCase(section.text, "Mod")) continue;
    FailAt(section.place, "unknown section [", section.text, "]");
  }
  ini.AllowKeys("Mod",
                {"TypeID", "Name", "Description", "Picture", "InstallScript", "Readme", "Files"});
  std::set<std::string> used{std::string(PackSource::kModIni)};
  udtMod mod;
  mod.TypeID = static_cast<std::int16_t>(ini.Number("Mod", "TypeID", 0, kLargestTypeID));
  mod.Name = ini.Value("Mod", "Name").text;
  mod.Description = ini.Value("Mod", "Description").text;
  mod.Picture = ini.Value("Mod", "Picture").text;
  const SourceValue script = ini.Value("Mod", "InstallScript");
  mod.InstallScript = ReadNamedText(folder, content, script, used);
  content_.scripts.push_back({folder.PlaceOf(script.text).file, mod.InstallScript});
  mod.Readme = ReadNamedText(folder, content, ini.Value("Mod", "Readme"), used);
  mod.Files = ini.Value("Mod", "Files").text;
  RefuseOtherFiles(folder, content, used);
  ReadFolders(folder, content.folders);

  const auto& types = content_.catalogue.ModTypes;
  if (std::none_of(types.begin() + 1, types.end(),
                   [&](const udtModType& type) { return type.TypeID == mod.TypeID; })) {
    warn_(Shown(ini.Value("Mod", "TypeID").place) +
          Concat(": no type has the TypeID ", mod.TypeID, "; the mod will be in no list"));
  }
  content_.catalogue.Mods.push_back(std::move(mod));
}

void SourceReader::ReadEntries(const SourceFolder& folder, bool compressed) {
  const FolderContent content = ContentOf(files_, folder);
  if (!content.folders.empty()) {
    FailAt(folder.PlaceOf(content.folders.front()), "an entry can't be a folder");
  }
  for (const std::string& file : content.files) {
    content_.entries.push_back({file, folder.PlaceOf(file), folder.PathOf(file), compressed});
  }
}

void SourceReader::RenameEntries() {
  for (SourceEntry& entry : content_.entries) {
    const auto renamed = entryNames_.extract(entry.place.file);
    if (renamed.empty()) continue;
    entry.name = renamed.mapped().text;
    entry.place = renamed.mapped().place;
    entry.renamed = true;
  }
  if (entryNames_.empty()) return;
  const auto& [file, name] = *entryNames_.begin();
  FailAt(name.place, "the folder has no entry \"", file, "\"");
}

void SourceReader::CheckEntryName(const SourceEntry& entry) {
  if (entry.name.size() > PackSource::kLongestEntryName) {
    FailAt(entry.place, "the entry's name has ", entry.name.size(), " bytes; a pack takes ",
           PackSource::kLongestEntryName);
  }
  if (!entry.renamed && !PackSource::CanNameFile(entry.name)) {
    FailAt(entry.place, "an entry of this name could never be unpacked");
  }
}

void SourceReader::CheckEntryNames() {
  // Those named by [Entries] come last, so that a clash is told of their line.
  std::stable_partition(content_.entries.begin(), content_.entries.end(),
                        [](const SourceEntry& entry) { return !entry.renamed; });
  std::map<std::string, SourcePlace> exact{{std::string(kIndexEntry), {"the pack's index", 0}}};
  std::map<std::string, SourcePlace> byLowerCase = exact;
  for (const SourceEntry& entry : content_.entries) {
    CheckEntryName(entry);
    const auto [same, isNew] = exact.try_emplace(entry.name, entry.place);
    if (!isNew) FailAt(entry.place, "its entry has the same name as that of ", Shown(same->second));
    if (entry.renamed) continue;
    const auto [similar, isNewInLowerCase] =
        byLowerCase.try_emplace(Text::LowerCase(entry.name), entry.place);
    if (isNewInLowerCase) continue;
    FailAt(entry.place, "its entry has the same name as that of ", Shown(similar->second));
  }
  if (content_.entries.size() >= kMostRecords) {
    Fail(content_.entries.size(), " entries; a pack takes ", kMostRecords - 1, " and its index");
  }
}

void SourceReader::SortEntries() {
  const auto key = [](const SourceEntry& entry) {
    return std::pair(Text::LowerCase(entry.name), entry.name);
  };
  std::sort(content_.entries.begin(), content_.entries.end(),
            [&](const auto& left, const auto& right) { return key(left) < key(right); });
}

void SourceReader::CheckPayloadUses() const {
  std::set<std::string, std::less<>> names{std::string(kIndexEntry)};
  std::map<std::string, std::string> byLowerCase;
  for (const SourceEntry& entry : content_.entries) {
    names.insert(entry.name);
    byLowerCase[Text::LowerCase(entry.name)] = entry.name;
  }
  for (const SourceScript& script : content_.scripts) {
    for (const PackSource::PayloadUse& use : PackSource::PayloadUses(script.text)) {
      const SourcePlace place{script.file, use.line};
      const std::string name(use.name);
      if (names.contains(name)) {
        if (use.goesIntoArchive && name.size() > PackSource::kLongestImgName) {
          warn_(Shown(place) + ": a game archive takes names of up to " +
                std::to_string(PackSource::kLongestImgName) + " bytes; this line will fail");
        }
      } else if (!content_.knownMissing.contains(name)) {
        const auto similar = byLowerCase.find(Text::LowerCase(name));
        FailAt(place, "the pack has no payload \"", name, "\"",
               similar == byLowerCase.end() ? ""
                                            : ", but one \"" + similar->second + "\": case counts");
      }
    }
  }
}

/// The index as text: an INI file in Windows-1252.
class IndexText {
 public:
  void Section(const std::string& name) { text_ += "[" + name + "]\r\n"; }
  void Key(std::string_view key, const std::string& value) {
    text_ += std::string(key) + "=" + basIni::Quoted(value) + "\r\n";
  }
  void Text(std::string_view key, const std::string& lines) {
    Key(key, Text::Replace(lines, "\r\n", kLineBreakMark));
  }
  [[nodiscard]] const std::string& Whole() const { return text_; }

 private:
  std::string text_;
};

/// Every key is written, empty ones too: what follows the index in the pack is junk, and a key
/// that stands there can't be answered by it.
std::string IndexOf(const Catalogue& catalogue) {
  IndexText index;
  index.Section("Info");
  index.Key("Title", catalogue.Title);
  index.Text("EndScript", catalogue.EndScript);
  index.Text("HTML", catalogue.HTML);
  index.Key("HTMLHeight", std::to_string(catalogue.HTMLHeight));
  for (std::size_t i = 1; i < catalogue.Mods.size(); ++i) {
    const udtMod& mod = catalogue.Mods[i];
    index.Section(Concat("Mod", i));
    index.Key("TypeID", std::to_string(mod.TypeID));
    index.Key("Description", mod.Description);
    index.Text("InstallScript", mod.InstallScript);
    index.Key("Name", mod.Name);
    index.Key("Picture", mod.Picture);
    index.Text("Readme", mod.Readme);
    index.Key("Files", mod.Files);
  }
  for (std::size_t i = 1; i < catalogue.ModTypes.size(); ++i) {
    const udtModType& type = catalogue.ModTypes[i];
    index.Section(Concat("Typ", i));
    index.Key("TypeID", std::to_string(type.TypeID));
    index.Key("Name", type.Name);
    index.Key("Description", type.Description);
    index.Key("Picture", type.Picture);
  }
  return index.Whole();
}

/// The index as it lies in the pack.
std::string Enciphered(const FileSystem& files, std::string text) {
  if (text.size() % 2 != 0) text += '\n';  // an empty line; the cipher takes pairs of bytes here
  std::u16string units;
  units.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    units += static_cast<char16_t>(static_cast<unsigned char>(text[i]) |
                                   static_cast<unsigned char>(text[i + 1]) << 8U);
  }
  clsEncryption cipher(files);
  cipher.Password = clsEncryption::IndexPassword();
  cipher.MessageBox = [](const std::string& cause, const std::string&) { Fail(cause); };
  std::string bytes;
  bytes.reserve(text.size());
  for (const char16_t unit : cipher.EncryptString(units)) {
    bytes += static_cast<char>(unit & 0xFFU);
    bytes += static_cast<char>(unit >> 8U);
  }
  return bytes;
}

/// A file under a name for the time being, which is deleted unless it is put in its place.
class UnfinishedFile {
 public:
  UnfinishedFile(const FileSystem& files, std::string finalPath)
      : files_(files), finalPath_(std::move(finalPath)) {}
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  UnfinishedFile(UnfinishedFile&&) = delete;
  UnfinishedFile& operator=(UnfinishedFile&&) = delete;
  ~UnfinishedFile() {
    if (placed_) return;
    try {
      files_.Delete(Path());
    } catch (const Failure&) {
      return;  // there was none, or it has to stay; the failure that led here is the one to tell
    }
  }

  [[nodiscard]] std::string Path() const { return finalPath_ + ".tmp"; }
  void PutInPlace() {
    if (files_.FindFirst(finalPath_, kFindHidden | kFindSystem).empty()) {
      files_.Rename(Path(), finalPath_);
    } else {
      files_.PutInPlace(Path(), finalPath_);
    }
    placed_ = true;
  }

 private:
  const FileSystem& files_;
  std::string finalPath_;
  bool placed_ = false;
};

}  // namespace

void BuildPack(const FileSystem& files, const std::string& source, const std::string& pack,
               const Warn& warn) {
  const PackContent content = SourceReader(files, {source, ""}, warn).Read();
  ArchiveWriter writer;
  writer.Add(std::string(kIndexEntry), Enciphered(files, IndexOf(content.catalogue)));
  for (const SourceEntry& entry : content.entries) {
    writer.AddLater(entry.name, [&files, &entry] {
      std::string data = files.ReadWhole(entry.path);
      return entry.compressed ? Compressed(data) : data;
    });
  }
  UnfinishedFile unfinished(files, pack);
  writer.Write(files, unfinished.Path());
  unfinished.PutInPlace();
}
