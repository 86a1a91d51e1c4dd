// What the file layer keeps of permissions, times and links.

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class FileModes : public testing::Test {
 protected:
  [[nodiscard]] std::string Dos(const std::string& below) const { return folder_.Dos(below); }
  void SetMode(const char* below, mode_t mode) const {
    ASSERT_EQ(chmod(folder_.At(below).c_str(), mode), 0);
  }
  [[nodiscard]] mode_t Mode(const char* below) const {
    struct stat status = {};
    return stat(folder_.At(below).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }

  TempFolder folder_;
  FileSystem files_;
};

TEST_F(FileModes, CopyReplacesAndKeepsNameModeAndTime) {
  folder_.Write("from.txt", "new");
  folder_.Write("sub/To.txt", "old and longer");
  SetMode("from.txt", 0640);
  SetMode("sub/To.txt", 0604);
  const auto time = fs::last_write_time(folder_.At("from.txt")) - std::chrono::hours(1000);
  fs::last_write_time(folder_.At("from.txt"), time);
  files_.Copy(Dos("FROM.TXT"), Dos("sub\\TO.TXT"));
  files_.Copy(Dos("from.txt"), Dos("sub\\New.txt"));
  EXPECT_EQ(folder_.List("sub"), (Names{"New.txt", "To.txt"}));
  EXPECT_EQ(folder_.Read("sub/To.txt"), "new");
  EXPECT_EQ(folder_.Read("sub/New.txt"), "new");
  EXPECT_EQ(Mode("sub/To.txt"), 0604U);
  EXPECT_EQ(Mode("sub/New.txt"), 0640U);
  EXPECT_EQ(fs::last_write_time(folder_.At("sub/New.txt")), time);
}

TEST_F(FileModes, CopyRefusesItselfFoldersAndWhatIsMissing) {
  folder_.Write("a.txt", "a");
  folder_.MakeFolder("folder");
  fs::create_symlink("a.txt", folder_.At("link"));
  fs::create_hard_link(folder_.At("a.txt"), folder_.At("second"));
  for (const char* target :
       {"a.txt", "A.TXT", "link", "second", "folder", "folder\\", "none\\a.txt"})
    EXPECT_THROW(files_.Copy(Dos("a.txt"), Dos(target)), Failure) << target;
  EXPECT_THROW(files_.Copy(Dos("none"), Dos("b")), Failure);
  EXPECT_THROW(files_.Copy(Dos("folder"), Dos("b")), Failure);
  EXPECT_EQ(folder_.Read("a.txt"), "a");
  EXPECT_EQ(folder_.List(), (Names{"a.txt", "folder", "link", "second"}));
}

TEST_F(FileModes, ALinkToAFileStaysOne) {
  folder_.Write("real/file.txt", "old");
  folder_.Write("rebuilt.txt", "rebuilt");
  fs::create_symlink("real/file.txt", folder_.At("link.txt"));
  files_.ReplaceWhole(Dos("LINK.txt"), "replaced");
  EXPECT_EQ(folder_.Read("real/file.txt"), "replaced");
  SetMode("real/file.txt", 0640);
  files_.PutInPlace(Dos("rebuilt.txt"), Dos("link.txt"));
  EXPECT_EQ(folder_.Read("real/file.txt"), "rebuilt");
  EXPECT_EQ(Mode("real/file.txt"), 0640U);
  EXPECT_TRUE(fs::is_symlink(folder_.At("link.txt")));
  files_.Delete(Dos("link.txt"));
  EXPECT_EQ(folder_.List(), Names{"real"});
  EXPECT_EQ(folder_.List("real"), Names{"file.txt"});
}

}  // namespace
