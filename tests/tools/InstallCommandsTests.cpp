#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pack/ZlibStream.h"
#include "platform/FolderLock.h"
#include "tools/Kvpk.h"

using testing::HasSubstr;

namespace {

/// A game directory with one text file, and a pack of three mods: the second one stops at its
/// sixth line.
class Install : public testing::Test {
 protected:
  Install() {
    folder_.Write("game/GTA_SA.EXE", "");
    folder_.Write("game/data/gta.dat", "first\r\nlast\r\n");
    WritePack(folder_, "a.kvpk",
              "[Info]\r\nTitle=T\r\nEndScript=" + AddLine("ende") +
                  "\r\n"
                  "[Mod1]\r\nTypeID=1\r\nName=Eins\r\nInstallScript=" +
                  AddLine("eins") +
                  "\r\n"
                  "[Mod2]\r\nTypeID=1\r\nName=Zw\xF6i\r\nInstallScript=" +
                  AddLine("zwei") + "<nl>Delete {<nl>nirgends.txt<nl>}<nl>" + AddLine("nie") +
                  "\r\n"
                  "[Mod3]\r\nTypeID=1\r\nName=Drei\r\n"
                  "InstallScript=Copy {<nl>data<nl>neu.txt<nl>}\r\n"
                  "[Typ1]\r\nTypeID=1\r\nName=Typ\r\nDescription=\r\n",
              {{"neu.txt", Compressed("the payload")}});
  }

  static std::string AddLine(const std::string& text) {
    return "AddLine {<nl>data\\gta.dat<nl>last<nl>" + text + "<nl>}";
  }
  [[nodiscard]] std::string GameText() const { return folder_.Read("game/data/gta.dat"); }

  TempFolder folder_;
};

TEST_F(Install, RunsAllModsAndTheEndScript) {
  const KvpkRun run = Kvpk(folder_, {"install", "a.kvpk", "--game", "game"});
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.output,
            "Installiere Mod: Eins\nFüge Zeile hinzu...gta.dat\n"
            "Installiere Mod: Zwöi\nFüge Zeile hinzu...gta.dat\nLösche Datei...\n"
            "Installiere Mod: Drei\nDekomprimieren: neu.txt...\nKopiere Datei...neu.txt\n"
            "Füge Zeile hinzu...gta.dat\n"
            "Installation der Modifikationen abgeschlossen.\n");
  EXPECT_THAT(run.errors, testing::StartsWith("kvpk: mod 2, \"Zwöi\", stopped early at line 7, "
                                              "\"nirgends.txt\": "));
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
  EXPECT_EQ(GameText(), "first\r\nlast\r\nende\r\nzwei\r\neins\r\n");
  EXPECT_EQ(folder_.Read("game/data/neu.txt"), "the payload");
}

TEST_F(Install, RunsTheModsThatAreAskedFor) {
  folder_.MakeFolder("keep");
  EXPECT_EQ(
      Kvpk(folder_, {"install", "a.kvpk", "--game", "game", "--mods", "3,1", "--temp", "keep"})
          .exitStatus,
      0);
  EXPECT_EQ(folder_.List("keep"), std::vector<std::string>{}) << "nothing is left in it";
  EXPECT_EQ(GameText(), "first\r\nlast\r\nende\r\neins\r\n");
  for (const char* mods : {"0", "4", "1,", "-1", "99999999999"}) {
    EXPECT_EQ(Kvpk(folder_, {"install", "a.kvpk", "--game", "game", "--mods", mods}).exitStatus, 2)
        << mods;
  }
}

TEST_F(Install, OneProgramAtATimeHasTheGameOrATempFolder) {
  folder_.MakeFolder("keep");
  const std::vector<std::string> words = {"install", "a.kvpk", "--game", "game",
                                          "--mods",  "1",      "--temp", "keep"};
  for (const std::string folder : {"game", "keep"}) {
    const FolderLock lock = FolderLock::Take(folder_.At(folder), "KELVO");
    const KvpkRun run = Kvpk(folder_, words);
    EXPECT_EQ(run.exitStatus, 1) << folder;
    EXPECT_THAT(run.errors, HasSubstr("\"" + folder + "\" is "));
    EXPECT_THAT(run.errors, HasSubstr(" by KELVO, process "));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
  }
  EXPECT_EQ(GameText(), "first\r\nlast\r\n");
  EXPECT_EQ(Kvpk(folder_, words).exitStatus, 0);
  EXPECT_EQ(folder_.List("keep"), std::vector<std::string>{});
}

TEST_F(Install, LooksAheadBeforeItChangesAnything) {
  const std::string index =
      "[Mod1]\r\nTypeID=1\r\nName=Eins\r\nInstallScript=" + AddLine("eins") +
      "<nl>Copy {<nl>data<nl>kaputt<nl>}\r\n"
      "[Mod2]\r\nTypeID=1\r\nName=Zwei\r\nInstallScript=Copy {<nl>data<nl>da.txt<nl>}"
      "<nl>Delete {<nl>Z:\\nirgends<nl>}\r\n";
  WritePack(folder_, "b.kvpk", index, {{"kaputt", "no stream"}, {"da.txt", Compressed("payload")}});
  folder_.Write("da.txt", "the caller's own");
  const auto install = [&](std::vector<std::string> options) {
    std::vector<std::string> words{"install", "b.kvpk", "--game", "game", "--quiet", "--mods"};
    words.insert(words.end(), options.begin(), options.end());
    const KvpkRun run = Kvpk(folder_, words);
    EXPECT_EQ(run.output, "");
    return std::pair(run.exitStatus, run.errors);
  };
  const auto [damaged, defect] = install({"1"});
  EXPECT_EQ(damaged, 1);
  EXPECT_THAT(defect, HasSubstr("payload \"kaputt\" is damaged: "));
  EXPECT_EQ(GameText(), "first\r\nlast\r\n");
  const auto [forced, setback] = install({"1", "--force"});
  EXPECT_EQ(forced, 3);
  EXPECT_THAT(setback, HasSubstr("\nkvpk: mod 1, \"Eins\", line 8, \"kaputt\": "));
  EXPECT_EQ(GameText(), "first\r\nlast\r\neins\r\n");

  const auto [unasked, deeds] = install({"2"});
  EXPECT_EQ(unasked, 1);
  EXPECT_THAT(deeds, HasSubstr("mod 2, \"Zwei\", line 6: deletes Z:\\nirgends\n"));
  EXPECT_EQ(folder_.Read("game/data/da.txt"), "(missing)");
  EXPECT_EQ(install({"2", "--trust"}).first, 3) << "there is nothing to delete";
  EXPECT_EQ(folder_.Read("game/data/da.txt"), "payload");
  install({"2", "--trust", "--current", "."});
  EXPECT_EQ(folder_.Read("game/data/da.txt"), "the caller's own");
}

TEST_F(Install, TellsOfEditsThatFail) {
  folder_.Write("s.txt",
                "ReplaceLine {\ndata\\gta.dat\nnirgends\nneu\n}\nAddLine {\n"
                "data\\gta.dat\nlast\n\xC3\xBC\n}\n");
  const KvpkRun raw = Kvpk(folder_, {"script", "s.txt", "--game", "game"});
  EXPECT_THAT(raw.errors, HasSubstr("has no CR LF line ends"));
  const KvpkRun run = Kvpk(folder_, {"script", "s.txt", "--game", "game", "--source"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_THAT(run.errors, testing::MatchesRegex(".*line 4, \"neu\": edit of \".*gta.dat\" at "
                                                "\"nirgends\": no line matches\n"));
  EXPECT_EQ(GameText(), "first\r\nlast\r\n\xFC\r\n");
}

TEST_F(Install, AsksForAGameDirectory) {
  std::filesystem::remove(folder_.At("game/GTA_SA.EXE"));
  EXPECT_EQ(Kvpk(folder_, {"install", "a.kvpk", "--game", "game", "--mods", "1"}).exitStatus, 1);
  EXPECT_EQ(Kvpk(folder_, {"install", "a.kvpk", "--game", "nowhere", "--any-directory"}).exitStatus,
            1);
  EXPECT_EQ(GameText(), "first\r\nlast\r\n");
  EXPECT_EQ(Kvpk(folder_, {"install", "a.kvpk", "--game", "game", "--mods", "1", "--any-directory"})
                .exitStatus,
            0);
  EXPECT_EQ(GameText(), "first\r\nlast\r\nende\r\neins\r\n");
}

TEST_F(Install, ScriptTellsEachStatusAndTheProgress) {
  folder_.Write("s.txt",
                "Copy {\r\ndata\r\nneu.txt\r\n}\r\nAddLine {\r\ndata\\gta.dat\r\nlast\r\n"
                "\xE4\xF6\xFC\r\n}");
  const KvpkRun run = Kvpk(folder_, {"script", "s.txt", "--game", "game", "--pack", "a.kvpk"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(run.output,
            "status: Dekomprimieren: neu.txt...100%\nstatus: Kopiere Datei...neu.txt\n"
            "status: Füge Zeile hinzu...gta.dat\nprogress: 8/8\n");
  EXPECT_EQ(GameText(), "first\r\nlast\r\n\xE4\xF6\xFC\r\n");
}

TEST_F(Install, ScriptStopsAtItsFirstFailure) {
  folder_.Write("here.txt", "in the current directory");
  folder_.Write("s.txt", "# comment\r\nMove {\r\ndata\r\nhere.txt\r\nnot \x1Bthere.txt\r\n}\r\n");
  const KvpkRun run = Kvpk(folder_, {"script", "s.txt", "--game", "game"});
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_THAT(run.output, testing::EndsWith("\nprogress: 4/6\n"));
  EXPECT_THAT(run.errors, HasSubstr("stopped early at line 5, \"not \\x1Bthere.txt\": "));
  EXPECT_EQ(folder_.Read("game/data/here.txt"), "in the current directory");
  EXPECT_EQ(folder_.Read("here.txt"), "(missing)");

  folder_.Write("empty.txt", "");
  EXPECT_EQ(Kvpk(folder_, {"script", "empty.txt", "--game", "game"}).output, "progress: 0/-1\n");
  EXPECT_EQ(Kvpk(folder_, {"script", "s.txt", "--game", "game", "--pack", "s.txt"}).exitStatus, 1);
}

}  // namespace
