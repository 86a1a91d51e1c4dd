#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Registry.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Registry::Root;

constexpr std::string_view kKey = R"(SOFTWARE\Rockstar Games\GTA San Andreas\Installation)";
constexpr std::string_view kPlain =
    R"([Software\\Rockstar Games\\GTA San Andreas\\Installation] 1700000000)"
    "\n#time=1da1d0b2a7c6e80\n";
constexpr std::string_view kOld =
    R"([Software\\Wow6432Node\\Rockstar Games\\GTA San Andreas\\Installation] 1700000000)"
    "\n";
constexpr std::string_view kOther = "\n[Software\\\\Other] 1\n";

class WineRegistry : public testing::Test {
 protected:
  // Makes a prefix with a drive C and this registry.
  [[nodiscard]] fs::path MakePrefix(const std::string& below, std::string_view lines) const {
    folder_.Write(below + "/system.reg", "WINE REGISTRY Version 2\n\n" + std::string(lines));
    folder_.MakeFolder(below + "/drive_c");
    folder_.MakeFolder(below + "/dosdevices");
    const fs::path link = folder_.At(below + "/dosdevices/c:");
    if (!fs::is_symlink(link)) fs::create_symlink("../drive_c", link);
    return folder_.At(below);
  }
  [[nodiscard]] std::string Read(std::string_view lines, std::string_view value = "ExePath") const {
    return Registry::ReadValue({{MakePrefix("p", lines)}}, Root::kLocalMachine, kKey, value);
  }

  TempFolder folder_;
};

TEST_F(WineRegistry, TextsComeOutOfTheirEscapes) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {R"("ExePath"="plain")", "plain"},
      {R"("exepath"="a\\b\"c\"")", R"(a\b"c")"},
      {R"("ExePath"=str(2):"%X%\\a")", "%X%\\a"},
      {R"("ExePath"="\x20acz\xc4\xe4z\x41")", "\x80z\xC4\xE4zA"},
      {R"("ExePath"="\344\n\r\tx")", "\xE4\n\r\tx"},
      {R"("ExePath"="cut\0here")", "cut"},
      {R"("Other"="x")"
       "\n"
       R"("ExePath"="second")",
       "second"},
      {R"("ExePath"="\x0416")", "{u416}"},
      {R"("ExePath"="no end)", ""},
      {R"("ExePath"=dword:00000001)", ""},
      {R"("ExePath"=str(7):"a\0b")", ""},
      {R"("ExePath")", ""},
      {"", ""}};
  for (const auto& [line, text] : cases) {
    EXPECT_EQ(Read(std::string(kPlain) + line + "\n"), text) << line;
    EXPECT_EQ(Read(std::string(kPlain) + line), text) << line;  // without an end of line
  }
  EXPECT_EQ(Read(std::string(kPlain) + "@=\"default\"\n", ""), "default");
}

TEST_F(WineRegistry, AValueIsSoughtInItsOwnKeyOnly) {
  const std::string value = "\"ExePath\"=\"right\"\n";
  const std::string wrong = "\"ExePath\"=\"wrong\"\n";
  EXPECT_EQ(Read(std::string(kPlain) + std::string(kOther) + wrong), "");
  EXPECT_EQ(Read(std::string(kOther) + wrong + std::string(kPlain) + value), "right");
  EXPECT_EQ(Read(std::string(kOld) + wrong + std::string(kPlain) + value), "right");
  EXPECT_EQ(Read(std::string(kPlain) + std::string(kOld) + value), "right");
  const fs::path prefix = MakePrefix("p", "[Software\\\\Classes\\\\.kvpk] 1\n@=\"kvpkfile\"\n");
  EXPECT_EQ(Registry::ReadValue({{prefix}}, Root::kClassesRoot, ".KVPK", ""), "kvpkfile");
}

TEST_F(WineRegistry, TheNextPrefixIsAskedWhereOneHasNothingUsable) {
  const std::string key(kPlain);
  const std::string good = key + R"("ExePath"="C:\\x")";
  const Registry::Source source{
      {folder_.At("missing"), MakePrefix("a", key), MakePrefix("b", key + R"("ExePath"="D:\\x")"),
       MakePrefix("c", key + R"("ExePath"=")" + std::string(1024, 'x') + "\""),
       MakePrefix("d", good), MakePrefix("e", good)}};
  EXPECT_EQ(Registry::ReadValue(source, Root::kLocalMachine, kKey, "ExePath"),
            folder_.Dos(R"(d\drive_c\x)"));
  EXPECT_EQ(Registry::ReadValue({}, Root::kLocalMachine, kKey, "ExePath"), "");
}

TEST_F(WineRegistry, TheUsualPrefixesAreThoseThatExist) {
  const EnvironmentVariable home("HOME", folder_.At("home").string());
  const EnvironmentVariable named("WINEPREFIX", folder_.At("home/.wine/../.wine").string());
  const fs::path wine = MakePrefix("home/.wine", "");
  const fs::path steam = MakePrefix("home/.local/share/Steam/steamapps/compatdata/12120/pfx", "");
  folder_.MakeFolder("home/.steam");
  fs::create_symlink("../.local/share/Steam", folder_.At("home/.steam/root"));
  EXPECT_EQ(Registry::Source::FromEnvironment().prefixes, (std::vector<fs::path>{wine, steam}));
}

TEST_F(WineRegistry, EveryLibraryOfSteamIsLookedInto) {
  const EnvironmentVariable home("HOME", folder_.At("home").string());
  const EnvironmentVariable named("WINEPREFIX", "");
  const std::string steam = "home/.local/share/Steam/";
  const fs::path inNew = MakePrefix("new \"l\u00E4\"/steamapps/compatdata/12120/pfx", "");
  const fs::path inOld = MakePrefix("old/steamapps/compatdata/12120/pfx", "");
  const std::string folder = folder_.Native().string();
  folder_.Write(steam + "steamapps/libraryfolders.vdf",
                "\"libraryfolders\"\n{\n\t// \"path\" \"/none\"\n\t\"1\"\n\t{\n\t\t\"path\"\t\t\"" +
                    folder +
                    "/new "
                    "\\\"l\u00E4\\\"\"\n\t\t\"label\"\t\t\"\"\n\t\t\"apps\"\n\t\t{"
                    "\n\t\t\t\"12120\"\t\t\"46\"\n\t\t}\n\t}\n}\n");
  folder_.Write(steam + "config/libraryfolders.vdf",
                "\"LibraryFolders\"{\"ContentStatsID\" \"-7\" \"1\" \"" + folder + "/old\" \"2");
  folder_.Write("old/steamapps/appmanifest_12120.acf",
                "\"AppState\"\n{\n\t\"appid\"\t\"12120\"\n\t\"installdir\"\t\"The Game\"\n}\n");
  folder_.MakeFolder("old/steamapps/common/The Game");
  const Registry::Source source = Registry::Source::FromEnvironment();
  EXPECT_EQ(source.prefixes, (std::vector<fs::path>{inNew, inOld}));
  EXPECT_EQ(source.steamGames, std::vector<fs::path>{folder_.At("old/steamapps/common/The Game")});
}

}  // namespace
