// AddIMG, RemoveIMG, ReplaceIMG and RebuildIMG on archives made byte by byte, and names in a pack
// that lead out of `TempDir`.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "install/InstallFixture.h"
#include "platform/Failure.h"
#include "support/PackFile.h"
#include "support/RawArchive.h"

namespace {

using Texts = std::vector<std::string>;

class ImgCommands : public InstallTest {
 protected:
  ImgCommands() {
    LayOut({{"game/models/Spiel.img", Archive()}});
    OpenPack({{"a.dff", "NEU A"}, {"neu.txd", "NEU"}, {"X.ide", "x"}});
  }
  static std::string Archive() {
    return RawArchive::Make({{"a.dff", "A"}, {"B.txd", "B"}, {"c.col", "C"}});
  }
  /// The archive's entries, each as "name=data" without the data's fill.
  [[nodiscard]] Texts Entries() const {
    Texts entries;
    for (const auto& [name, data] : EntriesOf(Folder, "game/models/Spiel.img"))
      entries.push_back(Concat(name, "=", data.substr(0, data.find('\0'))));
    return entries;
  }
};

TEST_F(ImgCommands, AddReplaceRemove) {
  const std::string a = "Dekomprimieren: a.dff...100%";
  const std::string neu = "Dekomprimieren: neu.txd...100%";
  const std::vector<std::tuple<const char*, Texts, Texts>> cases = {
      // The name that is there already is added once more, behind the first.
      {"AddIMG {|models\\spiel.IMG|neu.txd|a.dff|}",
       {"a.dff=A", "B.txd=B", "c.col=C", "neu.txd=NEU", "a.dff=NEU A"},
       {neu, "F\xFCge zu Spiel.img hinzu...neu.txd", a, "F\xFCge zu Spiel.img hinzu...\x61.dff"}},
      // What the archive lacks is simply added.
      {"ReplaceIMG {|<root>\\game\\models\\Spiel.img|a.dff|neu.txd|}",
       {"B.txd=B", "c.col=C", "a.dff=NEU A", "neu.txd=NEU"},
       {a, "Ersetze in Spiel.img ...a.dff", neu, "Ersetze in Spiel.img ...neu.txd"}},
      {"RemoveIMG {|models\\Spiel.img|b.TXD|fehlt|}",
       {"a.dff=A", "c.col=C"},
       {"L\xF6sche aus Spiel.img ...b.TXD", "L\xF6sche aus Spiel.img ...fehlt"}}};
  for (const auto& [script, entries, statuses] : cases) {
    SCOPED_TRACE(script);
    Folder.Write("game/models/Spiel.img", Archive());
    Host.Statuses.clear();
    EXPECT_EQ(Run(script), 0U);
    EXPECT_EQ(Entries(), entries);
    EXPECT_EQ(Host.Statuses, statuses);
    EXPECT_EQ(Folder.List("temp"), Texts{});
  }
}

TEST_F(ImgCommands, PayloadThatThePackLacksStopsTheScript) {
  EXPECT_EQ(Run("AddIMG {|models\\Spiel.img|fehlt|neu.txd|}|AddIMG {|models\\Spiel.img|X.ide|}"),
            3U);
  EXPECT_EQ(Entries(), (Texts{"a.dff=A", "B.txd=B", "c.col=C", "fehlt="}));
  EXPECT_EQ(Run("ReplaceIMG {|models\\Spiel.img|A.DFF|neu.txd|}"), 3U);
  EXPECT_EQ(Entries(), (Texts{"B.txd=B", "c.col=C", "fehlt=", "A.DFF="}));
  EXPECT_EQ(Host.Statuses,
            (Texts{"F\xFCge zu Spiel.img hinzu...fehlt", "Ersetze in Spiel.img ...A.DFF"}));
}

TEST_F(ImgCommands, IfExistGotoImg) {
  const std::string tail = "|ja|nein|}|:ja|ShellExecute {|1|}|:nein|ShellExecute {|2|}";
  const std::vector<std::pair<std::string, std::size_t>> cases = {
      {"a.dff", 2}, {"B.txd", 2}, {"A.dff", 1}, {"fehlt", 1}, {"*", 1}};
  for (const auto& [name, opened] : cases) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Run(Concat("IfExistGoto {|IMG|models\\Spiel.img|", name, tail)), 0U);
    EXPECT_EQ(TakeOpened().size(), opened);
  }
  // Without the labels there is no jump, and a folder that is missing stops the script.
  EXPECT_EQ(Run("IfExistGoto {|img|models\\Spiel.img|a.dff|}|ShellExecute {|1|}"), 0U);
  EXPECT_EQ(Run("IfExistGoto {|img|fehlt\\Spiel.img|a.dff" + tail), 4U);
  EXPECT_EQ(TakeOpened(), Texts{"1"});
}

TEST_F(ImgCommands, WhatIsNoArchiveStaysAsItIs) {
  for (const char* command : {"AddIMG", "ReplaceIMG", "RemoveIMG", "RebuildIMG"}) {
    // The directory of another archive is in memory by then.
    const std::string blocks =
        "RemoveIMG {|models\\Spiel.img|fehlt|}|" + std::string(command) + " {|";
    for (const std::string& content : {std::string(), std::string(9000, 'x')}) {
      SCOPED_TRACE(command + content.substr(0, 5));
      LayOut({{"game/models/Spiel.img", Archive()}, {"game/kein.img", content}});
      Tree before = Snapshot();
      EXPECT_EQ(Run(blocks + "kein.img|a.dff|neu.txd|}"), 0U);
      ExpectTree(before);
      // One that is missing is made, empty.
      before["game/fehlt.img"] = "";
      EXPECT_EQ(Run(blocks + "fehlt.img|a.dff|neu.txd|}"), 0U);
      ExpectTree(before);
    }
    // The next block has an archive again.
    EXPECT_EQ(Run(blocks + "kein.img|}|RemoveIMG {|models\\Spiel.img|B.txd|}"), 0U);
    EXPECT_EQ(Entries(), (Texts{"a.dff=A", "c.col=C"}));
  }
}

TEST_F(ImgCommands, RebuildIMGDrivesTheBar) {
  LayOut({{"game/Gross.img", RawArchive::Make(RawArchive::Numbered(5))},
          {"game/klein.img", RawArchive::Make(RawArchive::Numbered(2))}});
  const std::string large = "Baue Archiv neu auf...Gross.img";
  const std::string small = "Baue Archiv neu auf...klein.img";
  struct Case {
    const char* script;
    Texts statuses;
    std::vector<std::int32_t> maxima;
    std::int32_t value;
  };
  const std::vector<Case> cases = {
      // The rebuild runs at its line, without the close; its range stays, and the bar is full.
      {"RebuildIMG {|gross.img", {large}, {1, 5}, 5},
      // A further archive keeps prefix and range: the lines behind it count on.
      {"RebuildIMG {|gross.img|klein.img|}", {large}, {3, 5}, 4},
      // A block of its own has a prefix of its own.
      {"RebuildIMG {|gross.img|}|RebuildIMG {|klein.img|}|", {large, small}, {6, 5, 2}, 2},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.script);
    Session.SetStatus("");
    Host.Statuses.clear();
    Host.ModMaxima.clear();
    EXPECT_EQ(Run(testCase.script), 0U);
    EXPECT_EQ(Host.Statuses, testCase.statuses);
    EXPECT_EQ(Host.ModMaxima, testCase.maxima);
    EXPECT_EQ(Host.ModBar.Value(), testCase.value);
  }
}

TEST_F(ImgCommands, ProgressOutOfTheBarsRangeEndsThatEventAlone) {
  Host.ModBar.SetMax(7);
  Session.StatusPrefix = "x.img";
  Session.IMG_RebuildProgress(1, 40000);
  EXPECT_EQ(Host.Statuses, Texts{"Baue Archiv neu auf...x.img"});
  EXPECT_EQ(Host.ModBar.Max(), 7);
  Session.IMG_RebuildProgress(40000, 40000);
  EXPECT_EQ(Host.ModBar.Value(), 0);
}

/// Nothing that a pack or a script names is unpacked outside `TempDir`.
TEST_F(ImgCommands, NamesThatLeadOutOfTempDirAreNotUnpacked) {
  const Texts names = {"..\\x", "..\\neu", "../neu",  "a\\b",  "\\neu",
                       "c:x",   "con",     "NUL.txt", ".",     "..",
                       "a/b",   "x:y",     "*",       "?.dff", "..\\game\\neu"};
  std::vector<std::pair<std::string, std::string>> payloads;
  for (const std::string& name : names) payloads.emplace_back(name, "BOESE");
  for (const std::string& command :
       Texts{"AddIMG {|models\\Spiel.img|", "ReplaceIMG {|models\\Spiel.img|", "Copy {|data|",
             "Move {|data|"}) {
    for (const std::string& name : names) {
      SCOPED_TRACE(command + name);
      // Folders that such a name could be written to, and a file that it could overwrite.
      LayOut({{"game/models/Spiel.img", Archive()}, {"temp/a/", ""}, {"x", "sentinel"}});
      OpenPack(payloads);
      Tree expected = Snapshot();
      EXPECT_EQ(Run(command + name), 3U);
      // For Copy and Move, a file where the name leads is a source like any other; it stays.
      const bool isSource = name == "..\\x" && command.ends_with("data|");
      if (isSource) expected["game/data/x"] = "sentinel";
      ExpectTree(expected);
    }
  }
}

}  // namespace
