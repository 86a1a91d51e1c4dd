#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

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
  struct Case {
    const char* line;
    const char* text;
  };
  const std::vector<Case> cases = {
      {R"("ExePath"="plain")", "plain"},
      {R"("exepath"="a\\b\"c\"")", R"(a\b"c")"},
      {R"("ExePath"=str(2):"%X%\\a")", "%X%\\a"},
      {R"("ExePath"="a\x20acb\xc4\xe4z\x41")",
       "a\x80"
       "b\xC4\xE4zA"},
      {R"("ExePath"="\344\n\r\tx")", "\xE4\n\r\tx"},
      {R"("ExePath"="cut\0here")", "cut"},
      {"\"ExePath\"=\"\u00C4\"", "\xC4"},
      {R"("\x45xePath"="name")", "name"},
      {R"("Other"="x")"
       "\n"
       R"("ExePath"="second")",
       "second"},
      {R"("ExePath"="\x0416")", ""},        // a letter that the code page lacks
      {R"("ExePath"="\xd83d\xde00")", ""},  // a pair of units
      {"\"ExePath\"=\"\xFF\"", ""},
      {R"("ExePath"="no end)", ""},
      {R"("ExePath"="no end\)", ""},
      {R"("ExePath"=dword:00000001)", ""},
      {R"("ExePath"=hex(2):41,00,00,00)", ""},
      {R"("ExePath"=str(7):"a\0b")", ""},
      {R"("ExePath")", ""},
      {R"("ExePath)", ""},
      {"\"", ""},
      {"[", ""},
      {"", ""}};
  for (const auto& [line, text] : cases) {
    EXPECT_EQ(Read(std::string(kPlain) + line + "\n"), text) << line;
    EXPECT_EQ(Read(std::string(kPlain) + line), text) << line;  // without an end of line
  }
  EXPECT_EQ(Read(std::string(kPlain) + "@=\"default\"\n", ""), "default");
  EXPECT_EQ(Read(std::string(kPlain) + "@=\"default\"\n"), "");
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

TEST_F(WineRegistry, PathsGoThroughThePrefixesOwnDrives) {
  const std::string drive = folder_.Dos(R"(p\drive_c)");
  const std::string key(kPlain);
  EXPECT_EQ(Read(key + R"("ExePath"="C:\\Games\\gta_sa.exe")"), drive + R"(\Games\gta_sa.exe)");
  EXPECT_EQ(Read(key + R"("ExePath"="\"c:\\Games\\gta_sa.exe\"")"),
            '"' + drive + R"(\Games\gta_sa.exe")");
  EXPECT_EQ(Read(key + R"("ExePath"="D:\\gta_sa.exe")"), "");
  fs::create_symlink("/", folder_.At("p/dosdevices/z:"));
  EXPECT_EQ(Read(key + R"("ExePath"="z:\\home\\gta_sa.exe")"), R"(Z:\home\gta_sa.exe)");
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
  const std::string longest(1023, 'x');
  EXPECT_EQ(Read(key + R"("ExePath"=")" + longest + "\""), longest);
}

TEST_F(WineRegistry, JunkNeitherHidesNorCrashes) {
  std::string junk(300000, '\\');
  junk += "\n]]\n\"\n=\n@\n[\n[Software\\\n" + std::string(1000, '\0') + "\xFF\xFE\n\r\n";
  EXPECT_EQ(Read(junk + std::string(kPlain) + "\"ExePath\"=\"x\"\r\n"), "x");
  fs::remove(folder_.At("p/system.reg"));
  ASSERT_EQ(mkfifo(folder_.At("p/system.reg").c_str(), 0600), 0);
  EXPECT_EQ(Registry::ReadValue({{folder_.At("p")}}, Root::kLocalMachine, kKey, "ExePath"), "");
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

}  // namespace
