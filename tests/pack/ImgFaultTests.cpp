#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/RawArchive.h"
#include "support/TempFolder.h"

using RawArchive::Entry;
using RawArchive::Noise;
using RawArchive::Numbered;

namespace {

/// Lets an operation on "a.img" fail at its first, second, ... operation on disk.
class ImgFaults : public testing::Test {
 protected:
  using Operation = std::function<void(clsIMGtool&)>;
  using Check = std::function<void(const std::string& when)>;

  void FailEverywhere(const std::string& bytes, const Operation& operation, const Check& check) {
    for (const bool once : {true, false}) {
      bool failed = true;
      int n = 0;
      while (failed && n < 500) {
        folder.Write("a.img", bytes);
        folder.Write("new", newData);
        clsIMGtool tool(files);
        ASSERT_TRUE(tool.Load(folder.Dos("a.img")));
        files.Faults().FailAt(++n, once);
        try {
          operation(tool);
          failed = false;
        } catch (const Failure&) {
        }
        files.Faults().FailAt(0);
        check((failed ? "failed at " : "passed at ") + std::to_string(n));
      }
      EXPECT_FALSE(failed);
      EXPECT_GT(n, 4);
    }
  }

  [[nodiscard]] bool IsReadable(const Entry& entry) {
    clsIMGtool fresh(files);
    if (!fresh.Load(folder.Dos("a.img"))) return false;
    try {
      folder.Write("out", "");
      return fresh.Export(entry.name, folder.Dos("out")) &&
             folder.Read("out") == RawArchive::Filled(entry.data);
    } catch (const Failure&) {
      return false;
    }
  }

  TempFolder folder;
  FileSystem files;
  const std::string newData = Noise(5000, 20);
};

TEST_F(ImgFaults, AddFileLosesNoEntry) {
  const std::string whole = RawArchive::Make(Numbered(5));
  for (const std::size_t cut : {0U, 100U}) {
    std::vector<Entry> old = Numbered(5);
    old.back().data.resize(2048 - cut);
    FailEverywhere(
        whole.substr(0, whole.size() - cut),
        [&](clsIMGtool& tool) { tool.AddFile(folder.Dos("new")); },
        [&](const std::string& when) {
          for (const Entry& entry : old) {
            // An entry cut short by the end of the file is whole only once it has been padded.
            if (cut != 0 && entry.name == "e5" && when.starts_with("failed")) continue;
            EXPECT_TRUE(IsReadable(entry)) << when << ": " << entry.name;
          }
          EXPECT_EQ(folder.Read("a.img").substr(2048, whole.size() - 2048 - cut),
                    whole.substr(2048, whole.size() - 2048 - cut));
          EXPECT_EQ(folder.Read("new"), newData);
          EXPECT_TRUE(when.starts_with("failed") || IsReadable({"new", newData}));
        });
  }
}

TEST_F(ImgFaults, AddFileWithAMoveLosesNoneOfTheOthers) {
  const std::string whole = RawArchive::Make(Numbered(63));
  FailEverywhere(
      whole, [&](clsIMGtool& tool) { tool.AddFile(folder.Dos("new")); },
      [&](const std::string& when) {
        const std::vector<Entry> old = Numbered(63);
        for (std::size_t i = 1; i < old.size(); ++i) EXPECT_TRUE(IsReadable(old[i])) << when;
        // The record of the moved one goes to disk ahead of its data; until that has followed,
        // the data stands in its old place.
        EXPECT_TRUE(IsReadable(old[0]) || folder.Read("a.img").substr(2048, 2048) == old[0].data)
            << when;
        EXPECT_TRUE(when.starts_with("failed") ||
                    (IsReadable(old[0]) && IsReadable({"new", newData})));
      });
}

TEST_F(ImgFaults, RemoveFileTouchesNoData) {
  const std::string whole = RawArchive::Make(Numbered(40));
  FailEverywhere(
      whole, [&](clsIMGtool& tool) { tool.RemoveFile("e20"); },
      [&](const std::string& when) {
        EXPECT_EQ(folder.Read("a.img").substr(2048), whole.substr(2048)) << when;
        for (int i = 0; i < 39; ++i) {
          const Entry entry = Numbered(40)[static_cast<std::size_t>(i)];
          EXPECT_TRUE(entry.name == "e20" || IsReadable(entry)) << when << ": " << entry.name;
        }
      });
}

TEST_F(ImgFaults, RebuildLeavesTheOldOrTheNewArchiveWhole) {
  const std::string before = RawArchive::Make(Numbered(6), 4);
  const std::string after = RawArchive::Make(Numbered(6), 1);
  FailEverywhere(
      before, [&](clsIMGtool& tool) { tool.RebuildIMG(""); },
      [&](const std::string& when) {
        const std::string now = folder.Read("a.img");
        const bool passed = when.starts_with("passed");
        EXPECT_TRUE(now == after || (!passed && now == before)) << when;
        EXPECT_TRUE(!passed || folder.Read("a.img.tmp") == "(missing)");
      });
}

}  // namespace
