// What is looked at ahead of a run, and the stop of one.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "install/InstallFixture.h"
#include "install/InstallRun.h"
#include "install/PackCheck.h"
#include "install/ScriptReach.h"
#include "platform/WantedStop.h"

namespace {

using Texts = std::vector<std::string>;
using Deed = OutsideDeed::Kind;

class LookAhead : public InstallTest {
 protected:
  void SetScript(std::string_view script) { Session.Pack.EndScript = Lines(script); }
  void Corrupt(const std::string& pack, std::size_t position) {
    std::string bytes = Folder.Read(pack);
    bytes.at(position) = static_cast<char>(~bytes.at(position));
    Folder.Write(pack, bytes);
  }
};

TEST_F(LookAhead, ListsWhatReachesOutOfTheGame) {
  LayOut({{"out/doc", "x"},
          {"start/here/hier", "x"},
          {"start/here/ordner/", ""},
          {"game/data/a", "x"}});
  const std::vector<std::pair<std::string, std::vector<std::pair<Deed, std::string>>>> cases = {
      {"AddLine {|data\\a|x|y|}Copy {|data\\|p|}|Delete {|weg\\*.*|}|Rename {|q|r|}", {}},
      {"AddLine {|<root>\\game\\data\\a|x|y|}|RebuildIMG {|models\\a.img|}", {}},
      {"AddLine {|<root>\\out\\doc|x", {}},
      {"AddLine {|<root>\\out\\doc|x|y|z", {{Deed::kWrites, "<root>\\out\\doc"}}},
      {"Copy {|..\\out|p|q", {{Deed::kWrites, "<root>\\game\\..\\out"}}},
      {"RemoveIMG {|<root>\\a.img|}", {{Deed::kWrites, "<root>\\a.img"}}},
      {"RebuildIMG {|a.img|<root>\\b.img", {{Deed::kWrites, "<root>\\b.img"}}},
      {"Copy {|data|hier|<root>\\out\\doc", {}},
      {"Move {|data|hier|<root>\\out\\doc",
       {{Deed::kMoves, "hier"}, {Deed::kMoves, "<root>\\out\\doc"}}},
      {"Copy {|data|..\\out\\doc", {{Deed::kDeletes, "<root>\\temp\\..\\out\\doc"}}},
      {"Delete {|hier|<root>\\out\\*.*",
       {{Deed::kDeletes, "hier"}, {Deed::kDeletes, "<root>\\out\\*.*"}}},
      {"Rename {|ordner|..\\out",
       {{Deed::kRenames, "ordner"},
        {Deed::kRenames, "..\\out"},
        {Deed::kRenames, "<root>\\temp\\..\\out"}}},
      {"Rename {|kommt/noch|<root>\\out\\neu", {{Deed::kRenames, "<root>\\out\\neu"}}},
      {"IfExistGoto {|img|<root>\\neu.img|x|j|n", {{Deed::kWrites, "<root>\\neu.img"}}},
      {"CreateFolder {|<root>\\game|neu|..\\out\\neu",
       {{Deed::kCreatesFolder, "<root>\\game\\..\\out\\neu"}}},
      {"RemoveFolder {|<root>\\out|x|}", {{Deed::kRemovesFolder, "<root>\\out"}}},
      {"ShellExecute {|http://x|a.exe",
       {{Deed::kOpens, "http://x"}, {Deed::kOpens, "<root>\\game\\a.exe"}}},
      {"Copy {|data|\\\\server\\a", {{Deed::kReachesNetwork, "\\\\server\\a"}}},
      {"Delete {|\\\\server\\b", {{Deed::kReachesNetwork, "\\\\server\\b"}}},
      {"Rename {|ordner|\\\\server\\c",
       {{Deed::kRenames, "ordner"}, {Deed::kReachesNetwork, "\\\\server\\c"}}},
      // Jumped over or not.
      {"Goto {|x|}|Delete {|hier|}|:x", {{Deed::kDeletes, "hier"}}},
  };
  for (const auto& [script, expected] : cases) {
    SCOPED_TRACE(script);
    SetScript(script);
    std::vector<std::pair<Deed, std::string>> deeds;
    for (const OutsideDeed& deed : DeedsOutside(Session)) {
      deeds.emplace_back(deed.kind, Text::Replace(deed.place, Folder.Dos(), "<root>"));
    }
    EXPECT_EQ(deeds, expected);
  }
}

TEST_F(LookAhead, FindsDefectsAndChangesNothing) {
  LayOut({{"game/data/a", "x"}});
  OpenPack({{"gut", std::string(300000, 'g')}, {"schlecht", "s"}, {"ungenutzt", "u"}});
  for (const char* const name : {"schlecht", "ungenutzt"}) {
    const auto entry =
        std::find_if(Session.ModPackIMG.Entries().begin(), Session.ModPackIMG.Entries().end(),
                     [&](const udtIMGEntry& each) { return each.Name == name; });
    Corrupt("pack.kvpk", static_cast<std::size_t>(entry->Offset) + 5);
  }
  std::filesystem::permissions(Folder.At("game/data/a"), std::filesystem::perms::owner_read);
  const Tree before = Snapshot();
  SetScript("Copy {|data|gut|schlecht|fehlt|}|AddLine {|data\\a|x|y|}");
  Texts found;
  Texts progress;
  for (const PackFinding& finding : CheckPack(Session, [&](std::size_t done, std::size_t count) {
         progress.push_back(std::to_string(done) + "/" + std::to_string(count));
       })) {
    found.push_back(finding.name + (finding.Refuses() ? " refuses" : ""));
  }
  EXPECT_EQ(found, (Texts{"fehlt", "schlecht refuses", Session.SAInstallDir + "\\data\\a"}));
  EXPECT_EQ(progress, (Texts{"0/3", "1/3", "2/3", "3/3"}));
  EXPECT_EQ(Snapshot(), before);
}

/// At whatever moment the wish comes, the line in hand has changed all or nothing.
TEST_F(LookAhead, AWantedStopLeavesNoLineHalfDone) {
  const std::string payload(100000, 'p');
  for (const std::string script : {"Copy {|data|p|}", "ReplaceIMG {|a.img|p|}",
                                   "RebuildIMG {|a.img|}", "AddIMG {|a.img|p|}"}) {
    SCOPED_TRACE(script);
    std::vector<Tree> states;
    for (int stopAt = 1; states.empty() || states.back() != Tree(); ++stopAt) {
      ASSERT_LT(stopAt, 1000);
      LayOut({{"game/data/p", "old"}});
      OpenPack({{"p", payload}});
      ArchiveWriter writer;
      for (const char* const name : {"e", "p", "f"}) writer.Add(name, name);
      writer.Write(Files, Folder.Dos("game/a.img"));
      Host.OnDoEvents = [&, left = stopAt]() mutable {
        if (--left == 0) throw WantedStop{2};
      };
      bool stopped = false;
      try {
        Run(script);
      } catch (const WantedStop&) {
        stopped = true;
      }
      Tree game = Snapshot();
      std::erase_if(game, [](const auto& file) { return !file.first.starts_with("game/"); });
      states.push_back(stopped ? game : Tree());
    }
    states.pop_back();
    EXPECT_LE(std::unique(states.begin(), states.end()) - states.begin(), 2);
    EXPECT_FALSE(states.front().contains("game/a.img.tmp"));
  }
}

}  // namespace
