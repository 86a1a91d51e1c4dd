#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pack/Catalogue.h"
#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/PackFile.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

namespace {

constexpr int kRounds = 1000;
constexpr double kShare = 0.01;

/// Works in "sandbox\", beside which lies a file that nothing may touch.
class Damage : public testing::Test {
 protected:
  Damage() { folder.Write("beside.dff", "untouched"); }
  void TearDown() override {
    EXPECT_EQ(folder.Read("beside.dff"), "untouched");
    EXPECT_EQ(folder.List(), (std::vector<std::string>{"beside.dff", "sandbox"}));
  }

  static void Try(const std::function<void()>& step) {
    try {
      step();
    } catch (const Failure&) {
      // What damage is allowed to lead to.
    }
  }

  TempFolder folder;
  FileSystem files;
  std::mt19937 random{60};  // the same damage every time. NOLINT(cert-msc32-c,cert-msc51-cpp)
};

TEST_F(Damage, ArchivesAreReadAndEditedWithinTheirBounds) {
  // One with a full directory, so that entries move, and one with names that lead elsewhere.
  std::vector<RawArchive::Entry> named = {{"..\\beside.dff", "1"}, {"beside.dff", "2"}, {"x", "3"}};
  const std::vector<std::string> archives = {
      RawArchive::Make(RawArchive::Numbered(63)).substr(0, 12000), RawArchive::Make(named, 2)};
  folder.Write("sandbox/new.dff", RawArchive::Noise(3000, 61));
  for (int round = 0; round < kRounds; ++round) {
    // The directory alone, or all of it, suffers.
    std::string bytes = archives[random() % archives.size()];
    const std::size_t directory = round % 2 == 0 ? bytes.size() : std::size_t{300};
    bytes =
        RawArchive::Damaged(bytes.substr(0, directory), kShare, random) + bytes.substr(directory);
    if (random() % 4 != 0) bytes.replace(0, 4, "VER2");
    folder.Write("sandbox/a.img", bytes);
    folder.Write("sandbox/out", "");

    clsIMGtool tool(files);
    Try([&] { tool.Load(folder.Dos("sandbox\\a.img")); });
    EXPECT_LE(tool.Entries().size(), bytes.size() / 32);
    for (const char* name : {"e1", "x", "..\\beside.dff", "e60"}) {
      Try([&] { (void)tool.ExistsInIMG(name); });
      Try([&] { tool.Export(name, folder.Dos("sandbox\\out")); });
      EXPECT_LE(std::filesystem::file_size(folder.At("sandbox/out")), bytes.size());
    }
    const std::vector<std::function<void()>> edits = {
        [&] { tool.AddFile(folder.Dos("sandbox\\new.dff")); }, [&] { tool.RemoveFile("E2"); },
        [&] { tool.RebuildIMG(""); }, [&] { tool.Load(""); }};
    for (int i = 0; i < 4; ++i) Try(edits[random() % edits.size()]);
    EXPECT_LE(std::filesystem::file_size(folder.At("sandbox/a.img")), 65 * bytes.size() + 100000);
    std::filesystem::remove(folder.At("sandbox/a.img.tmp"));
  }
  EXPECT_EQ(folder.Read("sandbox/new.dff"), RawArchive::Noise(3000, 61));
}

TEST_F(Damage, PacksOpenWithoutAFailureTowardsTheCaller) {
  std::string index = "[Info]\r\nTitle=t\r\nHTML=<b><nl>\r\nHTMLHeight=5\r\n";
  for (const char* const section : {"Mod1", "Mod2", "Typ1", "Typ2"})
    index += "[" + std::string(section) + "]\r\nTypeID=1\r\nName=n\r\nReadme=a<nl>b\r\n";
  folder.MakeFolder("sandbox/temp");
  WritePack(folder, "sandbox/a.kvpk", index);
  const std::string whole = folder.Read("sandbox/a.kvpk");
  clsIMGtool pack(files);
  int complete = 0;
  for (int round = 0; round < kRounds; ++round) {
    // The head and the index alone, or all of it.
    const std::size_t keep = round % 2 == 0 ? 0 : whole.size() - 2048 - random() % 64;
    folder.Write("sandbox/a.kvpk",
                 whole.substr(0, keep) + RawArchive::Damaged(whole.substr(keep), kShare, random));
    const PackOpening outcome =
        OpenKELVOFile(files, pack, folder.Dos("sandbox\\temp"), folder.Dos("sandbox\\a.kvpk"));
    complete += outcome.isArchive && !outcome.indexMessage && !outcome.failure ? 1 : 0;
    EXPECT_LE(outcome.catalogue.Mods.size(), 3U);
    EXPECT_LE(outcome.catalogue.ModTypes.size(), 3U);
  }
  EXPECT_GT(complete, kRounds / 20);
}

}  // namespace
