// What the file layer changes on disk, and what it leaves alone when it fails.

#include <cerrno>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class FileChange : public testing::Test {
 protected:
  [[nodiscard]] std::string Dos(const std::string& below) const { return folder_.Dos(below); }
  /// All that can change `path` or a file beside it.
  [[nodiscard]] static std::vector<std::function<void()>> Changes(const FileSystem& files,
                                                                  const std::string& path,
                                                                  const std::string& other) {
    return {[=, &files] { static_cast<void>(files.Create(path)); },
            [=, &files] { files.WriteWhole(path, "x"); },
            [=, &files] { files.ReplaceWhole(path, "x"); },
            [=, &files] { files.Copy(other, path); },
            [=, &files] { files.PutInPlace(other, path); },
            [=, &files] { files.Delete(path); },
            [=, &files] { files.Delete(path.substr(0, path.size() - 3) + "*"); },
            [=, &files] { files.OpenBinary(path).WriteAt(0, "x"); },
            [=, &files] { files.OpenBinary(path).SetSize(0); },
            [=, &files] { files.OpenBinary(path).Reserve(0, 1); },
            [=, &files] { files.OpenBinary(path).CopyFrom(files.OpenForReading(other), 0, 1, 0); }};
  }
  // The number of the failure; -1 if there is none.
  static int NumberOfFailure(const std::function<void()>& action) {
    try {
      action();
    } catch (const Failure& failure) {
      return failure.Number();
    }
    return -1;
  }

  TempFolder folder_;
  FileSystem files_;
};

TEST_F(FileChange, AFileIsReadAndWrittenAtOffsets) {
  File file = files_.OpenBinary(Dos("New.bin"));
  EXPECT_EQ(file.Size(), 0);
  file.WriteAt(4, "abcd");
  file.WriteAt(1, "x");
  EXPECT_EQ(file.ReadAt(0, 8), std::string("\0x\0\0abcd", 8));
  file.Reserve(0, 1 << 20);
  EXPECT_EQ(file.Size(), 8);
  file.SetSize(6);
  char buffer[4] = {};
  EXPECT_EQ(file.ReadSomeAt(4, buffer, 4), 2U);
  EXPECT_EQ(file.ReadSomeAt(6, buffer, 4), 0U);
  EXPECT_THROW(file.ReadAt(4, buffer, 4), Failure);
  constexpr auto kHuge = std::numeric_limits<std::int64_t>::max();
  const std::vector<std::pair<std::int64_t, std::int64_t>> ranges = {
      {-1, 1}, {0, -1}, {0, 7}, {7, 0}, {kHuge, 1}, {1, kHuge}};
  for (const auto& [offset, length] : ranges)
    EXPECT_THROW(static_cast<void>(file.ReadAt(offset, length)), Failure) << offset;
  EXPECT_THROW(file.WriteAt(-1, "x"), Failure);
  file.Close();
  EXPECT_EQ(folder_.Read("New.bin"), std::string("\0x\0\0ab", 6));
}

TEST_F(FileChange, CopyFromTakesTheRangeAndNothingBeyondTheEnd) {
  const std::string large(3000000, 'x');
  folder_.Write("source", "head" + large + "tail");
  const File source = files_.OpenForReading(Dos("source"));
  File target = files_.Create(Dos("target"));
  target.CopyFrom(source, 4, 3000000, 2);
  EXPECT_EQ(target.ReadAt(0, target.Size()), std::string(2, '\0') + large);
  EXPECT_THROW(target.CopyFrom(source, 4, 3000005, 0), Failure);
  EXPECT_EQ(target.Size(), 3000002);
}

TEST_F(FileChange, NewFilesGetTheNameAsWritten) {
  folder_.MakeFolder("Data");
  files_.WriteWhole(Dos("DATA\\\xC4rger.TXT. "), "a");
  EXPECT_EQ(folder_.Read("Data/\u00C4rger.TXT"), "a");
  files_.ReplaceWhole(Dos("data\\\xE4RGER.txt"), "longer");
  files_.WriteWhole(Dos("data\\\xE4RGER.txt"), "b");
  EXPECT_EQ(folder_.List("Data"), Names{"\u00C4rger.TXT"});
  EXPECT_EQ(folder_.Read("Data/\u00C4rger.TXT"), "b");
  for (const char* name : {"a|b", "nul", "...", " ", "x\\", "no\\x", "a*", "a:b", "Data"}) {
    EXPECT_THROW(files_.WriteWhole(Dos(name), "x"), Failure) << name;
    EXPECT_THROW(static_cast<void>(files_.Create(Dos(name))), Failure) << name;
    EXPECT_THROW(files_.Copy(Dos("data\\\xE4rger.txt"), Dos(name)), Failure) << name;
  }
  for (const char* name : {"a<b", "nul", " ", "no\\x", "Data", "DATA\\\xC4rger.txt"})
    EXPECT_THROW(files_.CreateFolder(Dos(name)), Failure) << name;
  EXPECT_EQ(folder_.List(), Names{"Data"});
}

TEST_F(FileChange, AWriteProtectedFileIsLeftAloneByRootToo) {
  folder_.Write("locked.txt", "old");
  folder_.Write("other.txt", "new");
  fs::permissions(folder_.At("locked.txt"), fs::perms::owner_read | fs::perms::group_read);
  const std::string path = Dos("locked.txt");
  for (const auto& change : Changes(files_, path, Dos("other.txt")))
    EXPECT_GT(NumberOfFailure(change), 0);
  EXPECT_EQ(files_.OpenBinary(path).ReadAt(0, 3), "old");
  EXPECT_EQ(folder_.List(), (Names{"locked.txt", "other.txt"}));
}

TEST_F(FileChange, DeleteGoesByNameOrPattern) {
  for (const char* name : {"a.txt", "B.TXT", "c.dat", ".hidden", ".a.txt"}) folder_.Write(name, "");
  folder_.MakeFolder("d.txt");
  files_.Delete(Dos("*.txt"));
  EXPECT_EQ(folder_.List(), (Names{".a.txt", ".hidden", "c.dat", "d.txt"}));
  for (const char* name : {"*.txt", "none", "d.txt", "d.txt\\*", "c.dat\\", "x\\*", ".h*"})
    EXPECT_THROW(files_.Delete(Dos(name)), Failure) << name;
  files_.Delete(Dos(".Hidden"));
  files_.Delete(Dos("C.dat"));
  EXPECT_EQ(folder_.List(), (Names{".a.txt", "d.txt"}));
}

TEST_F(FileChange, RenameTakesFreeNamesAndOtherCase) {
  folder_.Write("a.txt", "a");
  folder_.Write("b.txt", "b");
  folder_.Write("Folder/x", "x");
  for (const char* target :
       {"b.txt", "B.TXT", "folder", "a.txt", "a.txt.", "none\\a", "con", "x|y"})
    EXPECT_THROW(files_.Rename(Dos("a.txt"), Dos(target)), Failure) << target;
  EXPECT_THROW(files_.Rename(Dos("none"), Dos("c")), Failure);
  EXPECT_THROW(files_.Rename(Dos("folder"), Dos("folder\\sub")), Failure);
  EXPECT_EQ(folder_.List(), (Names{"Folder", "a.txt", "b.txt"}));
  files_.Rename(Dos("A.txt"), Dos("A.TXT"));
  files_.Rename(Dos("b.TXT"), Dos("folder\\New.txt"));
  files_.Rename(Dos("FOLDER"), Dos("fOLDER"));
  EXPECT_EQ(folder_.List(), (Names{"A.TXT", "fOLDER"}));
  EXPECT_EQ(folder_.List("fOLDER"), (Names{"New.txt", "x"}));
  EXPECT_EQ(folder_.Read("fOLDER/New.txt"), "b");
}

TEST_F(FileChange, AReadOnlyFileSystemChangesNothing) {
  folder_.Write("a.txt", "old");
  folder_.Write("b.txt", "b");
  folder_.MakeFolder("folder");
  const FileSystem files({std::nullopt, true});
  auto changes = Changes(files, Dos("a.txt"), Dos("b.txt"));
  changes.emplace_back([&] { static_cast<void>(files.OpenBinary(Dos("new"))); });
  changes.emplace_back([&] { files.Rename(Dos("a.txt"), Dos("new")); });
  changes.emplace_back([&] { files.CreateFolder(Dos("new")); });
  changes.emplace_back([&] { files.RemoveFolder(Dos("folder")); });
  for (std::size_t i = 0; i < changes.size(); ++i) EXPECT_THROW(changes[i](), Failure) << i;
  EXPECT_EQ(folder_.List(), (Names{"a.txt", "b.txt", "folder"}));
  EXPECT_EQ(files.OpenBinary(Dos("a.txt")).ReadAt(0, 3), "old");
}

// Runs `change` with its first, second, ... operation failing, until none is left to fail, and
// looks after each failure whether all is as before.
TEST_F(FileChange, AFailedReplacementLeavesAllAsItWas) {
  const std::vector<std::function<void()>> changes = {
      [&] { files_.Copy(Dos("source"), Dos("target")); },
      [&] { files_.Copy(Dos("source"), Dos("fresh")); },
      [&] { files_.ReplaceWhole(Dos("target"), "new content"); },
      [&] { files_.ReplaceWhole(Dos("fresh"), "new content"); },
      [&] { files_.WriteWhole(Dos("fresh"), "new content"); },
      [&] { files_.PutInPlace(Dos("source"), Dos("target")); },
      [&] { files_.Rename(Dos("source"), Dos("fresh")); },
      [&] { files_.Delete(Dos("target")); }};
  folder_.Write("source", "source");
  folder_.Write("target", "old");
  for (std::size_t i = 0; i < changes.size(); ++i) {
    int failing = 1;
    files_.Faults().FailAt(1);
    for (; failing < 100 && NumberOfFailure(changes[i]) > 0; ++failing) {
      EXPECT_EQ(folder_.List(), (Names{"source", "target"})) << i << ", " << failing;
      EXPECT_EQ(folder_.Read("source") + folder_.Read("target"), "sourceold") << i;
      files_.Faults().FailAt(failing + 1);
    }
    EXPECT_GT(failing, 1) << i;
    files_.Faults().FailAt(0);
    fs::remove(folder_.At("fresh"));
    folder_.Write("source", "source");
    folder_.Write("target", "old");
  }
}

TEST_F(FileChange, WriteWholeLeavesTheOldContentOnAFullDisk) {
  folder_.Write("target", "the old content");
  // Opening is the first operation, making room the second.
  files_.Faults().FailAt(2);
  EXPECT_EQ(NumberOfFailure([&] { files_.WriteWhole(Dos("target"), "new"); }), ENOSPC);
  EXPECT_EQ(folder_.Read("target"), "the old content");
}

}  // namespace
