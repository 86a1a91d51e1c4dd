#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "pack/ZlibStream.h"
#include "tools/Kvpk.h"

using nlohmann::ordered_json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A small source folder in `src`.
void WriteSource(const TempFolder& folder) {
  folder.Write("src/pack.ini",
               "\xEF\xBB\xBF; the pack\n[Pack]\nTitle=Straßen\nEndScript=ende.txt\n"
               "Html=seite.html\nHtmlHeight=120\n\n[Type1]\nTypeID=7\nName=\" Auto \"\n");
  folder.Write("src/ende.txt", "# end\n");
  folder.Write("src/seite.html", "<p>\xE2\x82\xAC</p>\r\n\r\n");
  folder.Write("src/mods/020-b/mod.ini", "[Mod]\nTypeID=7\nName=\"\"\"B\"\"\"\n");
  folder.Write("src/mods/010-a/mod.ini",
               "[Mod]\r\nTypeID=07\r\nName=A<nl>\r\nPicture=a.png\r\nInstallScript=los.txt\r\n"
               "Readme=lies.txt\r\nFiles=x.dff");
  folder.Write("src/mods/010-a/los.txt", "AddIMG {\nmodels\\gta3.img\nx.dff\n}\n\n");
  folder.Write("src/mods/010-a/lies.txt", "\n  eingerückt");
  folder.Write("src/mods/010-a/payload/x.dff", std::string(100000, 'x'));
  folder.Write("src/mods/010-a/pictures/a.png", "PNG");
  folder.Write("src/payload/.hidden", "passed over");
  folder.Write("src/payload/empty.txt", "");
}

TEST(Build, MakesThePackThatTheFolderDescribes) {
  const TempFolder folder;
  WriteSource(folder);
  const KvpkRun build = Kvpk(folder, {"build", "src", "a.kvpk"});
  EXPECT_EQ(build.exitStatus, 0);
  EXPECT_EQ(build.errors, "");
  EXPECT_EQ(ordered_json::parse(Kvpk(folder, {"info", "a.kvpk", "--json"}).output).dump(),
            R"({"title":"Straßen","endScript":"# end","html":"<p>€</p>\r\n","htmlHeight":120,)"
            R"("mods":[{"typeId":7,"name":"A<nl>","description":"","picture":"a.png",)"
            R"("installScript":"AddIMG {\r\nmodels\\gta3.img\r\nx.dff\r\n}\r\n",)"
            R"("readme":"\r\n  eingerückt","files":"x.dff","selected":true},)"
            R"({"typeId":7,"name":"\"\"B\"\"","description":"","picture":"",)"
            R"("installScript":"","readme":"","files":"","selected":true}],)"
            R"("modTypes":[{"typeId":7,"name":" Auto ","picture":"","description":"",)"
            R"("modCount":2,"checkState":1}]})");
  const auto entries = EntriesByName(folder, "a.kvpk");
  EXPECT_EQ(entries.size(), 4U);
  EXPECT_TRUE(Decompressed(entries.at("x.dff")).value().data == std::string(100000, 'x'));
  EXPECT_EQ(Decompressed(entries.at("empty.txt")).value().data, "");
  EXPECT_EQ(entries.at("a.png"), "PNG" + std::string(2045, '\0'));
  folder.Write("b.kvpk", "an older pack, which is replaced");
  EXPECT_EQ(Kvpk(folder, {"build", "./src/", "b.kvpk"}).exitStatus, 0);
  EXPECT_TRUE(folder.Read("a.kvpk") == folder.Read("b.kvpk")) << "the same source, the same bytes";
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.kvpk", "b.kvpk", "src"}));
}

TEST(Build, NamesFileAndLineOfWhatAPackCannotHold) {
  struct Case {
    const char* file;  // written in addition to the good source
    std::string content;
    const char* message;
  };
  const std::string mod = "[Mod]\nTypeID=7\nName=C\n";
  const std::string pack = "[Pack]\nTitle=T\nEndScript=ende.txt\nHtml=seite.html\n";
  const std::vector<Case> cases{
      {"mods/010-a/los.txt", "# ok\n# \xD0\x96\n",
       "mods/010-a/los.txt:2: Windows-1252 doesn't have the character U+416"},
      {"mods/010-a/los.txt", std::string("\n\n\0", 3), "mods/010-a/los.txt:3: it holds a NUL"},
      {"mods/010-a/los.txt", std::string(64992, 'x') + "\n\n\n", "mods/010-a/los.txt:2: too long"},
      {"mods/010-a/los.txt", "\n\nReplaceIMG {\ng.img\nX.dff\n",
       R"(mods/010-a/los.txt:5: the pack has no payload "X.dff", but one "x.dff": case counts)"},
      {"mods/010-a/los.txt", "addimg {\ng.img\n  y.dff \n}",
       "mods/010-a/los.txt:3: the pack has no payload \"y.dff\""},
      {"ende.txt", "Copy {\ndata\nzzz.txt\n", "ende.txt:3: the pack has no payload \"zzz.txt\""},
      {"mods/030-c/mod.ini", "[Mod]\nName=C\n", "mods/030-c/mod.ini:1: TypeID must be"},
      {"mods/030-c/mod.ini", mod + "Nmae=C\n", "mods/030-c/mod.ini:4: unknown key Nmae"},
      {"mods/030-c/mod.ini", mod + "name=D\n", "mods/030-c/mod.ini:4: the key name stands"},
      {"mods/030-c/mod.ini", mod + "[Mot]\n", "mods/030-c/mod.ini:4: unknown section [Mot]"},
      {"mods/030-c/mod.ini", mod + "Readme=../010-a/lies.txt", "mods/030-c/mod.ini:4: the folder"},
      {"mods/030-c/mod.ini", mod + "Files=" + std::string(65000, 'x'),
       "mods/030-c/mod.ini:4: too long: 65000 bytes"},
      {"stray.txt", "", "stray.txt: nothing names this file"},
      {"payload/sub/a.dff", "", "payload/sub: an entry can't be a folder"},
      {"payload/X.DFF", "",
       "mods/010-a/payload/x.dff: its entry has the same name as that of payload/X.DFF"},
      {"payload/name-of-25-characters.txt", "", "payload/name-of-25-characters.txt: the entry's"},
      {"payload/\xE6\x97\xA5.dff", "", "payload/?.dff: Windows-1252 can't say this name"},
      {"pack.ini", pack + "[Entries]\npayload/no=x\n", "pack.ini:6: the folder has no entry"},
      {"pack.ini", pack + "[Entries]\npayload/empty.txt=x.dff\n",
       "pack.ini:6: its entry has the same name as that of mods/010-a/payload/x.dff"},
  };
  for (const Case& one : cases) {
    const TempFolder folder;
    WriteSource(folder);
    folder.Write(std::string("src/") + one.file, one.content);
    folder.Write("a.kvpk", "the pack of before");
    const KvpkRun run = Kvpk(folder, {"build", "src", "a.kvpk"});
    EXPECT_EQ(run.exitStatus, 1) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(std::string("kvpk: ") + one.message));
    EXPECT_TRUE(folder.Read("a.kvpk") == "the pack of before");
    EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.kvpk", "src"}));
  }
}

TEST(Build, TakesWhatJustFits) {
  const TempFolder folder;
  WriteSource(folder);
  folder.Write("src/mods/010-a/lies.txt", "\n" + std::string(64995, 'r') + "\n");
  folder.Write("src/mods/020-b/mod.ini",
               "[Mod]\nTypeID=32767\nName=\" " + std::string(64998, 'n') + "\"\n");
  folder.Write("src/payload/name-of-24-characters.tx", "x");
  const KvpkRun run = Kvpk(folder, {"build", "src", "a.kvpk"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_THAT(run.errors, StartsWith("kvpk: warning: mods/020-b/mod.ini:2: no type has"));
  const auto info = ordered_json::parse(Kvpk(folder, {"info", "a.kvpk", "--json"}).output);
  EXPECT_TRUE(info["mods"][0]["readme"] == "\r\n" + std::string(64995, 'r'));
  EXPECT_TRUE(info["mods"][1]["name"] == " " + std::string(64998, 'n'));
}

}  // namespace
