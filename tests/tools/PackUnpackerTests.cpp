#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "pack/ZlibStream.h"
#include "tools/Kvpk.h"

using nlohmann::ordered_json;
using testing::HasSubstr;

namespace {

constexpr std::size_t kSector = 2048;

/// What the entries give when they are unpacked: the payload of those that hold some, the stored
/// bytes of the others.
std::map<std::string, std::string> Unpacked(const TempFolder& folder, std::string_view pack) {
  std::map<std::string, std::string> entries = EntriesByName(folder, pack);
  entries.erase("modpack.ini");
  for (auto& [name, data] : entries) {
    if (const auto payload = Decompressed(data); payload && name != "picture.zz") {
      data = "unpacked: " + payload->data;
    }
  }
  return entries;
}

void ExpectRoundTrip(const TempFolder& folder) {
  const KvpkRun unpack = Kvpk(folder, {"unpack", "a.kvpk", "out"});
  ASSERT_EQ(unpack.exitStatus, 0) << unpack.errors;
  const KvpkRun build = Kvpk(folder, {"build", "out", "b.kvpk"});
  ASSERT_EQ(build.exitStatus, 0) << build.errors;
  EXPECT_TRUE(Kvpk(folder, {"info", "a.kvpk", "--json"}).output ==
              Kvpk(folder, {"info", "b.kvpk", "--json"}).output);
  EXPECT_TRUE(Unpacked(folder, "a.kvpk") == Unpacked(folder, "b.kvpk"));
  EXPECT_EQ(folder.List(), (std::vector<std::string>{"a.kvpk", "b.kvpk", "out"}))
      << "nothing but the folder itself is written";
}

TEST(Unpack, GivesAFolderThatAPersonCanEdit) {
  const TempFolder folder;
  WritePack(folder, "a.kvpk",
            "[Info]\r\nTitle=T\r\nHTML=<p><nl></p>\r\nHTMLHeight= +9 \r\n"
            "[Mod1]\r\nTypeID=1\r\nName=Gr\xFC\xDF"
            "e, Welt!\r\nPicture=m.png\r\n"
            "InstallScript=Copy {<nl>data<nl> own.txt <nl>shared.txt<nl>}\r\nReadme=a<nl><nl>\r\n"
            "[Mod2]\r\nTypeID=1\r\nName=???\r\nInstallScript=Copy {<nl>data<nl>shared.txt<nl>}\r\n"
            "[Typ1]\r\nTypeID=1\r\nName=Typ\r\nDescription=\r\nPicture=t.png\r\n",
            {{"own.txt", Compressed("own")},
             {"shared.txt", Compressed("shared")},
             {"unused.txt", Compressed("unused")},
             {"m.png", "mod"},
             {"t.png", "type"}});
  ExpectRoundTrip(folder);
  EXPECT_EQ(folder.Read("out/pack.ini"),
            "[Pack]\nTitle=T\nHtml=page.html\nHtmlHeight=9\n\n"
            "[Type1]\nTypeID=1\nName=Typ\nDescription=\nPicture=t.png\n");
  EXPECT_EQ(folder.Read("out/page.html"), "<p>\n</p>\n");
  const std::string mod = "out/mods/010-gruesse-welt/";
  EXPECT_EQ(folder.Read(mod + "mod.ini"),
            "[Mod]\nTypeID=1\nName=Grüße, Welt!\nPicture=m.png\nInstallScript=install.txt\n"
            "Readme=readme.txt\n");
  EXPECT_EQ(folder.Read(mod + "install.txt"), "Copy {\ndata\n own.txt \nshared.txt\n}\n");
  EXPECT_EQ(folder.Read(mod + "readme.txt"), "a\n\n\n");
  EXPECT_EQ(folder.Read(mod + "payload/own.txt"), "own");
  EXPECT_EQ(folder.Read(mod + "pictures/m.png"), "mod");
  EXPECT_EQ(folder.List("out/payload"), (std::vector<std::string>{"shared.txt", "unused.txt"}));
}

TEST(Unpack, KeepsOddTexts) {
  const TempFolder folder;
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte != '\n' && byte != '\r') all += static_cast<char>(byte);
  }
  WritePack(folder, "a.kvpk",
            "[Info]\r\nTitle=\"  quoted \"\r\nEndScript=\" <nl>\r<nl>a\rb<nl>\r\"\r\n"
            "[Mod1]\r\nTypeID= 07 \r\nName=\"\"twice\"\"\r\nDescription='\r\n"
            "InstallScript=<nl>\r\nReadme=" +
                all +
                "\r\nFiles=end\r\r\n"
                "[Mod2]\r\nTypeID=0\r\nName=<nl>\r\nDescription=;=[x]\r\nReadme=<<nl>nl>\r\n"
                "[Mod3]\r\nTypeID=0\r\nInstallScript=" +
                std::string(64995, 'x') +
                "<nl>\r\n[Mod5]\r\nTypeID=0\r\n"
                "[Typ1]\r\nTypeID=7\r\n[Typ2]\r\nTypeID=7\r\nName=\r\nDescription=\"\r\n");
  ExpectRoundTrip(folder);
  const auto info = ordered_json::parse(Kvpk(folder, {"info", "b.kvpk", "--json"}).output);
  EXPECT_EQ(info["endScript"], " \r\n\r\r\na\rb\r\n\r");
  EXPECT_EQ(info["mods"].size(), 3U);
  EXPECT_EQ(info["modTypes"][0]["name"], "0");
}

TEST(Unpack, KeepsOddEntriesInsideTheFolder) {
  const TempFolder folder;
  const std::string stream = Compressed("payload");
  std::vector<StoredEntry> entries{
      {"picture.zz", Compressed("a picture that looks like payload") + std::string(2040, '\0')},
      {"no stream", "plain data"},
      {"zeros", std::string(3 * kSector, '\0')},
      {"nothing", ""},
      {"junk behind.dff", stream + std::string(kSector - stream.size(), '#')},
      {"much behind.dff", stream + std::string(kSector, '#')},
      {"damaged.dff", Compressed(std::string(9000, 'd')).substr(0, 20)},
      {"twin.dff", Compressed("first twin")},
      {"TWIN.DFF", Compressed("second twin")},
      {"entry-0010.bin", Compressed("a name that unpack would make")},
      {"MODPACK.INI", Compressed("not the index")},
      {"once", Compressed("seen")},
      {"once", Compressed("never seen")},
  };
  for (const char* name :
       {"../x",    "..",      "a/b", R"(a\..\..\b)", "Z:\\x", "/tmp/x", "con",
        "NUL.txt", ".hidden", " x ", "x ",           "x.",    "%41",    "\"q\"",
        "a\nb\r",  "a=b",     ";c",  "[d]",          "*?",    "",       "\x81\x8D\xFF"}) {
    entries.emplace_back(name, Compressed(std::string("data of ") + name));
  }
  WritePack(folder, "a.kvpk",
            "[Mod1]\r\nTypeID=1\r\nPicture=picture.zz\r\n"
            "InstallScript=AddIMG {<nl>x.img<nl>twin.dff<nl>TWIN.DFF<nl>Twin.dff<nl>../x<nl>"
            "modpack.ini<nl>}<nl>Copy {<nl>data<nl>fehlt.txt<nl>data\\fehlt.txt<nl>}\r\n",
            entries);
  ExpectRoundTrip(folder);
  EXPECT_EQ(EntriesByName(folder, "b.kvpk").size(), entries.size()) << "all but the one never seen";
  EXPECT_THAT(folder.Read("out/pack.ini"), HasSubstr("[Missing]\n1=Twin.dff\n2=fehlt.txt\n"));
  const KvpkRun again = Kvpk(folder, {"unpack", "a.kvpk", "again"});
  EXPECT_THAT(again.errors, HasSubstr("warning: entry 14, \"once\": left out"));
  EXPECT_THAT(again.errors, HasSubstr("\"damaged.dff\": kept as it is; its data is damaged"));
}

TEST(Unpack, RefusesAFolderInUse) {
  const TempFolder folder;
  WritePack(folder, "a.kvpk", "[Info]\r\nTitle=T\r\n", {});
  folder.Write("used/.hidden", "mine");
  folder.Write("file", "mine");
  folder.MakeFolder("empty");
  EXPECT_EQ(Kvpk(folder, {"unpack", "a.kvpk", "used"}).exitStatus, 1);
  EXPECT_EQ(Kvpk(folder, {"unpack", "a.kvpk", "file"}).exitStatus, 1);
  EXPECT_EQ(folder.List("used"), std::vector<std::string>{".hidden"});
  EXPECT_EQ(Kvpk(folder, {"unpack", "a.kvpk", "empty"}).exitStatus, 0);
  EXPECT_EQ(folder.List("empty"), std::vector<std::string>{"pack.ini"});
}

TEST(Unpack, TellsOfEntriesThatCannotBeRead) {
  const TempFolder folder;
  WritePack(folder, "a.kvpk", "[Info]\r\nTitle=T\r\n",
            {{"good", Compressed("good")}, {"bad", Compressed("bad")}});
  std::string bytes = folder.Read("a.kvpk");
  bytes.resize(bytes.size() - kSector);
  folder.Write("a.kvpk", bytes);
  const KvpkRun run = Kvpk(folder, {"unpack", "a.kvpk", "out"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_THAT(run.errors, HasSubstr("entry 3, \"bad\": left out"));
  EXPECT_EQ(folder.Read("out/payload/good"), "good");
}

TEST(Info, PrintsWhatTheCatalogueHoldsBeforeAFailure) {
  const TempFolder folder;
  WritePack(folder, "a.kvpk",
            "[Info]\r\nTitle=T\r\n[Mod1]\r\nTypeID=1\r\nName=Eins\r\n"
            "[Mod2]\r\nTypeID=zwei\r\nName=Zwei\r\n[Typ1]\r\nTypeID=1\r\n",
            {});
  const KvpkRun run = Kvpk(folder, {"info", "a.kvpk", "--json"});
  EXPECT_EQ(run.exitStatus, 1);
  const auto info = ordered_json::parse(run.output);
  EXPECT_EQ(info["title"], "T");
  EXPECT_EQ(info["mods"][0]["name"], "Eins");
  EXPECT_THAT(run.errors, HasSubstr("zwei"));
  EXPECT_EQ(Kvpk(folder, {"unpack", "a.kvpk", "out"}).exitStatus, 1);

  WriteArchive(folder, "b.img", {{"a", "b"}});
  const KvpkRun noIndex = Kvpk(folder, {"info", "b.img", "--json"});
  EXPECT_EQ(noIndex.exitStatus, 1);
  EXPECT_THAT(noIndex.errors, HasSubstr("no readable index"));
}

}  // namespace
