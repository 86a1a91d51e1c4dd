#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "install/InstallSession.h"
#include "install/basScript.h"
#include "pack/ArchiveWriter.h"
#include "pack/ZlibStream.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "support/RecordingHost.h"
#include "support/TempFolder.h"

/// Paths below a private folder and the content of their files; a folder's path ends in a slash.
using Tree = std::map<std::string, std::string>;

/// A session on a private folder: `game/` is the game directory, `temp/` is `TempDir`,
/// `start/here/` the current directory, `pack.kvpk` the open pack.
class InstallTest : public testing::Test {
 public:
  InstallTest(InstallTest&&) = delete;
  InstallTest(const InstallTest&) = delete;
  InstallTest& operator=(InstallTest&&) = delete;
  InstallTest& operator=(const InstallTest&) = delete;

 protected:
  InstallTest() : previousFolder_(std::filesystem::current_path()) { LayOut({}); }
  ~InstallTest() override { std::filesystem::current_path(previousFolder_); }

  /// Empties the private folder and puts the folders and `files` there.
  void LayOut(const Tree& files) {
    std::filesystem::current_path(previousFolder_);
    for (const std::string& name : Folder.List()) std::filesystem::remove_all(Folder.At(name));
    for (const char* folder : {"game/data", "temp", "start/here"}) Folder.MakeFolder(folder);
    for (const auto& [path, content] : files) {
      path.ends_with('/') ? Folder.MakeFolder(path) : Folder.Write(path, content);
    }
    std::filesystem::current_path(Folder.At("start/here"));
  }

  /// Writes and opens a pack with these payloads.
  void OpenPack(const std::vector<std::pair<std::string, std::string>>& payloads) {
    ArchiveWriter writer;
    for (const auto& [name, content] : payloads) writer.AddCompressed(name, content);
    writer.Write(Files, Folder.Dos("pack.kvpk"));
    Session.ModPackIMG.Load(Folder.Dos("pack.kvpk"));
  }

  /// A script, written with a bar between its lines and with `<root>` for the private folder.
  [[nodiscard]] std::string Lines(std::string_view script) const {
    return Text::Replace(Text::Replace(script, "|", "\r\n"), "<root>", Folder.Dos());
  }

  /// Runs a script, written as for `Lines`; 0, or the line at which a failure stopped it.
  std::size_t Run(std::string_view script) {
    Failures = basScript::RunInstallScript(Session, Lines(script));
    const bool stopped = !Failures.empty() && Failures.back().endedScript;
    EXPECT_TRUE(!stopped || !Failures.back().cause.empty());
    return stopped ? Failures.back().lineNumber : 0;
  }

  [[nodiscard]] Tree Snapshot() const {
    Tree tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder.Native())) {
      const std::u8string below =
          entry.path().lexically_relative(Folder.Native()).generic_u8string();
      const std::string path(below.begin(), below.end());
      tree[entry.is_directory() ? path + "/" : path] =
          entry.is_directory() ? std::string() : Folder.Read(path);
    }
    return tree;
  }

  /// Names each file and folder that isn't as expected.
  void ExpectTree(const Tree& expected) const {
    const Tree actual = Snapshot();
    Tree all = expected;
    all.insert(actual.begin(), actual.end());
    const auto at = [](const Tree& tree, const std::string& path) {
      const auto found = tree.find(path);
      return found == tree.end() ? "(nothing)" : found->second;
    };
    for (const auto& [path, content] : all) EXPECT_EQ(at(actual, path), at(expected, path)) << path;
  }

  /// What the script opened, the game directory shortened to `<game>`.
  std::vector<std::string> TakeOpened() {
    std::vector<std::string> files;
    for (const auto& [file, folder] : std::exchange(Opener.Opened, {})) {
      files.push_back(Text::Replace(file, Session.SAInstallDir, "<game>"));
    }
    return files;
  }

  std::vector<basScript::LineFailure> Failures;  // of the last run
  TempFolder Folder;
  FileSystem Files;
  RecordingHost Host;
  RecordingOpener Opener;
  InstallSession Session{Files, Host, Opener, Folder.Dos("temp")};

 private:
  void SetUp() override { Session.SAInstallDir = Folder.Dos("game"); }

  std::filesystem::path previousFolder_;
};
