// The file layer against the real thing: names, attributes and long paths of this system.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/windows/System.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;
constexpr int kEverything = kFindHidden | kFindSystem | kFindFolders;

class WindowsFiles : public testing::Test {
 protected:
  [[nodiscard]] std::string Dos(const std::string& below) const { return folder_.Dos(below); }
  [[nodiscard]] std::string Found(const std::string& path) const {
    try {
      return files_.ReadWhole(path);
    } catch (const Failure&) {
      return "(none)";
    }
  }
  [[nodiscard]] DWORD Attributes(const char* below) const {
    return GetFileAttributesW(folder_.At(below).c_str());
  }
  void SetAttributes(const char* below, DWORD attributes) const {
    ASSERT_NE(SetFileAttributesW(folder_.At(below).c_str(), attributes), 0) << below;
  }

  TempFolder folder_;
  FileSystem files_;
};

// Each byte that names may have, between two letters.
Names NamesOfAllBytes() {
  Names names;
  for (int byte = 0x20; byte < 0x100; ++byte) {
    std::string name = Concat('n', static_cast<char>(byte), 'n');
    if (DosPath::IsPlainFileName(name)) names.push_back(std::move(name));
  }
  return names;
}

TEST_F(WindowsFiles, LettersAreEqualWhereTheyAreForTheSystem) {
  std::set<std::string> distinct;
  for (const std::string& name : NamesOfAllBytes()) {
    for (const std::string& other : NamesOfAllBytes())
      EXPECT_EQ(Text::EqualsIgnoringCase(name, other),
                CompareStringOrdinal(Windows::ToWide(name).c_str(), -1,
                                     Windows::ToWide(other).c_str(), -1, TRUE) == CSTR_EQUAL)
          << name << " " << other;
    files_.WriteWhole(Dos(name), name);
    distinct.insert(Text::LowerCase(name));
  }
  EXPECT_EQ(folder_.List().size(), distinct.size());
  for (const std::string& name : files_.FindAll(Dos("*"), kEverything))
    EXPECT_EQ(Text::LowerCase(files_.ReadWhole(Dos(name))), Text::LowerCase(name));
}

TEST_F(WindowsFiles, WildcardsMatchAsTheSystemMatchesThem) {
  // No name here has a short form beside it, and no pattern ends in what Wine doesn't know of
  // Windows: a `?` that takes nothing, or a dot.
  for (const char* name : {"a", "ab", "abc", "a.txt", "b.txt", "ab.tx", "a.b.c", "abc.b.t", "x.y"})
    folder_.Write(name, "");
  for (const char* pattern : {"*", "*.*", "a*", "*a", "*.t*", "a.*", "*b*", "*.b*", "a*.txt", "*c",
                              "*.*.*", "?.txt", "?b?.b.t", "A*.TXT", "*.TX", "a.b.c", "*b.*"}) {
    Names expected;
    WIN32_FIND_DATAW found = {};
    HANDLE search = FindFirstFileW(folder_.At(pattern).c_str(), &found);
    for (BOOL more = search == INVALID_HANDLE_VALUE ? FALSE : TRUE; more != 0;
         more = FindNextFileW(search, &found))
      expected.push_back(Windows::FromWideLossy(&found.cFileName[0]));
    FindClose(search);
    std::erase_if(expected, [](const std::string& name) { return name == "." || name == ".."; });
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(files_.FindAll(Dos(pattern), 0), expected) << pattern;
  }
}

TEST_F(WindowsFiles, PathsLeadWhereTheyLeadEverywhere) {
  folder_.Write("Data/Maps/LA.ipl", "la");
  folder_.Write("Data/\u00C4rger.txt", "umlaut");
  const fs::path before = fs::current_path();
  fs::current_path(folder_.At("Data"));
  const std::string drive = folder_.Dos().substr(0, 2);
  const std::string rooted = folder_.Dos().substr(2);
  const std::vector<std::pair<std::string, const char*>> cases = {
      {Dos(R"(dATA\mAPS\la.IPL)"), "la"},
      {Dos(R"(data/maps//.\LA.ipl. )"), "la"},
      {Dos(R"(data\nowhere\..\maps. .\la.ipl)"), "la"},
      {Dos("data\\\xE4RGER.TXT"), "umlaut"},
      {"\xC4rger.txt", "umlaut"},
      {R"(..\data\maps\la.ipl)", "la"},
      {R"(..\..\..\..\..\..\..\..\..\..)" + rooted + R"(\data\maps\la.ipl)", "la"},
      {Dos(R"(data\maps\la.ipl\x)"), "(none)"},
      {Dos(R"(data\<.ipl)"), "(none)"},
      {Dos(R"(data\maps\la.ipl::$DATA)"), "(none)"},
      {R"(\\?\)" + Dos(R"(Data\Maps\LA.ipl)"), "(none)"},
      {R"(\\.\)" + Dos(R"(Data\Maps\LA.ipl)"), "(none)"},
      {std::string("Maps\\LA.ipl\0", 12), "(none)"},
      {"nul", "(none)"},
      {"Q:\\x", "(none)"}};
  for (const auto& [path, content] : cases) EXPECT_EQ(Found(path), content) << path;
  EXPECT_EQ(files_.FindFirst(drive + R"(\)", kFindFolders), ".");
  EXPECT_EQ(files_.FindFirst(R"(maps\)", kEverything), ".");
  EXPECT_EQ(files_.ToDosText("Maps/LA.ipl"), Dos(R"(Data\Maps\LA.ipl)"));
  EXPECT_EQ(files_.ToNative(R"(Maps\la.ipl)"), folder_.At(R"(Data\Maps\LA.ipl)").make_preferred());
  for (const char* path : {"aux", "x:y", "nowhere\\x", "Q:\\x", R"(\\?\C:\x)", "maps\\la.ipl\\x"})
    EXPECT_THROW(static_cast<void>(files_.Create(path)), Failure) << path;
  EXPECT_THROW(static_cast<void>(files_.ToNative("Q:\\x")), Failure);
  fs::current_path(before);
}

TEST_F(WindowsFiles, TheDirectoryQueryGoesByAttributes) {
  for (const char* name : {"plain", "Hidden", "system", "both"}) folder_.Write(name, name);
  folder_.MakeFolder("Folder");
  folder_.MakeFolder("lair");
  SetAttributes("Hidden", FILE_ATTRIBUTE_HIDDEN);
  SetAttributes("system", FILE_ATTRIBUTE_SYSTEM);
  SetAttributes("both", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  SetAttributes("lair", FILE_ATTRIBUTE_HIDDEN);
  const std::vector<std::pair<int, Names>> cases = {
      {0, {"plain"}},
      {kFindHidden, {"Hidden", "plain"}},
      {kFindSystem, {"plain", "system"}},
      {kFindFolders, {"Folder", "plain"}},
      {kEverything, {"both", "Folder", "Hidden", "lair", "plain", "system"}}};
  for (const auto& [mask, names] : cases) EXPECT_EQ(files_.FindAll(Dos("*"), mask), names) << mask;
  EXPECT_EQ(files_.FindFirst(Dos("HIDDEN"), kFindHidden), "Hidden");
  EXPECT_EQ(files_.FindFirst(Dos("hidden"), 0), "");
  files_.Delete(Dos("*"));
  files_.Delete(Dos("hidden"));
  EXPECT_EQ(folder_.List(), (Names{"Folder", "both", "lair", "system"}));
}

TEST_F(WindowsFiles, AttributesAndTimesStayWithFilesThatAreReplaced) {
  folder_.Write("old.ini", "old");
  folder_.Write("new.ini", "new");
  folder_.Write("source", "content");
  SetAttributes("old.ini", FILE_ATTRIBUTE_HIDDEN);
  files_.ReplaceWhole(Dos("OLD.ini"), "replaced");
  EXPECT_EQ(folder_.Read("old.ini"), "replaced");
  EXPECT_NE(Attributes("old.ini") & FILE_ATTRIBUTE_HIDDEN, 0U);
  files_.PutInPlace(Dos("new.ini"), Dos("old.INI"));
  EXPECT_EQ(folder_.Read("old.ini"), "new");
  EXPECT_NE(Attributes("old.ini") & FILE_ATTRIBUTE_HIDDEN, 0U);
  files_.ReplaceWhole(Dos("fresh.ini"), "fresh");
  EXPECT_EQ(Attributes("fresh.ini") & FILE_ATTRIBUTE_HIDDEN, 0U);

  const auto time = fs::last_write_time(folder_.At("source")) - std::chrono::hours(1000);
  fs::last_write_time(folder_.At("source"), time);
  SetAttributes("source", FILE_ATTRIBUTE_READONLY);
  files_.Copy(Dos("source"), Dos("Copy"));
  EXPECT_EQ(fs::last_write_time(folder_.At("Copy")), time);
  EXPECT_THROW(files_.Copy(Dos("old.ini"), Dos("copy")), Failure);
  EXPECT_EQ(files_.OpenBinary(Dos("copy")).ReadAt(0, 7), "content");
  EXPECT_EQ(folder_.List(), (Names{"Copy", "fresh.ini", "old.ini", "source"}));
  for (const char* name : {"source", "Copy"}) SetAttributes(name, FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsFiles, LongPathsWork) {
  Names folders{Dos("deep")};
  while (folders.back().size() < 500)
    folders.push_back(folders.back() + "\\" + std::string(100, '\xE4'));
  for (const std::string& folder : folders) files_.CreateFolder(folder);
  const std::string file = folders.back() + "\\a.txt";
  files_.ReplaceWhole(file, "a");
  files_.Copy(file, folders.back() + "\\B.TXT");
  files_.Rename(file, folders.back() + "\\c.txt");
  EXPECT_EQ(files_.FindAll(folders.back() + "\\*.TXT", 0), (Names{"B.TXT", "c.txt"}));
  EXPECT_EQ(files_.ToDosText(files_.ToNative(folders.back() + "\\C.txt")),
            folders.back() + "\\c.txt");
  files_.Delete(folders.back() + "\\*.*");
  for (; !folders.empty(); folders.pop_back()) files_.RemoveFolder(folders.back());
  EXPECT_EQ(folder_.List(), Names{});
}

TEST_F(WindowsFiles, NamesThatCannotBeSaidAreReachedByTheirShortOnes) {
  folder_.Write("\u0141\u00F3d\u017A/x.txt", "x");
  EXPECT_EQ(files_.FindAll(Dos("*"), kEverything), Names{});
  EXPECT_EQ(Found(files_.ToDosText(folder_.At("\u0141\u00F3d\u017A")) + "\\x.txt"), "x");
}

}  // namespace
