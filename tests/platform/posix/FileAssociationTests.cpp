#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/FileAssociation.h"
#include "platform/FileSystem.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kPackage = "data/mime/packages/kelvo.xml";
constexpr const char* kEntry = "data/applications/kelvo.desktop";

// A user's home of its own, with tools in PATH that report into pipes: whoever reads one waits
// until its tool has been.
class Association : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const tool : kTools) {
      const std::string pipe = folder_.At(std::string(tool) + ".pipe").string();
      ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
      const std::string file = std::string("bin/") + tool;
      folder_.Write(file, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + pipe + "'\n");
      ASSERT_EQ(chmod(folder_.At(file).c_str(), 0755), 0);
    }
  }

  [[nodiscard]] FileAssociation::Description Describe(const std::string& program) const {
    return {".kvpk", "kvpkfile", "moddock mod-pack", folder_.Dos(program), "KELVO", "PNG"};
  }
  void Register(const std::string& program, const FileSystem& files = FileSystem()) const {
    FileAssociation::Register(files, Describe(program));
  }
  // What each tool was called with.
  [[nodiscard]] std::string Reports() const {
    std::string all;
    for (const char* const tool : kTools) all += folder_.Read(std::string(tool) + ".pipe");
    return all;
  }
  // The value of a key of the desktop entry.
  [[nodiscard]] std::string Value(const std::string& key) const {
    const std::string entry = folder_.Read(kEntry);
    const std::size_t start = entry.find("\n" + key + "=");
    if (start == std::string::npos) return "(missing)";
    const std::size_t from = start + key.size() + 2;
    return entry.substr(from, entry.find('\n', from) - from);
  }

  static constexpr std::array<const char*, 2> kTools = {"update-mime-database",
                                                        "update-desktop-database"};
  TempFolder folder_;
  EnvironmentVariable data_{"XDG_DATA_HOME", folder_.At("data").string()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", folder_.At("config").string()};
  EnvironmentVariable home_{"HOME", folder_.At("home").string()};
};

TEST_F(Association, IsWrittenWholeAndTheToolsAreTold) {
  const EnvironmentVariable path("PATH", folder_.At("bin").string() + ":/usr/bin:/bin");
  Register("bin/kelvo");
  EXPECT_EQ(Reports(), folder_.At("data/mime").string() + "\n" +
                           folder_.At("data/applications").string() + "\n");
  EXPECT_EQ(folder_.Read(kPackage), R"(<?xml version="1.0" encoding="UTF-8"?>
<mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
  <mime-type type="application/x-kvpkfile">
    <comment>moddock mod-pack</comment>
    <glob pattern="*.kvpk"/>
  </mime-type>
</mime-info>
)");
  const std::string program = folder_.At("bin/kelvo").string();
  EXPECT_EQ(folder_.Read(kEntry),
            "[Desktop Entry]\nType=Application\nName=KELVO\n"
            "Comment=moddock mod-pack\nExec=\"" +
                program + "\" %f\nTryExec=" + program +
                "\nIcon=kelvo\nTerminal=false\nNoDisplay=true\n"
                "MimeType=application/x-kvpkfile;\nStartupWMClass=kelvo\n");
  EXPECT_EQ(folder_.Read("data/icons/hicolor/128x128/apps/kelvo.png"), "PNG");
  EXPECT_EQ(folder_.Read("data/icons/hicolor/128x128/mimetypes/application-x-kvpkfile.png"), "PNG");
}

TEST_F(Association, OddProgramPathsAreEscaped) {
  const EnvironmentVariable path("PATH", folder_.At("none").string());
  const std::string shell = R"(/bin/sh -c "exec \\"\\$0\\" \\"\\$@\\"" )";
  struct Case {
    const char* native;
    const char* dos;
    std::string runner;
    const char* inExec;
  };
  const std::vector<Case> cases = {
      {"my games/kelvo", "my games\\kelvo", "", "my games/kelvo"},
      {"L\u00F6schen/kelvo", "L\xF6schen\\kelvo", "", "L\u00F6schen/kelvo"},
      {"$HOME `x`/kelvo", "$HOME `x`\\kelvo", "", R"(\\$HOME \\`x\\`/kelvo)"},
      {"100%f/kelvo", "100%f\\kelvo", shell, "100%%f/kelvo"},
      {"a=b/kelvo", "a=b\\kelvo", shell, "a=b/kelvo"}};
  for (const Case& entry : cases) {
    folder_.Write(entry.native, "");
    Register(entry.dos);
    const std::string before = folder_.Native().string() + "/";
    EXPECT_EQ(Value("Exec"), entry.runner + "\"" + before + entry.inExec + "\" %f");
    EXPECT_EQ(Value("TryExec"), before + entry.native);
  }
}

TEST_F(Association, OnlyWhatDiffersIsWritten) {
  const EnvironmentVariable path("PATH", folder_.At("none").string());
  const FileSystem readOnly({.winePrefix = {}, .readOnly = true});
  Register("kelvo");
  EXPECT_NO_THROW(Register("kelvo", readOnly));
  EXPECT_ANY_THROW(Register("moved/kelvo", readOnly));

  folder_.Write("data/applications/other.desktop", "another's");
  folder_.Write(kPackage, "damaged");
  const auto time = fs::last_write_time(folder_.At(kEntry)) - std::chrono::hours(1);
  fs::last_write_time(folder_.At(kEntry), time);
  Register("kelvo");
  EXPECT_NE(folder_.Read(kPackage), "damaged");
  EXPECT_EQ(fs::last_write_time(folder_.At(kEntry)), time);
  EXPECT_EQ(folder_.Read("data/applications/other.desktop"), "another's");
}

TEST_F(Association, BecomesTheDefaultUnlessTheUserHasOne) {
  const EnvironmentVariable path("PATH", folder_.At("none").string());
  const std::string head = "[Default Applications]\n";
  const std::string ours = "application/x-kvpkfile=kelvo.desktop\n";
  const std::string other = "application/x-kvpkfile=other.desktop\n";
  const std::string text = "text/plain=editor.desktop\n";
  const std::string added = "[Added Associations]\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", head + ours},
      {head + text, head + ours + text},
      {head + text + other, head + text + other},
      {head + ours, head + ours},
      {added + other + head + text, added + other + head + ours + text},
      {head + text + added + other, head + ours + text + added + other},
      {added + other, added + other + head + ours}};
  for (const auto& [before, after] : cases) {
    folder_.Write("config/mimeapps.list", before);
    Register("kelvo");
    EXPECT_EQ(folder_.Read("config/mimeapps.list"), after);
  }
  fs::remove_all(folder_.At("config"));
  Register("kelvo");
  EXPECT_EQ(folder_.Read("config/mimeapps.list"), head + ours);
}

TEST_F(Association, TheUsualPlaceServesWithoutAnAbsoluteOne) {
  const EnvironmentVariable path("PATH", folder_.At("none").string());
  for (const char* const value : {"", "relative"}) {
    const EnvironmentVariable data("XDG_DATA_HOME", value);
    const EnvironmentVariable config("XDG_CONFIG_HOME", value);
    fs::remove_all(folder_.At("home"));
    Register("kelvo");
    EXPECT_NE(folder_.Read("home/.local/share/applications/kelvo.desktop"), "(missing)");
    EXPECT_NE(folder_.Read("home/.config/mimeapps.list"), "(missing)");
    const EnvironmentVariable home("HOME", "");
    EXPECT_NO_THROW(Register("moved/kelvo"));
  }
  EXPECT_FALSE(fs::exists("relative"));
}

}  // namespace
