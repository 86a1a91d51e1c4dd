// The INI reader held against the system's own. That is Wine's here, which differs from what
// Microsoft documents, and so isn't asked, in three things: letters beyond ASCII differ by case, a
// section's name ends at its line's last bracket, and a line without "=" is a key without a value.

#include <cstddef>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "core/basIni.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/windows/System.h"
#include "support/TempFolder.h"

using basIni::IniFile;
using basIni::INIRead;
using namespace std::string_literals;

namespace {

class AgainstTheSystem : public testing::Test {
 protected:
  void ExpectSame(const std::string& text) {
    // The system keeps what it has read, so each text is another file.
    const std::string name = Concat(++count_, ".ini");
    folder_.Write(name, text);
    const IniFile file(text);
    for (const char* section : {"Mod1", "mod10", "\xE4"})
      for (const char* key : {"Name", "TYPEID", "\xF6"})
        EXPECT_EQ(INIRead(file, section, key, "(default)"),
                  ReadBySystem(folder_.Dos(name), section, key))
            << "[" << section << "] " << key << " in\n"
            << text.substr(0, 2000);
    std::filesystem::remove(folder_.At(name));
  }

 private:
  /// What the system reads, by a buffer as long as the program's.
  static std::string ReadBySystem(const std::string& path, const char* section, const char* key) {
    std::string value(65000, '\0');
    value.resize(GetPrivateProfileStringA(section, key, "(default)", value.data(),
                                          static_cast<DWORD>(value.size()), path.c_str()));
    return value;
  }

  TempFolder folder_;
  int count_ = 0;
};

TEST_F(AgainstTheSystem, WhatTheGeneratedFilesBringSeldom) {
  ASSERT_EQ(GetACP(), 1252U);
  const std::vector<std::string> texts = {
      "",
      " \t[ mod1\t] \r\n\tname \t= \ta \t\r\n",
      "[\xE4]\r\n\xF6=\xE4\xF6\xFC\xDF\x80\x99\xFF",
      "[Mod1]\r\nName=\"\"\r\nTypeID=\"\"a\"\"",
      "[Mod1]\r\nName=\"a\" b\r\nTypeID=a\"b\"",
      "[Mod1]\r\nName=a=b [c] #d\r\nTypeID==x",
      "[Mod1]\r\nName=a\r\n\x1Ajunk\r\nTypeID=1",
      "[Mod1]\r\nName=" + std::string(64999, 'x'),
      "[Mod1]\r\nName=" + std::string(65100, 'x'),
      "[Mod1]\r\nTypeID=" + std::string(100000, '\xFF') + "\r\nName=a"};
  for (const std::string& text : texts) ExpectSame(text);
}

/// A text put together from what matters to a reader, at random.
std::string RandomText(std::mt19937& random) {
  // One piece between two bars, a line's end written as `~`.
  constexpr std::string_view kPieces =
      "~[Mod1]|~[mod10]|~[Typ1]|~ [Mod1] "
      "~|~[\xE4]x~|~[Mod1]~Name=|~[Mod1|~Name=|~TypeID=|\n\xF6=\"|"
      "name=|name =|TYPEID\t=|\xF6 = |=|=| = |~|~|\n|~~|~;|\"|\"~|'|;|#| |\t|1|a b|\xE4\xDF|"
      "\x80|<nl>|\\|[|,|";
  std::vector<std::string_view> pieces;
  for (std::string_view rest = kPieces; !rest.empty(); rest.remove_prefix(rest.find('|') + 1))
    pieces.push_back(rest.substr(0, rest.find('|')));
  std::string text;
  for (std::size_t i = 5 + random() % 60; i > 0; --i) text += pieces[random() % pieces.size()];
  return Text::Replace(text, "~", "\r\n");
}

TEST_F(AgainstTheSystem, AThousandGeneratedFiles) {
  std::mt19937 random(1252);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same files each time
  for (int i = 0; i < 1000 && !HasFailure(); ++i) ExpectSame(RandomText(random));
}

}  // namespace
