// How DOS path text finds names on disk. The machine is taken to mind case, as Linux does.

#include <filesystem>
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
constexpr int kEverything = kFindHidden | kFindSystem | kFindFolders;

class FileLookup : public testing::Test {
 protected:
  // What a path below the folder leads to: the content of a file, or what else there is.
  [[nodiscard]] std::string Found(const std::string& below) const {
    try {
      return files_.ReadWhole(folder_.Dos() + below);
    } catch (const Failure&) {
      return "(none)";
    }
  }

  TempFolder folder_;
  FileSystem files_;
};

TEST_F(FileLookup, ComponentsMatchExactlyOrElseWithoutCase) {
  folder_.Write("Data/Maps/LA.ipl", "la");
  folder_.Write("Data/Maps/la.ide", "ide");
  folder_.Write("Data/two.txt", "lower");
  folder_.Write("Data/TWO.txt", "upper");
  folder_.Write("Data/\u00C4rger.txt", "umlaut");
  folder_.Write("Data/dot", "dot");
  folder_.Write("Data/dot.", "exact");
  const std::vector<std::pair<const char*, const char*>> cases = {
      {R"(\Data\Maps\LA.ipl)", "la"},
      {R"(\dATA\mAPS\la.IPL)", "la"},
      {"/data\\maps//la.ide", "ide"},
      {R"(\data\nowhere\..\maps\la.ide)", "ide"},
      {R"(\data.\maps. .\la.ide. )", "ide"},
      {R"(\data\two.txt)", "lower"},
      {R"(\data\tWO.txt)", "upper"},  // the first in order of names
      {"\\data\\\xE4RGER.TXT", "umlaut"},
      {R"(\data\dot.)", "exact"},
      {R"(\data\dot..)", "dot"},
      {R"(\data\maps\la.ide\)", "(none)"},  // a file is no folder
      {R"(\data\*.txt)", "(none)"},
      {R"(\d*\two.txt)", "(none)"},
      {R"(\data\x:two.txt)", "(none)"},
      {R"(\...\data\two.txt)", "(none)"}};
  for (const auto& [below, content] : cases) EXPECT_EQ(Found(below), content) << below;
  EXPECT_EQ(Found(std::string(R"(\data\two.txt)") + '\0'), "(none)");
}

TEST_F(FileLookup, PathsBeginAtARootADriveOrTheCurrentFolder) {
  folder_.Write("sub/a.txt", "a");
  folder_.Write("b.txt", "b");
  const std::string dos = folder_.Dos();
  const fs::path before = fs::current_path();
  fs::current_path(folder_.At("sub"));
  const std::vector<std::pair<std::string, const char*>> cases = {
      {"A.TXT", "a.txt"},
      {"Z:A.TXT", "a.txt"},
      {R"(..\b.txt)", "b.txt"},
      {"z:" + dos.substr(2) + R"(\b.txt)", "b.txt"},
      {dos.substr(2) + R"(\b.txt)", "b.txt"},
      {"\\" + dos.substr(2) + R"(\b.txt)", "b.txt"},
      {R"(..\..\..\..\..\..\..\..\..\..\..\..)" + dos.substr(2) + R"(\b.txt)", "b.txt"},
      {"", ""},
      {R"(C:\b.txt)", ""},
      {R"(\\?\Z:\a.txt)", ""}};
  for (const auto& [path, name] : cases) EXPECT_EQ(files_.FindFirst(path, 0), name) << path;
  EXPECT_EQ(files_.FindFirst("Z:", kFindFolders), ".");
  fs::current_path(before);
}

TEST_F(FileLookup, DrivesAreThoseOfTheWinePrefix) {
  folder_.Write("prefix/drive_c/Games/a.txt", "a");
  folder_.MakeFolder("prefix/dosdevices");
  fs::create_symlink("../drive_c", folder_.At("prefix/dosdevices/c:"));
  fs::create_symlink("../gone", folder_.At("prefix/dosdevices/d:"));
  fs::create_symlink("/dev/null", folder_.At("prefix/dosdevices/e:"));
  const FileSystem files({folder_.At("prefix"), false});
  for (const char* path : {R"(C:\games\a.txt)", R"(c:games\a.txt)", R"(C:/../Games/A.TXT)"})
    EXPECT_EQ(files.FindFirst(path, 0), "a.txt") << path;
  EXPECT_EQ(files.ToNative(R"(C:\GAMES\New.txt)"), folder_.At("prefix/drive_c/Games/New.txt"));
  for (const char* path : {R"(D:\x)", R"(E:\x)", R"(F:\x)"}) {
    EXPECT_EQ(files.FindFirst(path, kEverything), "") << path;
    EXPECT_THROW(static_cast<void>(files.Create(path)), Failure) << path;
  }
}

TEST_F(FileLookup, LinksThatLeadNowhereAreNeitherFoundNorWrittenThrough) {
  fs::create_symlink("gone", folder_.At("broken"));
  fs::create_symlink("loop", folder_.At("loop"));
  for (const char* name : {"broken", "LOOP", "loop"}) {
    const std::string path = folder_.Dos(name);
    EXPECT_EQ(files_.FindFirst(path, kEverything), "") << name;
    EXPECT_THROW(static_cast<void>(files_.OpenBinary(path)), Failure) << name;
    EXPECT_THROW(static_cast<void>(files_.Create(path)), Failure) << name;
    EXPECT_THROW(files_.ReplaceWhole(path, "x"), Failure) << name;
    EXPECT_THROW(files_.Delete(path), Failure) << name;
    EXPECT_THROW(static_cast<void>(files_.ToNative(path)), Failure) << name;
  }
  EXPECT_EQ(files_.FindAll(folder_.Dos("*"), kEverything), Names());
  EXPECT_EQ(folder_.List(), (Names{"broken", "loop"}));
}

TEST_F(FileLookup, NamesThatCannotBeSaidAreNeverFound) {
  for (const char* name : {"a\xFF", "a\u0100", "a:b", "a\\b", "a*b", "a?b", "x\u0308"})
    folder_.Write(name, "x");
  EXPECT_EQ(files_.FindAll(folder_.Dos("*"), kEverything), Names());
  EXPECT_THROW(files_.Delete(folder_.Dos("a*b")), Failure);
  EXPECT_EQ(folder_.List().size(), 7U);
  EXPECT_THROW(static_cast<void>(files_.ToDosText(folder_.At("a:b"))), Failure);
}

TEST_F(FileLookup, MarksMayStandBehindTheirLetters) {
  folder_.Write("Lo\u0308we/u\u0308BER.txt", "old");
  const std::string path = folder_.Dos(
      "l\xF6we\\\xDC"
      "ber.txt");
  EXPECT_EQ(files_.FindAll(folder_.Dos("L\xF6we\\\xDC*"), kEverything), Names{"\xFC"
                                                                              "BER.txt"});
  EXPECT_EQ(files_.FindFirst(path, kEverything),
            "\xFC"
            "BER.txt");
  files_.WriteWhole(path, "new");
  EXPECT_EQ(folder_.Read("Lo\u0308we/u\u0308BER.txt"), "new");
  EXPECT_EQ(files_.ToNative(files_.ToDosText(folder_.At("Lo\u0308we"))), folder_.At("Lo\u0308we"));
  files_.Copy(path, folder_.Dos("l\xF6we\\\xE4.txt"));
  files_.Delete(path);
  EXPECT_EQ(folder_.List("Lo\u0308we"), Names{"\u00E4.txt"});
}

TEST_F(FileLookup, PathsLeadThroughLettersBeyondTheCodePage) {
  const std::string native = "Mein \u0418\u0433\u0440\u044B";
  folder_.Write(native + "/Data/a.txt", "old");
  folder_.Write(native + "/\u0418.txt", "x");
  const std::string folder = files_.ToDosText(folder_.At(native));
  EXPECT_EQ(folder, folder_.Dos("Mein {u418.433.440.44b}"));
  EXPECT_EQ(files_.ToNative(folder), folder_.At(native));
  EXPECT_EQ(files_.FindAll(folder + "\\*", kEverything), Names{"Data"});
  EXPECT_EQ(files_.FindAll(folder_.Dos("*"), kEverything), Names());
  // As the registry's directory comes, in lower case.
  const std::string lower = folder_.Dos("mein {u418.433.440.44b}");
  files_.WriteWhole(lower + "\\data\\A.TXT", "new");
  EXPECT_EQ(folder_.Read(native + "/Data/a.txt"), "new");
  files_.WriteWhole(files_.ToDosText(folder_.At("\u0433.kvpk")), "x");
  EXPECT_EQ(folder_.Read("\u0433.kvpk"), "x");
  // A name that looks so goes first.
  folder_.Write("{u433}.kvpk", "own");
  EXPECT_EQ(files_.ReadWhole(folder_.Dos("{u433}.kvpk")), "own");
}

TEST_F(FileLookup, TheDirectoryQueryGoesByMaskAndOrderOfNames) {
  for (const char* name : {"b.TXT", "A.txt", "a.txt", ".hidden", "\u00C4.txt"})
    folder_.Write(name, "");
  folder_.MakeFolder("Folder");
  folder_.MakeFolder(".git");
  fs::create_symlink("Folder", folder_.At("link"));
  fs::create_symlink("b.TXT", folder_.At("link.txt"));
  struct Case {
    const char* below;
    int mask;
    Names names;
  };
  const std::vector<Case> cases = {
      {"*.txt", 0, {"A.txt", "a.txt", "b.TXT", "link.txt", "\xC4.txt"}},
      {"*", kFindFolders, {"A.txt", "a.txt", "b.TXT", "Folder", "link", "link.txt", "\xC4.txt"}},
      {"*.", kFindFolders, {"Folder", "link"}},
      {".*", kFindHidden, {".hidden"}},
      {"*",
       kFindHidden | kFindFolders,
       {".git", ".hidden", "A.txt", "a.txt", "b.TXT", "Folder", "link", "link.txt", "\xC4.txt"}},
      {".HIDDEN", kFindHidden, {".hidden"}},
      {".git", kFindFolders, {}},
      {"folder", kFindFolders, {"Folder"}},
      {R"(folder\)", kFindFolders, {"."}},
      {R"(folder\)", 0, {}},
      {R"(fol*\x)", kEverything, {}}};
  for (const auto& [below, mask, names] : cases) {
    const std::string path = folder_.Dos(below);
    EXPECT_EQ(files_.FindAll(path, mask), names) << below << ", " << mask;
    EXPECT_EQ(files_.FindFirst(path, mask), names.empty() ? "" : names[0]) << below;
  }
  EXPECT_EQ(files_.FindFirst(folder_.Dos(""), 0), "A.txt");
}

TEST_F(FileLookup, NativePathsAndTextMeanTheSame) {
  folder_.Write("Fu\u00DF/a b.txt", "x");
  const std::string text = files_.ToDosText(folder_.At("Fu\u00DF/./a b.txt"));
  EXPECT_EQ(text, folder_.Dos("Fu\xDF\\a b.txt"));
  EXPECT_EQ(files_.ToNative(text), folder_.At("Fu\u00DF/a b.txt"));
  EXPECT_EQ(files_.ToNative(folder_.Dos("FU\xDF\\New.\\x\\y.txt")),
            folder_.At("Fu\u00DF/New/x/y.txt"));
  EXPECT_EQ(files_.ToDosText("/"), "Z:\\");
  // Behind a link, `..` is the folder that the link leads to.
  folder_.MakeFolder("deep/er");
  fs::create_symlink("deep/er", folder_.At("link"));
  EXPECT_EQ(files_.ToDosText(folder_.At("link/../x")), folder_.Dos("deep\\x"));
  EXPECT_THROW(static_cast<void>(files_.ToNative(folder_.Dos("nul"))), Failure);
}

}  // namespace
