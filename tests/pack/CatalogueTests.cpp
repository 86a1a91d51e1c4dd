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

class Opening : public testing::Test {
 protected:
  Opening() { folder.MakeFolder("temp"); }

  PackOpening Open(const std::string& path = "a.kvpk") {
    PackOpening opening = OpenKELVOFile(files, pack, folder.Dos("temp"), folder.Dos(path));
    catalogue = std::move(opening.catalogue);
    return opening;
  }
  PackOpening OpenIndex(const std::string& index) {
    WritePack(folder, "a.kvpk", index);
    return Open();
  }

  TempFolder folder;
  FileSystem files;
  clsIMGtool pack{files};
  Catalogue catalogue;
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
  EXPECT_EQ(outcome.indexMessage, std::nullopt);
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

TEST_F(Opening, LeavesNothingOfAnOlderIndexNorOfItsOwn) {
  std::string older;
  for (int i = 0; i < 3000; ++i) older += "[Mod1]\r\nTypeID=1\r\n[Typ1]\r\nTypeID=1\r\n";
  folder.Write("temp/modpack.ini", older);
  folder.Write("temp/modpack.ini.tmp", older);
  OpenIndex("[Info]\r\nHTMLHeight=300\r\n");
  EXPECT_EQ(catalogue.Mods.size(), 1U);
  EXPECT_EQ(catalogue.ModTypes.size(), 1U);
  EXPECT_EQ(catalogue.HTMLHeight, 0);  // without a page
  OpenIndex(kFullIndex);
  EXPECT_THAT(folder.List("temp"), testing::IsEmpty());
}

TEST_F(Opening, EventsRunBetweenModsAndTypesAndAFailureLeavesWhatWasRead) {
  WritePack(folder, "a.kvpk", kFullIndex);
  ASSERT_TRUE(pack.Load(folder.Dos("a.kvpk")));
  const auto index = [&] { return PackIndex(files, pack, folder.Dos("temp"), {}); };
  std::vector<std::pair<std::size_t, std::size_t>> sizes;
  index().ReadInto(catalogue, [&] {
    sizes.emplace_back(catalogue.Mods.size() - 1, catalogue.ModTypes.size() - 1);
  });
  EXPECT_THAT(sizes, ElementsAre(std::pair(1, 0), std::pair(2, 0), std::pair(3, 0), std::pair(3, 1),
                                 std::pair(3, 2), std::pair(3, 3)));
  for (const char* height : {"", "hoch", "32768"}) {
    WritePack(folder, "a.kvpk", "[Info]\r\nTitle=t\r\nHTMLHeight="s + height + "\r\n");
    ASSERT_TRUE(pack.Load(folder.Dos("a.kvpk")));
    EXPECT_THROW(index().ReadInto(catalogue, {}), Failure);
    EXPECT_EQ(catalogue.Title, "t");
    EXPECT_EQ(catalogue.HTML, "");
    EXPECT_EQ(catalogue.HTMLHeight, 120);  // what was read up to there counts, the rest stays
    EXPECT_EQ(catalogue.Mods.size(), 4U);
  }
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
    std::string index = "[Mod1]\r\nTypeID=1\r\n[Mod2]\r\nName=n\r\nTypeID=";
    index.append(c.ofMod2).append("\r\n[Typ1]\r\nTypeID=").append(c.ofTyp1).append("\r\n");
    const PackOpening outcome = OpenIndex(index);
    EXPECT_EQ(outcome.failure.has_value(), c.fails) << index;
    EXPECT_EQ(catalogue.Mods.size() - 1, c.mods) << index;
    EXPECT_EQ(catalogue.ModTypes.size() - 1, c.types) << index;
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

TEST_F(Opening, WhatHoldsNoIndexHasNoCatalogue) {
  folder.Write("text.kvpk", "no archive");
  for (const char* name : {"text.kvpk", "made.kvpk"}) {
    const PackOpening outcome = Open(name);
    EXPECT_FALSE(outcome.isArchive);
    EXPECT_EQ(outcome.failure, std::nullopt);
    EXPECT_EQ(pack.IMGFile(), folder.Dos(name));
  }
  EXPECT_EQ(folder.Read("made.kvpk") + folder.Read("text.kvpk"), "no archive");
  folder.Write("empty.kvpk", RawArchive::Filled(RawArchive::Header(0)));
  EXPECT_TRUE(Open("empty.kvpk").failure);
  // The name of the index counts with its case.
  folder.Write("a.kvpk", RawArchive::Make({{"MODPACK.INI", "x"}, {"p.jpg", "y"}}));
  const PackOpening outcome = Open();
  EXPECT_TRUE(outcome.isArchive);
  EXPECT_THAT(outcome.indexMessage.value_or(""), testing::StartsWith("Error: "));
  EXPECT_EQ(outcome.failure, std::nullopt);
  EXPECT_EQ(catalogue.Mods.size(), 1U);
}

}  // namespace
