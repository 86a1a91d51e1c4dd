// AddIMG, RemoveIMG, ReplaceIMG and RebuildIMG on archives made byte by byte, and names in a pack
// that lead out of `TempDir`.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "install/InstallFixture.h"
#include "support/RawArchive.h"

namespace {

using Texts = std::vector<std::string>;

std::size_t NumberAt(std::string_view bytes, std::size_t offset) {
  std::size_t number = 0;
  for (std::size_t i = 4; i-- > 0;)
    number = number << 8U | static_cast<unsigned char>(bytes.at(offset + i));
  return number;
}

/// The entries of an archive as its bytes have them, each as "name=data" without the data's fill.
Texts Listing(std::string_view bytes) {
  Texts entries;
  for (std::size_t i = 0; i < NumberAt(bytes, 4); ++i) {
    const std::string_view record = bytes.substr(8 + i * 32, 32);
    std::string_view name = record.substr(8);
    std::string_view data = bytes.substr(NumberAt(record, 0) * RawArchive::kSector,
                                         NumberAt(record, 4) * RawArchive::kSector);
    name = name.substr(0, name.find('\0'));
    data = data.substr(0, data.find('\0'));
    entries.push_back(std::string(name) + "=" + std::string(data));
  }
  return entries;
}

class ImgCommands : public InstallTest {
 protected:
  ImgCommands() {
    LayOut({{"game/models/Spiel.img", Archive()}});
    OpenPack({{"a.dff", "NEU A"}, {"neu.txd", "NEU"}, {"X.ide", "x"}});
  }
  static std::string Archive() {
    return RawArchive::Make({{"a.dff", "A"}, {"B.txd", "B"}, {"c.col", "C"}});
  }
  [[nodiscard]] Texts Entries() const { return Listing(Folder.Read("game/models/Spiel.img")); }
};

TEST_F(ImgCommands, AddIMG) {
  EXPECT_EQ(Run("AddIMG {|models\\spiel.IMG|neu.txd|a.dff|}"), 0U);
  // The name that is there already is added once more, behind the first.
  EXPECT_EQ(Entries(), (Texts{"a.dff=A", "B.txd=B", "c.col=C", "neu.txd=NEU", "a.dff=NEU A"}));
  EXPECT_EQ(Host.Statuses,
            (Texts{"Dekomprimieren: neu.txd...100%", "F\xFCge zu Spiel.img hinzu...neu.txd",
                   "Dekomprimieren: a.dff...100%",
                   "F\xFCge zu Spiel.img hinzu..."
                   "a.dff"}));
  EXPECT_EQ(Folder.List("temp"), Texts{});
}

TEST_F(ImgCommands, ReplaceIMG) {
  EXPECT_EQ(Run("ReplaceIMG {|<root>\\game\\models\\Spiel.img|a.dff|neu.txd|}"), 0U);
  // What the archive lacks is simply added.
  EXPECT_EQ(Entries(), (Texts{"B.txd=B", "c.col=C", "a.dff=NEU A", "neu.txd=NEU"}));
  EXPECT_EQ(Host.Statuses,
            (Texts{"Dekomprimieren: a.dff...100%", "Ersetze in Spiel.img ...a.dff",
                   "Dekomprimieren: neu.txd...100%", "Ersetze in Spiel.img ...neu.txd"}));
  EXPECT_EQ(Folder.List("temp"), Texts{});
}

TEST_F(ImgCommands, RemoveIMG) {
  EXPECT_EQ(Run("RemoveIMG {|models\\Spiel.img|b.TXD|fehlt|}"), 0U);
  EXPECT_EQ(Entries(), (Texts{"a.dff=A", "c.col=C"}));
  EXPECT_EQ(Host.Statuses, (Texts{"L\xF6sche aus Spiel.img ...b.TXD",
                                  "L\xF6sche aus Spiel.img ..."
                                  "fehlt"}));
  EXPECT_EQ(Folder.Read("game/models/Spiel.img").size(), Archive().size());
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
  struct Case {
    const char* test;
    std::size_t opened;
  };
  const std::vector<Case> cases = {
      {"img|models\\Spiel.img|a.dff", 2}, {"IMG|models\\Spiel.img|B.txd", 2},
      {"img|models\\Spiel.img|A.dff", 1}, {"img|models\\Spiel.img|fehlt", 1},
      {"img|models\\Spiel.img|*", 1},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.test);
    EXPECT_EQ(Run("IfExistGoto {|" + std::string(testCase.test) + tail), 0U);
    EXPECT_EQ(TakeOpened().size(), testCase.opened);
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
    for (const std::string& content :
         {std::string(), std::string("ver2"), std::string(9000, 'x')}) {
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
    EXPECT_EQ(Run(blocks + "fehlt\\x.img|a.dff|}|ShellExecute {|1|}"), 6U);
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
      {"RebuildIMG {|gross.img|}|a|b|c", {large}, {5, 5}, 5},
      // A further archive keeps prefix and range: the lines behind it count on.
      {"RebuildIMG {|gross.img|klein.img|}", {large}, {3, 5}, 4},
      {"RebuildIMG {|klein.img|gross.img|}", {small}, {3, 2}, 2},
      {"RebuildIMG {|klein.img|}|RebuildIMG {|klein.img|}", {small}, {5, 2}, 2},
      // A block of its own has a prefix of its own.
      {"RebuildIMG {|gross.img|}|RebuildIMG {|klein.img|}|", {large, small}, {6, 5, 2}, 2},
      {"RebuildIMG {|klein.img|}|RebuildIMG {|gross.img|}", {small, large}, {5, 2, 5}, 5},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.script);
    Session.SetStatus("");
    Host.Statuses.clear();
    Host.ModMaxima.clear();
    EXPECT_EQ(Run(testCase.script), 0U);
    EXPECT_EQ(Host.Statuses, testCase.statuses);
    EXPECT_EQ(Host.ModMaxima, testCase.maxima);
    EXPECT_EQ(Host.ModBar.Max(), testCase.maxima.back());
    EXPECT_EQ(Host.ModBar.Value(), testCase.value);
  }
  EXPECT_EQ(Session.StatusPrefix, "Gross.img");
}

TEST_F(ImgCommands, RebuildIMGGivesBackDeadSpace) {
  EXPECT_EQ(Run("RemoveIMG {|models\\Spiel.img|a.dff|}|RebuildIMG {|models\\spiel.img|}|"
                "AddIMG {|models\\Spiel.img|X.ide"),
            0U);
  EXPECT_EQ(Entries(), (Texts{"B.txd=B", "c.col=C", "X.ide=x"}));
  EXPECT_EQ(Folder.Read("game/models/Spiel.img").size(), Archive().size());
  EXPECT_EQ(Folder.List("game/models"), Texts{"Spiel.img"});
}

TEST_F(ImgCommands, ProgressOutOfTheBarsRangeEndsThatEventAlone) {
  Host.ModBar.SetMax(7);
  Session.StatusPrefix = "x.img";
  Session.IMG_RebuildProgress(1, 40000);
  EXPECT_EQ(Host.Statuses, Texts{"Baue Archiv neu auf...x.img"});
  EXPECT_EQ(Host.ModBar.Max(), 7);
  Session.IMG_RebuildProgress(2, 40000);
  EXPECT_EQ(Host.ModBar.Value(), 2);
  Session.IMG_RebuildProgress(40000, 40000);
  EXPECT_EQ(Host.ModBar.Value(), 2);
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
