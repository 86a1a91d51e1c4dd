#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/FileSystem.h"
#include "platform/Shell.h"
#include "support/EnvironmentVariable.h"
#include "support/TempFolder.h"

namespace {

// Puts an opener of its own in front of the desktop's, which reports into a pipe: whoever reads
// that waits until the opener has been.
class Opening : public testing::Test {
 protected:
  void SetUp() override {
    const std::string pipe = folder_.At("pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    folder_.Write("bin/xdg-open",
                  "#!/bin/sh\n{ pwd; printf '%s\\n' \"$#\" \"$@\"; } > '" + pipe + "'\n");
    ASSERT_EQ(chmod(folder_.At("bin/xdg-open").c_str(), 0755), 0);
  }

  // Working directory, number of arguments and the arguments of the opener's next run.
  [[nodiscard]] std::string Report() const { return folder_.Read("pipe"); }

  TempFolder folder_;
  FileSystem files_;
  DesktopOpener opener_{files_};
  EnvironmentVariable path_{
      "PATH", folder_.At("none").string() + ":" + folder_.At("bin").string() + ":/usr/bin:/bin"};
};

TEST_F(Opening, AFullPathBecomesNativeAndItsFolderTheWorkingDirectory) {
  folder_.Write("My Docs/L\u00F6schen.txt", "");
  const std::string folder = folder_.Dos("MY DOCS\\");
  opener_.Open(folder + "L\xD6SCHEN.TXT", folder);
  const std::string native = folder_.At("My Docs").string();
  EXPECT_EQ(Report(), native + "\n1\n" + native + "/L\u00F6schen.txt\n");
}

TEST_F(Opening, AnAddressGoesAsItIsAndNeverAsAnOption) {
  const std::string here = std::filesystem::current_path().string();
  opener_.Open("http://example.org/\xE4?a=b&c='$HOME'", "");
  EXPECT_EQ(Report(), here + "\n1\nhttp://example.org/\u00E4?a=b&c='$HOME'\n");
  opener_.Open("--help", "");
  EXPECT_EQ(Report(), here + "\n1\n./--help\n");
  opener_.Open(R"(C:\x.txt)", R"(C:\)");  // passed over in silence
}

}  // namespace
