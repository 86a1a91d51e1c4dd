#include "pack/Catalogue.h"

#include <utility>

#include "core/basDebugLog.h"
#include "pack/clsEncryption.h"
#include "pack/clsIMGtool.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

using basIni::IniFile;
using basIni::INIRead;
using basIni::ValueOf;

// The numbers of the sections are 16-bit, which bounds both lists.
constexpr int kLongestList = 32767;

/// The counters of mods for each type number. They grow upward from index 0.
class ModCounters {
 public:
  void GrowTo(std::int16_t typeID) {
    if (typeID >= 0 && static_cast<std::size_t>(typeID) >= counts_.size()) {
      counts_.resize(static_cast<std::size_t>(typeID) + 1);
    }
  }
  /// Fails on a negative type number, which has no counter.
  std::int16_t& Of(std::int16_t typeID, const std::string& section) {
    if (typeID < 0) Fail("[", section, "] TypeID: ", typeID, " is negative");
    return counts_[static_cast<std::size_t>(typeID)];
  }

 private:
  std::vector<std::int16_t> counts_{0};
};

std::int16_t WholeNumber(const std::string& text, const std::string& section, const char* key) {
  const auto number = Text::WholeNumber(text);
  if (!number) Fail("[", section, "] ", key, ": \"", text, "\" is no whole number");
  return Text::CheckedInt16(*number, Concat("[", section, "] ", key));
}

std::string WithLineBreaks(std::string_view text) {
  return Text::Replace(text, kLineBreakMark, "\r\n");
}

void DeleteIfThere(const FileSystem& files, const std::string& path) {
  if (!files.FindFirst(path, kFindHidden | kFindSystem).empty()) files.Delete(path);
}

/// Exports the index and returns it in plain; the files of both stay.
IniFile Decipher(const FileSystem& files, const clsIMGtool& ModPackIMG,
                 const std::string& cipheredFile, const std::string& plainFile,
                 const PackIndex::MessageBox& messageBox) {
  // An export keeps the tail of a longer file, and with it mods of another pack.
  DeleteIfThere(files, cipheredFile);
  DeleteIfThere(files, plainFile);
  ModPackIMG.Export(kIndexEntry, cipheredFile);
  clsEncryption encryption(files);
  encryption.MessageBox = messageBox;
  encryption.InputFileName = cipheredFile;
  encryption.OutputFileName = plainFile;
  encryption.Password = clsEncryption::IndexPassword();
  encryption.EncryptFile();
  return IniFile::Load(files, plainFile);
}

void ReadInfo(const IniFile& index, Catalogue& catalogue) {
  catalogue.EndScript = WithLineBreaks(ValueOf(index, "Info", "EndScript", ""));
  catalogue.HTML = WithLineBreaks(ValueOf(index, "Info", "HTML", ""));
  catalogue.HTMLHeight =
      WholeNumber(INIRead(index, "Info", "HTMLHeight", "0"), "Info", "HTMLHeight");
}

/// The mods come ahead of the types, which need their counts.
class ListReader {
 public:
  ListReader(const IniFile& index, Catalogue& catalogue, const std::function<void()>& doEvents)
      : index_(index), catalogue_(catalogue), doEvents_(doEvents) {}

  void ReadMods() {
    for (int n = 1; n <= kLongestList; ++n) {
      const std::string section = Concat("Mod", n);
      if (INIRead(index_, section, "TypeID", "").empty()) return;
      udtMod& mod = catalogue_.Mods.emplace_back();
      mod.Selected = true;
      mod.TypeID = WholeNumber(INIRead(index_, section, "TypeID", "0"), section, "TypeID");
      mod.Description = INIRead(index_, section, "Description", "");
      mod.InstallScript = WithLineBreaks(ValueOf(index_, section, "InstallScript", ""));
      mod.Name = INIRead(index_, section, "Name", "");
      mod.Picture = INIRead(index_, section, "Picture", "");
      mod.Readme = WithLineBreaks(ValueOf(index_, section, "Readme", ""));
      mod.Files = INIRead(index_, section, "Files", "");
      counters_.GrowTo(mod.TypeID);
      ++counters_.Of(mod.TypeID, section);
      LetEventsRun();
    }
  }

  void ReadTypes() {
    for (int n = 1; n <= kLongestList; ++n) {
      const std::string section = Concat("Typ", n);
      if (INIRead(index_, section, "TypeID", "").empty()) return;
      udtModType& type = catalogue_.ModTypes.emplace_back();
      type.TypeID = WholeNumber(INIRead(index_, section, "TypeID", "0"), section, "TypeID");
      type.Name = INIRead(index_, section, "Name", "0");
      type.Description = INIRead(index_, section, "Description", "0");
      type.Picture = INIRead(index_, section, "Picture", "");
      counters_.GrowTo(type.TypeID);
      type.ModCount = counters_.Of(type.TypeID, section);
      type.CheckState = 1;
      LetEventsRun();
    }
  }

 private:
  void LetEventsRun() const {
    if (doEvents_) doEvents_();
  }

  const IniFile& index_;
  Catalogue& catalogue_;
  const std::function<void()>& doEvents_;
  ModCounters counters_;
};

}  // namespace

PackIndex::PackIndex(const FileSystem& files, const clsIMGtool& ModPackIMG,
                     const std::string& TempDir, const MessageBox& messageBox)
    : files_(files),
      cipheredFile_(DosPath::Join(TempDir, "modpack.ini.tmp")),
      plainFile_(DosPath::Join(TempDir, "modpack.ini")),
      index_(Decipher(files, ModPackIMG, cipheredFile_, plainFile_, messageBox)) {}

std::string PackIndex::Title() const {
  return INIRead(index_, "Info", "Title", "");
}

void PackIndex::ReadInto(Catalogue& catalogue, const std::function<void()>& doEvents) const {
  catalogue.Title = Title();
  ReadInfo(index_, catalogue);
  catalogue.Mods.assign(1, {});
  catalogue.ModTypes.assign(1, {});
  ListReader reader(index_, catalogue, doEvents);
  reader.ReadMods();
  reader.ReadTypes();
  // A pack without an index has left nothing to delete: it is open, and empty.
  DeleteIfThere(files_, plainFile_);
  DeleteIfThere(files_, cipheredFile_);
}

PackOpening OpenKELVOFile(const FileSystem& files, clsIMGtool& ModPackIMG,
                          const std::string& TempDir, const std::string& path) {
  PackOpening opening;
  opening.failure = CauseOf("frmMain.OpenKELVOFile", [&] {
    opening.isArchive = ModPackIMG.Load(path);
    if (!opening.isArchive) return;
    const PackIndex index(files, ModPackIMG, TempDir,
                          [&](const std::string& text, const std::string& /*title*/) {
                            opening.indexMessage = text;
                          });
    index.ReadInto(opening.catalogue, {});
    // Without a page there is no place for one.
    if (opening.catalogue.HTML.empty()) opening.catalogue.HTMLHeight = 0;
  });
  return opening;
}
