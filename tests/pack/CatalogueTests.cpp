#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/Catalogue.h"
#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/PackFile.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using namespace std::string_literals;
using testing::ElementsAre;

namespace {

/// Writes down what is asked of the window, and what lies in `temp` at the click.
class RecordingView : public PackOpeningView {
 public:
  explicit RecordingView(const TempFolder& folder) : folder_(folder) {}

  void ShowLoading() override { calls.emplace_back("ShowLoading"); }
  void UnloadLoading() override { calls.emplace_back("UnloadLoading"); }
  void DoEvents() override { calls.emplace_back("DoEvents"); }
  void MessageBox(const std::string& /*text*/, const std::string& title) override {
    calls.push_back("MessageBox " + title);
  }
  void SetTitle(const std::string& title) override { calls.push_back("SetTitle " + title); }
  void ClickFirstType() override {
    calls.emplace_back("ClickFirstType");
    filesAtClick = folder_.List("temp");
  }
  void DrawTypeList() override { calls.emplace_back("DrawTypeList"); }
  void SetHtmlVisible(bool visible) override {
    calls.emplace_back(visible ? "html shown" : "html hidden");
  }
  void SetHtmlHeight(int pixels) override { calls.push_back("height " + std::to_string(pixels)); }
  void ShowHtmlPage(const std::string& path) override {
    calls.push_back("page " + path.substr(path.find_last_of('\\') + 1) + " " +
                    folder_.Read("temp/html.htm"));
  }
  void SetMinimumSize(int width, int height) override {
    calls.push_back("minimum " + std::to_string(width) + " " + std::to_string(height));
  }

  std::vector<std::string> calls;
  std::vector<std::string> filesAtClick;

 private:
  const TempFolder& folder_;
};

class Opening : public testing::Test {
 protected:
  Opening() { folder.MakeFolder("temp"); }

  PackOpening Open(const std::string& path = "a.kvpk") {
    view.calls.clear();
    return OpenKELVOFile(files, pack, folder.Dos("temp"), catalogue, view, folder.Dos(path));
  }
  PackOpening OpenIndex(const std::string& index) {
    WritePack(folder, "a.kvpk", index);
    return Open();
  }

  TempFolder folder;
  FileSystem files;
  clsIMGtool pack{files};
  Catalogue catalogue;
  RecordingView view{folder};
};

const std::string kFullIndex =
    "; the index\r\n"
    "[Info]\r\nTitle= \"Karat & L\xF6sche <nl>\" \r\nEndScript=Delete<nl>{<nl>a.txt<nl>}\r\n"
    "HTML=<b>x</b><nl>y<NL>\r\nHTMLHeight= 120 \r\n"
    "[Mod1]\r\nTypeID=2\r\nName=One<nl>\r\nDescription=D<nl>\r\nPicture=p1.jpg\r\n"
    "InstallScript=Copy<nl><nl>}\r\nReadme=R<nl>M\r\nFiles=a<nl>b\r\n"
    "[MOD2]\r\ntypeid=0\r\n"
    "[Typ1]\r\nTypeID=2\r\n"
    "[Mod3]\r\nTypeID=\"+2\"\r\nName=Three\r\n"
    "[Typ2]\r\nTypeID=2\r\nName=\r\nDescription=T<nl>\r\nPicture=t.jpg\r\n"
    "[Typ3]\r\nTypeID=7\r\nName=Seven\r\n"
    "[Mod4]\r\nName=without a TypeID\r\n[Mod5]\r\nTypeID=2\r\n"
    "[Typ4]\r\nTypeID=\r\n[Typ5]\r\nTypeID=2\r\n";

TEST_F(Opening, ReadsTheWholeIndex) {
  const PackOpening outcome = OpenIndex(kFullIndex);
  EXPECT_TRUE(outcome.isArchive);
  EXPECT_TRUE(outcome.hasIndex);
  EXPECT_EQ(outcome.failure, std::nullopt);

  EXPECT_EQ(catalogue.Title, "Karat & L\xF6sche <nl>");
  EXPECT_EQ(catalogue.EndScript, "Delete\r\n{\r\na.txt\r\n}");
  EXPECT_EQ(catalogue.HTML, "<b>x</b>\r\ny<NL>");
  EXPECT_EQ(catalogue.HTMLHeight, 120);

  std::vector<std::string> records;
  for (const udtMod& mod : catalogue.Mods)
    records.push_back(Concat(mod.TypeID, "|", mod.Name, "|", mod.Description, "|", mod.Picture, "|",
                             mod.InstallScript, "|", mod.Readme, "|", mod.Files, "|",
                             mod.Selected));
  EXPECT_THAT(records,
              ElementsAre("0|||||||0", "2|One<nl>|D<nl>|p1.jpg|Copy\r\n\r\n}|R\r\nM|a<nl>b|1",
                          "0|||||||1", "2|Three||||||1"));
  records.clear();
  for (const udtModType& type : catalogue.ModTypes)
    records.push_back(Concat(type.TypeID, "|", type.Name, "|", type.Description, "|", type.Picture,
                             "|", type.ModCount, "|", type.CheckState));
  ASSERT_EQ(records.size(), 4U);
  records.erase(records.begin());  // the placeholder
  EXPECT_THAT(records, ElementsAre("2|0|0||2|1", "2||T<nl>|t.jpg|2|1", "7|Seven|0||0|1"));
}

TEST_F(Opening, AsksTheWindowInOrder) {
  folder.Write("temp/html.htm", std::string(500, 'x'));  // replaced
  OpenIndex(kFullIndex);
  EXPECT_THAT(view.calls,
              ElementsAre("ShowLoading", "DoEvents", "SetTitle Karat & L\xF6sche <nl>", "DoEvents",
                          "DoEvents", "DoEvents", "DoEvents", "DoEvents", "DoEvents",
                          "ClickFirstType", "UnloadLoading", "DrawTypeList", "html shown",
                          "height 120", "page html.htm <b>x</b>\r\ny<NL>\r\n", "minimum 600 370"));
  EXPECT_THAT(view.filesAtClick, ElementsAre("html.htm"));

  // A pack with less leaves nothing of the one before, nor of an index that lay in the folder.
  std::string older;
  for (int i = 0; i < 3000; ++i) older += "[Mod1]\r\nTypeID=1\r\n[Typ1]\r\nTypeID=1\r\n";
  folder.Write("temp/modpack.ini", older);
  folder.Write("temp/modpack.ini.tmp", older);
  OpenIndex("[Info]\r\nHTMLHeight=300\r\n");
  EXPECT_THAT(view.calls, ElementsAre("ShowLoading", "DoEvents", "SetTitle ", "UnloadLoading",
                                      "DrawTypeList", "html hidden", "minimum 600 250"));
  EXPECT_EQ(catalogue.Mods.size(), 1U);
  EXPECT_EQ(catalogue.ModTypes.size(), 1U);

  // A page without a height is there, with none.
  OpenIndex("[Info]\r\nHTML=x\r\n[Typ1]\r\nTypeID=1\r\n");
  EXPECT_THAT(view.calls, testing::IsSupersetOf({"html shown", "height 0", "page html.htm x\r\n",
                                                 "minimum 600 250", "ClickFirstType"}));
}

TEST_F(Opening, NumbersThatAreNoneEndIt) {
  struct Case {
    std::string ofMod2;
    std::string ofTyp1;
    std::size_t mods;  // records, without the placeholder
    std::size_t types;
    bool fails;
  };
  for (const Case& c :
       {Case{"32767", "-0", 2, 1, false}, Case{" -0 ", "32767", 2, 1, false},
        Case{"", "1", 1, 1, false}, Case{"\" \"", "1", 2, 0, true}, Case{"32768", "1", 2, 0, true},
        Case{"-1", "1", 2, 0, true}, Case{"1.5", "1", 2, 0, true}, Case{"1", "-1", 2, 1, true},
        Case{"1", "zwei", 2, 1, true}}) {
    OpenIndex("");
    std::string index = "[Mod1]\r\nTypeID=1\r\n[Mod2]\r\nName=n\r\nTypeID=";
    index.append(c.ofMod2).append("\r\n[Typ1]\r\nTypeID=").append(c.ofTyp1).append("\r\n");
    const PackOpening outcome = OpenIndex(index);
    EXPECT_EQ(outcome.failure.has_value(), c.fails) << index;
    EXPECT_EQ(catalogue.Mods.size() - 1, c.mods) << index;
    EXPECT_EQ(catalogue.ModTypes.size() - 1, c.types) << index;
    EXPECT_NE(std::count(view.calls.begin(), view.calls.end(), "UnloadLoading") > 0, c.fails);
  }
  for (const char* height : {"", "hoch", "32768"}) {
    OpenIndex(kFullIndex);
    EXPECT_TRUE(OpenIndex("[Info]\r\nTitle=t\r\nHTMLHeight="s + height + "\r\n").failure);
    EXPECT_EQ(catalogue.Title, "t");
    EXPECT_EQ(catalogue.HTML, "");
    EXPECT_EQ(catalogue.HTMLHeight, 120);  // what was read up to there counts, the rest stays
    EXPECT_EQ(catalogue.Mods.size(), 4U);
  }
}

TEST_F(Opening, LongValuesAreCutAheadOfTheirLineBreaks) {
  // The cut at 64,999 bytes goes through the last mark.
  std::string script = std::string(64990, 'x') + "<nl>yyy<nl>z";
  OpenIndex("[Mod1]\r\nTypeID=1\r\nReadme=" + script + "\r\nName=\"" + script + "\"\r\n");
  ASSERT_EQ(catalogue.Mods.size(), 2U);
  EXPECT_EQ(catalogue.Mods[1].Readme, std::string(64990, 'x') + "\r\nyyy<n");
  EXPECT_EQ(catalogue.Mods[1].Name, script.substr(0, 64999));
}

TEST_F(Opening, WhatIsNoPackKeepsTheCatalogue) {
  OpenIndex(kFullIndex);
  std::filesystem::remove(folder.At("temp/html.htm"));
  for (const char* name : {"text.kvpk", "made.kvpk"}) {
    if (name == "text.kvpk"s) folder.Write(name, "no archive");
    const PackOpening outcome = Open(name);
    EXPECT_FALSE(outcome.isArchive);
    EXPECT_EQ(outcome.failure, std::nullopt);
    EXPECT_THAT(view.calls, ElementsAre("UnloadLoading", "DrawTypeList", "html shown", "height 120",
                                        "page html.htm <b>x</b>\r\ny<NL>\r\n", "minimum 600 370"));
    EXPECT_EQ(pack.IMGFile(), folder.Dos(name));
    EXPECT_EQ(catalogue.Mods.size(), 4U);
  }
  EXPECT_EQ(folder.Read("made.kvpk"), "");
  EXPECT_EQ(folder.Read("text.kvpk"), "no archive");

  folder.Write("empty.kvpk", RawArchive::Filled(RawArchive::Header(0)));
  EXPECT_TRUE(Open("empty.kvpk").failure);
  EXPECT_THAT(view.calls, testing::IsEmpty());
  EXPECT_EQ(catalogue.Mods.size(), 4U);
}

TEST_F(Opening, APackWithoutAnIndexHasAnEmptyCatalogue) {
  OpenIndex(kFullIndex);
  // The name of the index counts with its case.
  folder.Write("a.kvpk", RawArchive::Make({{"MODPACK.INI", "x"}, {"p.jpg", "y"}}));
  const PackOpening outcome = Open();
  EXPECT_TRUE(outcome.isArchive);
  EXPECT_FALSE(outcome.hasIndex);
  EXPECT_EQ(outcome.failure, std::nullopt);
  EXPECT_THAT(view.calls,
              ElementsAre("ShowLoading", "DoEvents", "MessageBox EncryptFile", "SetTitle ",
                          "UnloadLoading", "DrawTypeList", "html hidden", "minimum 600 250"));
  EXPECT_EQ(catalogue.Mods.size(), 1U);
}

}  // namespace
