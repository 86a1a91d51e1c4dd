#include <QStringList>

#include "support/EnvironmentVariable.h"
#include "ui/Program.h"
#include "ui/TitleLabel.h"
#include "ui/WindowFixture.h"

namespace {

/// The program in a private folder, with a desktop of its own.
class ProgramStart : public testing::Test {
 protected:
  void Main(const std::string& commandLine = "") {
    program =
        std::make_unique<Program>(Files, Program::Start{.programPath = Folder.Dos("program\\kelvo"),
                                                        .commandLine = commandLine,
                                                        .registry = {},
                                                        .soundLibrary = Library,
                                                        .resources = {{"music.mod", "M.K."}},
                                                        .messages = {}});
    program->Main();
  }

  TempFolder Folder;
  const EnvironmentVariable data{"XDG_DATA_HOME", Folder.At("data").string()};
  const EnvironmentVariable config{"XDG_CONFIG_HOME", Folder.At("config").string()};
  FileSystem Files;
  RecordingSounds Library;
  std::unique_ptr<Program> program;
};

TEST_F(ProgramStart, WritesWhatIsMissingAndRegistersPacks) {
  Main();
  ASSERT_NE(program->Window(), nullptr);
  EXPECT_TRUE(program->Window()->isVisible()) << "without a folder that can be written too";

  Folder.MakeFolder("program");
  WritePack(Folder, "program/p.kvpk", "[Info]\r\nTitle=Probe\r\n");
  Main();
  EXPECT_EQ(program->Window()->lblTitel->Caption(), "Probe");
  EXPECT_EQ(Folder.Read("program/music.mod"), "M.K.");
  EXPECT_FALSE(Files.FindFirst(Folder.Dos("data\\applications\\*.desktop"), kFindFiles).empty());

  Folder.Write("program/music.mod", "mein eigenes");
  Main();
  EXPECT_EQ(Folder.Read("program/music.mod"), "mein eigenes");
}

TEST(CommandLine, IsOneTextWhateverTheDesktopHandsOver) {
  const FileSystem files;
  for (const auto& [arguments, line] : std::vector<std::pair<QStringList, std::string>>{
           {{}, ""},
           {{"a.kvpk", "b.kvpk"}, "a.kvpk b.kvpk"},
           {{"/mods/Für Ole 100%.kvpk"}, "/mods/F\xFCr Ole 100%.kvpk"},
           {{"file:///mods/F%C3%BCr%20Ole%20100%25.kvpk"}, "/mods/F\xFCr Ole 100%.kvpk"},
           {{"http://example.net/a.kvpk"}, "http://example.net/a.kvpk"}}) {
    EXPECT_EQ(Program::CommandLine(files, QStringList("kelvo") + arguments), line);
  }
  const TempFolder folder;
  for (const char* const name : {"Für Ole, 100% 'gut'.kvpk", "Sag \"ja\".kvpk"}) {
    folder.Write(name, "x");
    const std::string line =
        Program::CommandLine(files, {"kelvo", QString::fromStdString(folder.At(name).string())});
    EXPECT_EQ(files.ToNative(basMain::FindPack(files, line, folder.Dos())), folder.At(name));
  }
}

}  // namespace
