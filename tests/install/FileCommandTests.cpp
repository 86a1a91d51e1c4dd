// Copy, Move, Delete, Rename, CreateFolder, RemoveFolder, ShellExecute and the line commands on
// real directories: what they find, what they change, and what the status line says.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "install/InstallFixture.h"
#include "install/basTextEdit.h"
#include "support/RawArchive.h"

namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;
constexpr std::nullopt_t kGone = std::nullopt;

class FileCommands : public InstallTest {
 protected:
  void Check(const std::vector<ScriptRow>& rows) {
    for (const ScriptRow& row : rows) {
      CheckRow(row,
               {{"neu.txt", "NEU"}, {"\xDC.txt", "UE"}, {"beide.txt", "PACK"}, {".h", "PACK"}});
    }
  }
  /// An entry of the pack as it is exported, with its sector fill.
  static std::string Stored(const std::string& content) {
    return RawArchive::Filled(Compressed(content));
  }
  void Protect(const char* path) {
    fs::permissions(Folder.At(path), fs::perms::owner_read | fs::perms::group_read);
  }
};

TEST_F(FileCommands, Copy) {
  Check({
      {"a pack entry; the temp files go",
       {},
       "Copy {|data|neu.txt|}",
       0,
       {"Dekomprimieren: neu.txt...100%", "Kopiere Datei...neu.txt"},
       {{"game/data/neu.txt", "NEU"}}},
      {"two, a closing backslash, an umlaut, a comment between",
       {},
       "Copy {|\\data\\|neu.txt|;x|  \xDC.txt|}",
       0,
       {"Dekomprimieren: neu.txt...100%", "Kopiere Datei...neu.txt",
        "Dekomprimieren: \xDC.txt...100%", "Kopiere Datei...\xDC.txt"},
       {{"game/data/neu.txt", "NEU"}, {"game/data/\xC3\x9C.txt", "UE"}}},
      {"what lies in the current directory counts before the pack, and stays",
       {{"start/here/beide.txt", "DISK"}},
       "Copy {|data|beide.txt|}",
       0,
       {"Kopiere Datei...beide.txt"},
       {{"game/data/beide.txt", "DISK"}}},
      {"absolute target, source with folders, the name as on disk",
       {{"start/Q.txt", "q"}},
       R"(Copy {|<root>\\game\\data|..\q.TXT|})",
       0,
       {"Kopiere Datei...Q.txt"},
       {{"game/data/Q.txt", "q"}}},
      {"an existing target is overwritten and keeps its name",
       {{"game/data/NEU.TXT", "alt und lang"}},
       "Copy {|DATA|neu.txt|}",
       0,
       {"Dekomprimieren: neu.txt...100%", "Kopiere Datei...neu.txt"},
       {{"game/data/NEU.TXT", "NEU"}}},
      {"a source isn't sought in the game directory; the script stops",
       {{"game/q.txt", "q"}},
       "Copy {|data|q.txt|neu.txt|}|Copy {|data|neu.txt|}",
       3,
       {"Kopiere Datei..."},
       {}},
      {"a pack entry in other case isn't found",
       {},
       "Copy {|data|NEU.txt|}",
       3,
       {"Kopiere Datei..."},
       {}},
      {"a target folder isn't made; the temp files stay",
       {},
       "Copy {|fehlt|neu.txt|}",
       3,
       {"Dekomprimieren: neu.txt...100%", "Kopiere Datei...neu.txt"},
       {{"temp/neu.txt", "NEU"}, {"temp/neu.txt.tmp", Stored("NEU")}}},
      {"a target that is a file",
       {{"game/datei", "x"}, {"start/here/q.txt", "q"}},
       "Copy {|datei|q.txt|}",
       3,
       {"Kopiere Datei...q.txt"},
       {}},
      {"a hidden source counts before the pack, and has no name for the target",
       {{"start/here/.h", "h"}},
       "Copy {|data|.h|}",
       3,
       {"Kopiere Datei..."},
       {}},
      {"a source with wildcards",
       {{"start/here/q.txt", "q"}},
       "Copy {|data|*.txt|}",
       3,
       {"Kopiere Datei...q.txt"},
       {}},
      {"a source that is a folder",
       {{"start/here/ordner/q.txt", "q"}},
       "Copy {|data|ordner|}",
       3,
       {"Kopiere Datei..."},
       {}},
      {"onto itself",
       {{"start/here/q.txt", "q"}},
       "Copy {|<root>\\start\\here|q.txt|}",
       3,
       {"Kopiere Datei...q.txt"},
       {}},
      {"an empty source",
       {{"temp/q.txt", "q"}},
       "Copy {|data|\t|}",
       3,
       {"Kopiere Datei...q.txt"},
       {}},
      {"the target alone", {}, "Copy {|data|}", 0, {}, {}},
  });
}

TEST_F(FileCommands, Move) {
  Check({
      {"a pack entry",
       {},
       "Move {|data|neu.txt|}",
       0,
       {"Dekomprimieren: neu.txt...100%", "Verschiebe Datei...neu.txt"},
       {{"game/data/neu.txt", "NEU"}}},
      {"from disk, two; the sources go",
       {{"start/here/q.txt", "q"}, {"start/r.txt", "r"}},
       "Move {|data|q.txt|..\\r.txt|}",
       0,
       {"Verschiebe Datei...q.txt", "Verschiebe Datei...r.txt"},
       {{"game/data/q.txt", "q"},
        {"game/data/r.txt", "r"},
        {"start/here/q.txt", kGone},
        {"start/r.txt", kGone}}},
      {"without a target folder the source stays",
       {{"start/here/q.txt", "q"}},
       "Move {|fehlt|q.txt|}",
       3,
       {"Verschiebe Datei...q.txt"},
       {}},
      {"onto itself: it stays",
       {{"start/here/q.txt", "q"}},
       R"(Move {|<root>\start\here\|q.txt|})",
       3,
       {"Verschiebe Datei...q.txt"},
       {}},
  });
}

TEST_F(FileCommands, LargePayloadShowsItsProgress) {
  OpenPack({{"gross.bin", RawArchive::Noise(10000, 1)}});
  ASSERT_EQ(Run("Copy {|data|gross.bin|}"), 0U);
  EXPECT_EQ(Folder.Read("game/data/gross.bin"), RawArchive::Noise(10000, 1));
  EXPECT_EQ(Host.Statuses,
            (Texts{"Dekomprimieren: gross.bin...40%", "Dekomprimieren: gross.bin...80%",
                   "Dekomprimieren: gross.bin...100%", "Kopiere Datei...gross.bin"}));
  EXPECT_EQ(Session.StatusPrefix, "Dekomprimieren: gross.bin...");
}

TEST_F(FileCommands, Delete) {
  Check({
      {"as written before TempDir, never the game directory",
       {{"start/here/q.txt", "1"}, {"temp/q.txt", "2"}, {"game/q.txt", "3"}},
       "Delete {|Q.TXT|}",
       0,
       {"L\xF6sche Datei...q.txt"},
       {{"start/here/q.txt", kGone}}},
      {"below TempDir",
       {{"temp/q.txt", "2"}, {"game/q.txt", "3"}, {"temp/sub/r.txt", "4"}},
       R"(Delete {|q.txt|\sub\\r.txt|})",
       0,
       {"L\xF6sche Datei...q.txt", "L\xF6sche Datei...r.txt"},
       {{"temp/q.txt", kGone}, {"temp/sub/r.txt", kGone}}},
      {"a line that fails stops the script",
       {{"start/here/q.txt", "1"}},
       "Delete {|fehlt|q.txt|}",
       2,
       {"L\xF6sche Datei..."},
       {}},
      {"with wildcards all ordinary files, the first in the status line",
       {{"start/here/b.txt", ""},
        {"start/here/A.TXT", ""},
        {"start/here/.h.txt", ""},
        {"start/here/o.txt/", ""},
        {"start/here/a.doc", ""}},
       "Delete {|*.txt|}",
       0,
       {"L\xF6sche Datei...A.TXT"},
       {{"start/here/b.txt", kGone}, {"start/here/A.TXT", kGone}}},
      {"with wildcards, hidden files alone",
       {{"start/here/.h.txt", ""}},
       "Delete {|*.txt|}",
       2,
       {"L\xF6sche Datei..."},
       {}},
      {"with wildcards below TempDir",
       {{"temp/a.tmp", ""}, {"temp/b.tmp", ""}, {"temp/c.txt", ""}},
       "Delete {|?.tmp|}",
       0,
       {"L\xF6sche Datei...a.tmp"},
       {{"temp/a.tmp", kGone}, {"temp/b.tmp", kGone}}},
      {"a hidden file by its exact name",
       {{"start/here/.h", ""}},
       "Delete {|.h|}",
       0,
       {"L\xF6sche Datei..."},
       {{"start/here/.h", kGone}}},
      {"no folder",
       {{"start/here/o/", ""}, {"temp/o/", ""}},
       "Delete {|o|}",
       2,
       {"L\xF6sche Datei..."},
       {}},
      {"absolute",
       {{"game/q.txt", "3"}},
       R"(Delete {|<root>\\game\\q.txt)",
       0,
       {"L\xF6sche Datei...q.txt"},
       {{"game/q.txt", kGone}}},
  });
}

TEST_F(FileCommands, Rename) {
  Check({
      {"as written; the bare name keeps the folder",
       {{"game/data/a.txt", "a"}},
       R"(Rename {|<root>\game\data\A.txt|B.txt|})",
       0,
       {"Umbenennen der Datei...a.txt"},
       {{"game/data/a.txt", kGone}, {"game/data/B.txt", "a"}}},
      {"below TempDir, not the game directory",
       {{"temp/a.txt", "t"}, {"game/a.txt", "g"}},
       "Rename {|a.txt|b.txt|}",
       0,
       {"Umbenennen der Datei...a.txt"},
       {{"temp/a.txt", kGone}, {"temp/b.txt", "t"}}},
      {"without a folder, in the current directory",
       {{"start/here/a.txt", "s"}, {"temp/a.txt", "t"}},
       "Rename {|a.txt|b.txt|}",
       0,
       {"Umbenennen der Datei...a.txt"},
       {{"start/here/a.txt", kGone}, {"start/here/b.txt", "s"}}},
      {"a folder and a hidden file, whose names the status line lacks",
       {{"start/here/o/x", "x"}, {"start/here/.h", "h"}},
       "Rename {|o|p|}|Rename {|.h|h|}",
       0,
       {"Umbenennen der Datei...", "Umbenennen der Datei..."},
       {{"start/here/o/", kGone},
        {"start/here/o/x", kGone},
        {"start/here/p/", ""},
        {"start/here/p/x", "x"},
        {"start/here/.h", kGone},
        {"start/here/h", "h"}}},
      {"other case alone",
       {{"start/here/a.txt", "a"}},
       "Rename {|a.txt|A.TXT|}",
       0,
       {"Umbenennen der Datei...a.txt"},
       {{"start/here/a.txt", kGone}, {"start/here/A.TXT", "a"}}},
      {"a further rename fails",
       {{"start/here/a.txt", "a"}},
       "Rename {|a.txt|b.txt|c.txt|}",
       4,
       {"Umbenennen der Datei...a.txt", "Umbenennen der Datei..."},
       {{"start/here/a.txt", kGone}, {"start/here/b.txt", "a"}}},
      {"onto a name that exists, in whatever case",
       {{"start/here/a.txt", "a"}, {"start/here/B.txt", "b"}},
       "Rename {|a.txt|b.txt|}",
       3,
       {"Umbenennen der Datei...a.txt"},
       {}},
      {"nothing there", {}, "Rename {|a.txt|b.txt|}", 3, {"Umbenennen der Datei..."}, {}},
      {"the first line alone", {{"start/here/a.txt", "a"}}, "Rename {|a.txt|}", 0, {}, {}},
  });
}

TEST_F(FileCommands, CreateFolder) {
  Check({
      {"as written, two",
       {},
       "CreateFolder {|<root>\\game\\|neu|\xDC|}",
       0,
       {"Erstelle Ordner...neu", "Erstelle Ordner...\xDC"},
       {{"game/neu/", ""}, {"game/\xC3\x9C/", ""}}},
      {"below the current directory before TempDir",
       {{"start/here/o/", ""}, {"temp/o/", ""}},
       "CreateFolder {|O|neu|}",
       0,
       {"Erstelle Ordner...neu"},
       {{"start/here/o/neu/", ""}}},
      {"below TempDir, not the game directory",
       {{"temp/o/", ""}, {"game/o/", ""}},
       "CreateFolder {|o|neu|neuer|}",
       0,
       {"Erstelle Ordner...neu", "Erstelle Ordner...neuer"},
       {{"temp/o/neu/", ""}, {"temp/o/neuer/", ""}}},
      {"one that exists, in whatever case",
       {},
       "CreateFolder {|<root>\\game|DATA|neu|}",
       3,
       {"Erstelle Ordner...DATA"},
       {}},
      {"no parent", {}, "CreateFolder {|o|neu|}", 3, {"Erstelle Ordner...neu"}, {}},
      {"one level only",
       {},
       "CreateFolder {|<root>\\game|a\\b|}",
       3,
       {"Erstelle Ordner...a\\b"},
       {}},
      {"the parent alone", {}, "CreateFolder {|<root>\\game|}", 0, {}, {}},
  });
}

TEST_F(FileCommands, RemoveFolder) {
  Check({
      {"the one of the first line; the second is shown",
       {{"game/leer/", ""}, {"temp/data/", ""}},
       "RemoveFolder {|<root>\\game\\leer|data|}",
       0,
       {"L\xF6sche Ordner...data"},
       {{"game/leer/", kGone}}},
      {"a further removal fails",
       {{"game/leer/", ""}},
       "RemoveFolder {|<root>\\game\\leer|x|y|}",
       4,
       {"L\xF6sche Ordner...x", "L\xF6sche Ordner...y"},
       {{"game/leer/", kGone}}},
      {"below TempDir, not the game directory",
       {{"game/leer/", ""}, {"temp/leer/", ""}},
       "RemoveFolder {|leer|x|}",
       0,
       {"L\xF6sche Ordner...x"},
       {{"temp/leer/", kGone}}},
      {"one that isn't empty",
       {{"start/here/o/.h", ""}},
       "RemoveFolder {|o|x|}",
       3,
       {"L\xF6sche Ordner...x"},
       {}},
      {"a file", {{"start/here/q", ""}}, "RemoveFolder {|q|x|}", 3, {"L\xF6sche Ordner...x"}, {}},
      {"the first line alone",
       {{"game/leer/", ""}},
       "RemoveFolder {|<root>\\game\\leer|}",
       0,
       {},
       {}},
  });
}

TEST_F(FileCommands, WriteProtectedFilesStay) {
  struct Case {
    const char* script;
    std::size_t stopsAt;
  };
  const std::vector<Case> cases = {
      {"Copy {|data|q.txt|}", 3},
      {"Move {|data|q.txt|}", 3},
      {R"(Delete {|<root>\game\data\q.txt|})", 2},
      {"AddLine {|data\\q.txt|alt|x|}", 0},
      {"ReplaceLine {|data\\q.txt|alt|x|}", 0},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.script);
    LayOut({{"start/here/q.txt", "neu"}, {"game/data/q.txt", "alt"}});
    Protect("game/data/q.txt");
    const Tree before = Snapshot();
    EXPECT_EQ(Run(testCase.script), testCase.stopsAt);
    ExpectTree(before);
  }
  // A move of one copies it, and stops at the delete.
  LayOut({{"start/here/q.txt", "neu"}});
  Protect("start/here/q.txt");
  EXPECT_EQ(Run("Move {|data|q.txt|}"), 3U);
  EXPECT_EQ(Folder.Read("start/here/q.txt"), "neu");
  EXPECT_EQ(Folder.Read("game/data/q.txt"), "neu");
}

TEST_F(FileCommands, ShellExecute) {
  const std::string game = Session.SAInstallDir;
  struct Case {
    const char* lines;
    std::string file;  // of the last line
    std::string folder;
  };
  const std::vector<Case> cases = {
      {"http://x/y", "http://x/y", ""},
      {"liesmich.txt", "liesmich.txt", ""},
      {"data\\liesmich.txt", "data\\liesmich.txt", ""},
      {R"(\data\\liesmich.txt)", game + "\\data\\liesmich.txt", game + "\\data\\"},
      {"c:\\x\\y.exe -z", "c:\\x\\y.exe -z", "c:\\x\\"},
      {"c:\\", "c:\\", "c:\\"},
      {"c:/x/y.exe", "c:/x/y.exe", ""},
      {"c:", "c:", ""},
      {"cd:\\x", "cd:\\x", ""},
      {"x|http://x/y", game + "\\http://x/y", game + "\\"},
      {"x|liesmich.txt", game + "\\liesmich.txt", game + "\\"},
      {"x|\\liesmich.txt", game + "\\liesmich.txt", game + "\\"},
      {R"(x|c:\\x\y.exe)", R"(c:\\x\y.exe)", R"(c:\\x\)"},
      {"x|y|cd:\\x", "cd:\\x", ""},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.lines);
    EXPECT_EQ(Run("ShellExecute {|" + std::string(testCase.lines)), 0U);
    ASSERT_FALSE(Opener.Opened.empty());
    EXPECT_EQ(Opener.Opened.back(), std::pair(testCase.file, testCase.folder));
  }
  EXPECT_TRUE(Host.Statuses.empty());
}

TEST_F(FileCommands, LineCommands) {
  const Tree before = {{"game/data/t.txt", "a\r\nb\r\na\r\n"}, {"start/here/t.txt", "a\r\n"}};
  const auto changed = [](const char* content) {
    return std::map<std::string, std::optional<std::string>>{{"game/data/t.txt", content}};
  };
  const std::string add = "F\xFCge Zeile hinzu...";
  const std::string remove = "L\xF6sche Zeile...";
  Check({
      {"texts go below each other in the script's order",
       before,
       "AddLine {|data\\T.TXT|a|1|\t;2|  # none|\t 3|}",
       0,
       {add + "t.txt", add + "t.txt", add + "t.txt"},
       changed("a\r\n1\r\n;2\r\n 3\r\nb\r\na\r\n")},
      {"a text with pattern signs is found as the next anchor",
       before,
       "AddLine {|\\data\\t.txt|A|[a-c]*?|2|}",
       0,
       {add + "t.txt", add + "t.txt"},
       changed("a\r\n[a-c]*?\r\n2\r\nb\r\na\r\n")},
      {"texts that find no anchor go to the end",
       before,
       "AddLine {|data\\t.txt|x|1|2|}",
       0,
       {add + "t.txt", add + "t.txt"},
       changed("a\r\nb\r\na\r\n1\r\n2\r\n")},
      {"an anchor of a tab alone: to the end",
       before,
       "AddLine {|data\\t.txt|\t|1|}",
       0,
       {add + "t.txt"},
       changed("a\r\nb\r\na\r\n1")},
      {"each further line removes the next match",
       before,
       "RemoveLine {|data\\t.txt|A|x|y|z|}",
       0,
       {remove + "t.txt", remove + "t.txt", remove + "t.txt"},
       changed("b\r\n")},
      {"two lines of RemoveLine remove nothing", before, "RemoveLine {|data\\t.txt|a|}", 0, {}, {}},
      {"ReplaceLine keeps its pattern and says nothing",
       before,
       "ReplaceLine {|data\\t.txt|a|1|2|}",
       0,
       {},
       changed("1\r\nb\r\n2\r\n")},
      {"a file that is missing loses its lines, and the script goes on",
       before,
       "AddLine {|t.txt|a|1|}|RemoveLine {|t.txt|a|x|}|ReplaceLine {|t.txt|a|x|}|"
       "ReplaceLine {|data\\t.txt|b|x|}",
       0,
       {add, remove},
       changed("a\r\nx\r\na\r\n")},
      {"a pattern that is malformed is no failure of the script",
       before,
       "AddLine {|data\\t.txt|[a|1|2|}|RemoveLine {|data\\t.txt|[|x|}",
       0,
       {add + "t.txt", add + "t.txt", remove + "t.txt"},
       changed("a\r\nb\r\na\r\n2\r\n")},
  });
}

TEST_F(FileCommands, ResolvePath) {
  struct Case {
    const char* path;
    const char* resolved;
  };
  const std::vector<Case> cases = {
      {"x.txt", "Z:\\Spiel\\x.txt"},
      {"data\\x.txt", R"(Z:\Spiel\data\x.txt)"},
      {"\\data\\x.txt", R"(Z:\Spiel\data\x.txt)"},
      {"data\\\\x.txt", R"(Z:\Spiel\data\x.txt)"},
      {"\\\\x", R"(Z:\Spiel\\x)"},
      {"", "Z:\\Spiel\\"},
      {"c:x", "Z:\\Spiel\\c:x"},
      {"c:/x", "Z:\\Spiel\\c:/x"},
      {"http://x", "Z:\\Spiel\\http://x"},
      {"c:", "c:"},
      {"C:\\x\\", "C:\\x\\"},
      {R"(c:\\x\\y)", R"(c:\\x\\y)"},
      {"data\\ab:\\x", "data\\ab:\\x"},
      {"\\c:", "\\c:"},
      {":", ":"},
  };
  for (const Case& testCase : cases) {
    EXPECT_EQ(basTextEdit::ResolvePath(testCase.path, "Z:\\Spiel"), testCase.resolved);
  }
  EXPECT_EQ(basTextEdit::ResolvePath("\\x", "Z:\\"), "Z:\\\\x");
  EXPECT_EQ(basTextEdit::ResolvePath("x", "Z:\\"), "Z:\\x");
}

}  // namespace
