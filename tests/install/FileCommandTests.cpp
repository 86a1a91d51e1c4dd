// Copy, Move, Delete, Rename, CreateFolder, RemoveFolder, ShellExecute and the line commands on
// real directories: what they find, what they change, and what the status line says.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "install/InstallFixture.h"
#include "pack/ZlibStream.h"
#include "support/RawArchive.h"

namespace {

using Texts = std::vector<std::string>;

Texts AtBars(std::string_view text) {
  Texts parts;
  for (std::size_t from = 0, bar = 0; from < text.size(); from = bar + 1) {
    bar = std::min(text.find('|', from), text.size());
    parts.emplace_back(text.substr(from, bar - from));
  }
  return parts;
}

/// One run of a script on real directories, and all that it may change. Bars stand between lines,
/// texts and files.
struct Row {
  const char* what;
  std::string before;  // laid out ahead of the run: "path=content", or "path/" for a folder
  const char* script;
  std::size_t stopsAt;   // 1-based line of the failure; 0 for none
  std::string statuses;  // in order
  std::string changes;   // what differs afterwards: as `before`, or "-path" for what is gone
};

class FileCommands : public InstallTest {
 protected:
  void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.what);
      Tree before;
      for (const std::string& file : AtBars(row.before)) Put(file, before);
      LayOut(before);
      OpenPack({{"neu.txt", "NEU"}, {"\xDC.txt", "UE"}, {"beide.txt", "PACK"}, {".h", "PACK"}});
      Host.Statuses.clear();
      Tree expected = Snapshot();
      for (const std::string& file : AtBars(row.changes)) Put(file, expected);
      EXPECT_EQ(Run(row.script), row.stopsAt);
      EXPECT_EQ(Host.Statuses, AtBars(row.statuses));
      ExpectTree(expected);
    }
  }
  static void Put(const std::string& file, Tree& tree) {
    const std::size_t sign = file.find('=');
    if (file.starts_with('-')) {
      EXPECT_EQ(tree.erase(file.substr(1)), 1U) << file;
    } else {
      tree[file.substr(0, sign)] = sign == std::string::npos ? "" : file.substr(sign + 1);
    }
  }
};

TEST_F(FileCommands, CopyAndMove) {
  const std::string unpacked = "Dekomprimieren: neu.txt...100%|";
  // An entry of the pack as it is exported, with its sector fill.
  const std::string stored = RawArchive::Filled(Compressed("NEU"));
  Check({
      {"two pack entries, a closing backslash, an umlaut, a comment between; the temp files go", "",
       "Copy {|\\data\\|neu.txt|;x|  \xDC.txt|}", 0,
       unpacked +
           "Kopiere Datei...neu.txt|Dekomprimieren: \xDC.txt...100%|Kopiere Datei...\xDC.txt",
       "game/data/neu.txt=NEU|game/data/\xC3\x9C.txt=UE"},
      {"what lies in the current directory counts before the pack, and stays",
       "start/here/beide.txt=DISK", "Copy {|data|beide.txt|}", 0, "Kopiere Datei...beide.txt",
       "game/data/beide.txt=DISK"},
      {"absolute target, source with folders, the name as on disk", "start/Q.txt=q",
       R"(Copy {|<root>\\game\\data|..\q.TXT|})", 0, "Kopiere Datei...Q.txt", "game/data/Q.txt=q"},
      {"an existing target is overwritten and keeps its name", "game/data/NEU.TXT=alt und lang",
       "Copy {|DATA|neu.txt|}", 0, unpacked + "Kopiere Datei...neu.txt", "game/data/NEU.TXT=NEU"},
      {"a source isn't sought in the game directory; the script stops", "game/q.txt=q",
       "Copy {|data|q.txt|neu.txt|}|Copy {|data|neu.txt|}", 3, "Kopiere Datei...", ""},
      {"a pack entry in other case isn't found", "", "Copy {|data|NEU.txt|}", 3, "Kopiere Datei...",
       ""},
      {"a target folder isn't made; the temp files stay", "", "Copy {|fehlt|neu.txt|}", 3,
       unpacked + "Kopiere Datei...neu.txt", "temp/neu.txt=NEU|temp/neu.txt.tmp=" + stored},
      {"a hidden source counts before the pack, and has no name for the target", "start/here/.h=h",
       "Copy {|data|.h|}", 3, "Kopiere Datei...", ""},
      {"a source with wildcards", "start/here/q.txt=q", "Copy {|data|*.txt|}", 3,
       "Kopiere Datei...q.txt", ""},
      {"the target alone", "", "Copy {|data|}", 0, "", ""},
      {"a pack entry is moved", "", "Move {|data|neu.txt|}", 0,
       unpacked + "Verschiebe Datei...neu.txt", "game/data/neu.txt=NEU"},
      {"two are moved from disk; the sources go", "start/here/q.txt=q|start/r.txt=r",
       "Move {|data|q.txt|..\\r.txt|}", 0, "Verschiebe Datei...q.txt|Verschiebe Datei...r.txt",
       "game/data/q.txt=q|game/data/r.txt=r|-start/here/q.txt|-start/r.txt"},
      {"without a target folder the source stays", "start/here/q.txt=q", "Move {|fehlt|q.txt|}", 3,
       "Verschiebe Datei...q.txt", ""},
  });
}

TEST_F(FileCommands, DeleteAndRename) {
  const std::string remove = "L\xF6sche Datei...";
  const std::string rename = "Umbenennen der Datei...";
  Check({
      {"as written before TempDir, never the game directory",
       "start/here/q.txt=1|temp/q.txt=2|game/q.txt=3", "Delete {|Q.TXT|}", 0, remove + "q.txt",
       "-start/here/q.txt"},
      {"below TempDir", "temp/q.txt=2|game/q.txt=3|temp/sub/r.txt=4",
       R"(Delete {|q.txt|\sub\\r.txt|})", 0, remove + "q.txt|" + remove + "r.txt",
       "-temp/q.txt|-temp/sub/r.txt"},
      {"a line that fails stops the script", "start/here/q.txt=1", "Delete {|fehlt|q.txt|}", 2,
       remove, ""},
      {"with wildcards all ordinary files, the first in the status line",
       "start/here/b.txt|start/here/A.TXT|start/here/.h.txt|start/here/o.txt/|start/here/a.doc",
       "Delete {|*.txt|}", 0, remove + "A.TXT", "-start/here/b.txt|-start/here/A.TXT"},
      {"absolute", "game/q.txt=3", R"(Delete {|<root>\\game\\q.txt)", 0, remove + "q.txt",
       "-game/q.txt"},

      {"as written; the bare name keeps the folder", "game/data/a.txt=a",
       R"(Rename {|<root>\game\data\A.txt|B.txt|})", 0, rename + "a.txt",
       "-game/data/a.txt|game/data/B.txt=a"},
      {"below TempDir, not the game directory", "temp/a.txt=t|game/a.txt=g",
       "Rename {|a.txt|b.txt|}", 0, rename + "a.txt", "-temp/a.txt|temp/b.txt=t"},
      {"a folder and a hidden file, whose names the status line lacks",
       "start/here/o/|start/here/.h=h|temp/o/", "Rename {|o|p|}|Rename {|.h|h|}", 0,
       rename + "|" + rename, "-start/here/o/|start/here/p/|-start/here/.h|start/here/h=h"},
      {"a further rename fails", "start/here/a.txt=a", "Rename {|a.txt|b.txt|c.txt|}", 4,
       rename + "a.txt|" + rename, "-start/here/a.txt|start/here/b.txt=a"},
      {"onto a name that exists, in whatever case", "start/here/a.txt=a|start/here/B.txt=b",
       "Rename {|a.txt|b.txt|}", 3, rename + "a.txt", ""},
      {"the first line alone", "start/here/a.txt=a", "Rename {|a.txt|}", 0, "", ""},
  });
}

TEST_F(FileCommands, CreateAndRemoveFolder) {
  const std::string make = "Erstelle Ordner...";
  const std::string remove = "L\xF6sche Ordner...";
  Check({
      {"as written, two", "", "CreateFolder {|<root>\\game\\|neu|\xDC|}", 0,
       make + "neu|" + make + "\xDC", "game/neu/|game/\xC3\x9C/"},
      {"below the current directory before TempDir", "start/here/o/|temp/o/",
       "CreateFolder {|O|neu|}", 0, make + "neu", "start/here/o/neu/"},
      {"below TempDir, not the game directory", "temp/o/|game/o/", "CreateFolder {|o|neu|neuer|}",
       0, make + "neu|" + make + "neuer", "temp/o/neu/|temp/o/neuer/"},
      {"one that exists, in whatever case", "", "CreateFolder {|<root>\\game|DATA|neu|}", 3,
       make + "DATA", ""},
      {"the one of the first line; the second is shown", "game/leer/|temp/data/",
       "RemoveFolder {|<root>\\game\\leer|data|}", 0, remove + "data", "-game/leer/"},
      {"a further removal fails", "game/leer/", "RemoveFolder {|<root>\\game\\leer|x|y|}", 4,
       remove + "x|" + remove + "y", "-game/leer/"},
      {"below TempDir, not the game directory", "game/leer/|temp/leer/", "RemoveFolder {|leer|x|}",
       0, remove + "x", "-temp/leer/"},
      {"one that isn't empty", "start/here/o/.h", "RemoveFolder {|o|x|}", 3, remove + "x", ""},
      {"the first line alone", "game/leer/", "RemoveFolder {|<root>\\game\\leer|}", 0, "", ""},
  });
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
      {"data\\liesmich.txt", "data\\liesmich.txt", ""},
      {R"(\data\\liesmich.txt)", game + "\\data\\liesmich.txt", game + "\\data\\"},
      {"c:\\x\\y.exe -z", "c:\\x\\y.exe -z", "c:\\x\\"},
      {"c:/x/y.exe", "c:/x/y.exe", ""},
      {"c:", "c:", ""},
      {"cd:\\x", "cd:\\x", ""},
      {"x|http://x/y", game + "\\http://x/y", game + "\\"},
      {R"(x|c:\\x\y.exe)", R"(c:\\x\y.exe)", R"(c:\\x\)"},
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
  const std::string file = "game/data/t.txt=";
  const std::string before = file + "a\r\nb\r\na\r\n|start/here/t.txt=a\r\n";
  const std::string add = "F\xFCge Zeile hinzu...";
  const std::string remove = "L\xF6sche Zeile...";
  Check({
      {"texts go below each other in the script's order", before,
       "AddLine {|data\\T.TXT|a|1|\t;2|  # none|\t 3|}", 0,
       add + "t.txt|" + add + "t.txt|" + add + "t.txt", file + "a\r\n1\r\n;2\r\n 3\r\nb\r\na\r\n"},
      {"a text with pattern signs is found as the next anchor", before,
       "AddLine {|\\data\\t.txt|A|[a-c]*?|2|}", 0, add + "t.txt|" + add + "t.txt",
       file + "a\r\n[a-c]*?\r\n2\r\nb\r\na\r\n"},
      {"texts that find no anchor go to the end", before, "AddLine {|data\\t.txt|x|1|2|}", 0,
       add + "t.txt|" + add + "t.txt", file + "a\r\nb\r\na\r\n1\r\n2\r\n"},
      {"each further line removes the next match", before, "RemoveLine {|data\\t.txt|A|x|y|z|}", 0,
       remove + "t.txt|" + remove + "t.txt|" + remove + "t.txt", file + "b\r\n"},
      {"two lines of RemoveLine remove nothing", before, "RemoveLine {|data\\t.txt|a|}", 0, "", ""},
      {"ReplaceLine keeps its pattern and says nothing", before,
       "ReplaceLine {|data\\t.txt|a|1|2|}", 0, "", file + "1\r\nb\r\n2\r\n"},
      {"a file that is missing loses its lines, and the script goes on", before,
       "AddLine {|t.txt|a|1|}|RemoveLine {|t.txt|a|x|}|ReplaceLine {|t.txt|a|x|}|"
       "ReplaceLine {|data\\t.txt|b|x|}",
       0, add + "|" + remove, file + "a\r\nx\r\na\r\n"},
      {"a pattern that is malformed is no failure of the script", before,
       "AddLine {|data\\t.txt|[a|1|2|}|RemoveLine {|data\\t.txt|[|x|}", 0,
       add + "t.txt|" + add + "t.txt|" + remove + "t.txt", file + "a\r\nb\r\na\r\n2\r\n"},
  });
}

}  // namespace
