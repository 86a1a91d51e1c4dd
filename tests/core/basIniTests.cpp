#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/basIni.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "support/TempFolder.h"

using basIni::IniFile;
using basIni::INIRead;
using basIni::INIWrite;
using namespace std::string_literals;

namespace {

TEST(basIni, ReadsValues) {
  // A text, and the value of key k in section s; "-" is the default.
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "-"},
      {"[s]\nk=v\n", "v"},
      {"[s]\r\nk=v", "v"},
      {"[S]\r\nK=v\r\n", "v"},
      {"[s]k=v\r\n", "-"},
      {" \t[ s\t] \r\n\tk \t= \tv \t\r\n", "v"},
      {"k=x\r\n[s]\r\n", "-"},  // a key ahead of all sections belongs to none
      {"[s]\r\nk=\r\n", ""},    // present and empty
      {"[s]\r\nk=a\r\nk=b", "a"},
      {"[s]\r\nx=1\r\n[s]\r\nk=v", "-"},  // the first section answers, even by a lack
      {"[s1]\r\nk=x\r\n[s]\r\nk=v", "v"},
      {"[s]\r\nk='v'", "v"},
      {"[s]\r\nk=\" v \"", " v "},
      {"[s]\r\nk= \"\" ", ""},
      {"[s]\r\nk=\"\"v\"\"", "\"v\""},  // one pair goes
      {"[s]\r\nk=\"", "\""},
      {"[s]\r\n  ;k=x\r\nk=v;w", "v;w"},
      {"[s]\r\nk=a=b [c] #d; e", "a=b [c] #d; e"},
      {"[s]\r\nk==v", "=v"},
      {"[s]\r\n[\r\n]\r\n[[\r\nk=v", "v"},  // lone brackets
      {"[s]\r\n\0\0\x1A\r\nk=v"s, "v"},
      {"[s]\r\nk=v\0junk"s, "v"},  // of the last line the junk behind is cut at its NUL
      {"[s]\r\nk=v\r\n\x1A\0[\x80\xFF=\r[s]\nk=x\n]"s, "v"},
      {"[s]\r\nk=\x80\xC4\xFF", "\x80\xC4\xFF"},
      {"[s]\r\n" + std::string(100000, 'x') + "\r\nk=v", "v"},
      {"[s]\r\nx=" + std::string(100000, '\xFF') + "\r\nk=v\r\n" + std::string(100000, '['), "v"},
      {"[s]\r\nk=" + std::string(64999, 'v') + "w", std::string(64999, 'v')},
      {"[s]\r\nk=\"" + std::string(65000, 'v') + "\"", std::string(64999, 'v')},
  };
  const TempFolder folder;
  const FileSystem files;
  for (const auto& [text, value] : cases) {
    const std::string shown = text.substr(0, 60);
    EXPECT_EQ(INIRead(IniFile(text), "s", "k", "-"), value) << shown;
    folder.Write("a.ini", text);
    EXPECT_EQ(INIRead(files, folder.Dos("A.INI"), "s", "k", "-"), value) << shown;
  }
  EXPECT_EQ(INIRead(IniFile("[Mod10]\r\nTypeID=5"), "Mod1", "TypeID", ""), "");
  EXPECT_EQ(INIRead(IniFile("[\xC4]\r\n\xD6=v"), "\xE4", "\xF6", ""), "v");
  EXPECT_EQ(INIRead(files, folder.Dos("none.ini"), "s", "k", "d"), "d");
  EXPECT_EQ(INIRead(files, folder.Dos(), "s", "k", " d "), " d ");
  EXPECT_EQ(folder.List(), std::vector<std::string>{"a.ini"});
}

TEST(basIni, WritesOneValueAndKeepsTheRest) {
  // Before and after, with v as the value of k in s.
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "[s]\r\nk=v\r\n"},
      {"[s]\r\n  K \t=  \"old one\"  \r\nx=1\r\n", "[s]\r\n  K \t=  v  \r\nx=1\r\n"},
      {"[s]\r\nk=a\r\nk=b\r\n", "[s]\r\nk=v\r\nk=b\r\n"},
      {"; head\r\n\r\n[S] ; x\r\nx=1\r\n; tail\r\n\r\n[t]\r\nk=t\r\n",
       "; head\r\n\r\n[S] ; x\r\nx=1\r\n; tail\r\nk=v\r\n\r\n[t]\r\nk=t\r\n"},
      {"[s]\r\nx=1", "[s]\r\nx=1\r\nk=v\r\n"},
      {"[t]\r\nk=t", "[t]\r\nk=t\r\n[s]\r\nk=v\r\n"},
      {"junk\0\x1A\xFF\r\n[s]\r\nx\r\n"s, "junk\0\x1A\xFF\r\n[s]\r\nx\r\nk=v\r\n"s},
      {"[s]\r\nx=1\r\n[s]\r\nk=second\r\n", "[s]\r\nx=1\r\nk=v\r\n[s]\r\nk=second\r\n"},
  };
  const TempFolder folder;
  const FileSystem files;
  for (const auto& [before, after] : cases) {
    folder.Write("a.ini", before);
    INIWrite(files, folder.Dos("a.ini"), "s", "k", "v");
    EXPECT_EQ(folder.Read("a.ini"), after);
  }
  INIWrite(files, folder.Dos("Neu.ini"), "Settings", "Value", "\" a;b=[c] ");
  EXPECT_EQ(folder.Read("Neu.ini"), "[Settings]\r\nValue=\" a;b=[c] \r\n") << "as it is";
}

TEST(basIni, AFailedWriteIsSilentAndLeavesTheFileAsItWas) {
  const TempFolder folder;
  const FileSystem files;
  const std::string before = "[Settings]\r\nPlayMusic=1\r\n";
  const std::string after = "[Settings]\r\nPlayMusic=0\r\n";
  int n = 0;
  do {
    folder.Write("a.ini", before);
    files.Faults().FailAt(++n);
    INIWrite(files, folder.Dos("a.ini"), "Settings", "PlayMusic", "0");
    files.Faults().FailAt(0);
    EXPECT_THAT(folder.Read("a.ini"), testing::AnyOf(before, after)) << n;
    EXPECT_EQ(folder.List(), std::vector<std::string>{"a.ini"}) << n;
  } while (folder.Read("a.ini") == before && n < 100);
  EXPECT_GT(n, 3);
  EXPECT_EQ(folder.Read("a.ini"), after);
}

}  // namespace
