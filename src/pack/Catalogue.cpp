#include "pack/Catalogue.h"

#include <utility>

#include "core/basDebugLog.h"
#include "core/basIni.h"
#include "pack/clsEncryption.h"
#include "pack/clsIMGtool.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace {

using basIni::IniFile;
using basIni::INIRead;

constexpr int kSmallestWidth = 600;
constexpr int kSmallestHeight = 250;  // without the page
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

std::string WithLineBreaks(const std::string& text) {
  return Text::Replace(text, kLineBreakMark, "\r\n");
}

void DeleteIfThere(const FileSystem& files, const std::string& path) {
  if (!files.FindFirst(path, kFindHidden | kFindSystem).empty()) files.Delete(path);
}

/// One opening of a pack. Each step is a member; `Run` has their order.
class Opener {
 public:
  Opener(const FileSystem& files, clsIMGtool& ModPackIMG, const std::string& TempDir,
         Catalogue& catalogue, PackOpeningView& view, PackOpening& outcome)
      : files_(files),
        pack_(ModPackIMG),
        cipheredIndex_(DosPath::Join(TempDir, "modpack.ini.tmp")),
        plainIndex_(DosPath::Join(TempDir, "modpack.ini")),
        page_(DosPath::Join(TempDir, "html.htm")),
        catalogue_(catalogue),
        view_(view),
        outcome_(outcome) {}

  void Run(std::string path) {
    outcome_.isArchive = pack_.Load(path);
    if (outcome_.isArchive) {
      view_.ShowLoading();
      view_.DoEvents();
      DecipherIndex();
      const IniFile index = IniFile::Load(files_, plainIndex_);
      ReadInfo(index);
      catalogue_.Mods.assign(1, {});
      catalogue_.ModTypes.assign(1, {});
      ReadMods(index);  // ahead of the types, which need the counts
      ReadTypes(index);
      // A pack without an index has left nothing to delete: it is open, and empty.
      DeleteIfThere(files_, plainIndex_);
      DeleteIfThere(files_, cipheredIndex_);
      if (catalogue_.ModTypes.size() > 1) view_.ClickFirstType();
    }
    view_.UnloadLoading();
    view_.DrawTypeList();
    ShowPage();
    view_.SetMinimumSize(kSmallestWidth, catalogue_.HTMLHeight + kSmallestHeight);
  }

 private:
  void DecipherIndex() {
    // An export keeps the tail of a longer file, and with it mods of another pack.
    DeleteIfThere(files_, cipheredIndex_);
    DeleteIfThere(files_, plainIndex_);
    pack_.Export(kIndexEntry, cipheredIndex_);
    clsEncryption encryption(files_);
    encryption.MessageBox = [this](const std::string& text, const std::string& title) {
      outcome_.hasIndex = false;
      view_.MessageBox(text, title);
    };
    encryption.InputFileName = cipheredIndex_;
    encryption.OutputFileName = plainIndex_;
    encryption.Password = clsEncryption::IndexPassword();
    encryption.EncryptFile();
  }

  void ReadInfo(const IniFile& index) {
    catalogue_.Title = INIRead(index, "Info", "Title", "");
    view_.SetTitle(catalogue_.Title);
    catalogue_.EndScript = WithLineBreaks(INIRead(index, "Info", "EndScript", ""));
    catalogue_.HTML = WithLineBreaks(INIRead(index, "Info", "HTML", ""));
    catalogue_.HTMLHeight =
        WholeNumber(INIRead(index, "Info", "HTMLHeight", "0"), "Info", "HTMLHeight");
  }

  void ReadMods(const IniFile& index) {
    for (int n = 1; n <= kLongestList; ++n) {
      const std::string section = Concat("Mod", n);
      if (INIRead(index, section, "TypeID", "").empty()) return;
      udtMod& mod = catalogue_.Mods.emplace_back();
      mod.Selected = true;
      mod.TypeID = WholeNumber(INIRead(index, section, "TypeID", "0"), section, "TypeID");
      mod.Description = INIRead(index, section, "Description", "");
      mod.InstallScript = WithLineBreaks(INIRead(index, section, "InstallScript", ""));
      mod.Name = INIRead(index, section, "Name", "");
      mod.Picture = INIRead(index, section, "Picture", "");
      mod.Readme = WithLineBreaks(INIRead(index, section, "Readme", ""));
      mod.Files = INIRead(index, section, "Files", "");
      counters_.GrowTo(mod.TypeID);
      ++counters_.Of(mod.TypeID, section);
      view_.DoEvents();
    }
  }

  void ReadTypes(const IniFile& index) {
    for (int n = 1; n <= kLongestList; ++n) {
      const std::string section = Concat("Typ", n);
      if (INIRead(index, section, "TypeID", "").empty()) return;
      udtModType& type = catalogue_.ModTypes.emplace_back();
      type.TypeID = WholeNumber(INIRead(index, section, "TypeID", "0"), section, "TypeID");
      type.Name = INIRead(index, section, "Name", "0");
      type.Description = INIRead(index, section, "Description", "0");
      type.Picture = INIRead(index, section, "Picture", "");
      counters_.GrowTo(type.TypeID);
      type.ModCount = counters_.Of(type.TypeID, section);
      type.CheckState = 1;
      view_.DoEvents();
    }
  }

  void ShowPage() {
    view_.SetHtmlVisible(!catalogue_.HTML.empty());
    if (catalogue_.HTML.empty()) {
      catalogue_.HTMLHeight = 0;
      return;
    }
    view_.SetHtmlHeight(catalogue_.HTMLHeight);
    files_.WriteWhole(page_, catalogue_.HTML + "\r\n");
    view_.ShowHtmlPage(page_);
  }

  const FileSystem& files_;
  clsIMGtool& pack_;
  const std::string cipheredIndex_;
  const std::string plainIndex_;
  const std::string page_;
  Catalogue& catalogue_;
  PackOpeningView& view_;
  PackOpening& outcome_;
  ModCounters counters_;
};

}  // namespace

PackOpening OpenKELVOFile(const FileSystem& files, clsIMGtool& ModPackIMG,
                          const std::string& TempDir, Catalogue& catalogue, PackOpeningView& view,
                          const std::string& path) {
  PackOpening outcome;
  outcome.failure = CauseOf("frmMain.OpenKELVOFile", [&] {
    Opener(files, ModPackIMG, TempDir, catalogue, view, outcome).Run(path);
  });
  return outcome;
}
