#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/FileAssociation.h"
#include "platform/FileSystem.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/windows/System.h"
#include "support/TempFolder.h"

// Behind the rest of the system's headers, which it needs.
#include <sddl.h>

namespace {

using Registry::Root;

constexpr const wchar_t* kKey = L"Software\\kelvo-test\\Installation";
constexpr std::string_view kKeyText = "SOFTWARE\\KELVO-test\\Installation";

/// Keys of this test's own in the real registry, gone at its end.
class WindowsRegistry : public testing::Test {
 protected:
  void TearDown() override {
    for (const REGSAM view : {REGSAM{KEY_WOW64_64KEY}, REGSAM{KEY_WOW64_32KEY}})
      for (const wchar_t* key : {kKey, L"Software\\kelvo-test"})
        RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key, view, 0);
    for (HKEY top : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
      for (const wchar_t* key :
           {L"Software\\Classes\\.kelvotest", L"Software\\Classes\\kelvotestfile"})
        RegDeleteTreeW(top, key);
  }
  static void Set(REGSAM view, DWORD type, const std::wstring& text) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS | view,
                              nullptr, &key, nullptr),
              0);
    RegSetValueExW(key, L"ExePath", 0, type, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }
  static FileAssociation::Description Description(const std::string& program) {
    return {.extension = ".kelvotest",
            .typeName = "kelvotestfile",
            .text = "moddock mod-pack",
            .program = program,
            .name = "KELVO",
            .icon = ""};
  }
  static std::string Read(std::string_view value = "exepath") {
    return Registry::ReadValue({}, Root::kLocalMachine, kKeyText, value);
  }

  TempFolder folder_;
  FileSystem files_;
};

TEST_F(WindowsRegistry, TextsAreReadFromBothViews) {
  EXPECT_EQ(Read(), "");
  Set(KEY_WOW64_32KEY, REG_SZ, L"C:\\32\\gta_sa.exe");
  EXPECT_EQ(Read(), "C:\\32\\gta_sa.exe");
  Set(KEY_WOW64_64KEY, REG_SZ, L"\"C:\\64\\L\u00F6we\u20AC\"");
  EXPECT_EQ(Read(), "\"C:\\64\\L\xF6we\x80\"");
  EXPECT_EQ(Read("Other"), "");

  const std::vector<std::pair<std::wstring, std::string>> texts = {
      {L"%SystemRoot%\\x", "%SystemRoot%\\x"},
      {std::wstring(L"cut\0here", 8), "cut"},
      {std::wstring(1023, L'x'), std::string(1023, 'x')}};
  for (const auto& [written, read] : texts) {
    Set(KEY_WOW64_64KEY, REG_EXPAND_SZ, written);
    EXPECT_EQ(Read(), read);
  }
  Set(KEY_WOW64_64KEY, REG_SZ, L"\u0141\u00F3d\u017A");
  EXPECT_EQ(Read(),
            "{u141}\xF3"
            "d{u17a}");
  // What can't be used leaves the word to the other view.
  Set(KEY_WOW64_64KEY, REG_SZ, std::wstring(1024, L'x'));
  EXPECT_EQ(Read(), "C:\\32\\gta_sa.exe");
  Set(KEY_WOW64_64KEY, REG_BINARY, L"bytes");
  EXPECT_EQ(Read(), "C:\\32\\gta_sa.exe");
}

TEST_F(WindowsRegistry, APackIsOpenedByTheProgramThatIsRegistered) {
  FileAssociation::Register(files_, Description("C:\\L\xF6we\\kelvo.exe"));
  const std::vector<std::pair<std::string, std::string>> values = {
      {".kelvotest", "kelvotestfile"},
      {"kelvotestfile", "moddock mod-pack"},
      {"kelvotestfile\\DefaultIcon", "C:\\L\xF6we\\kelvo.exe,0"},
      {R"(kelvotestfile\shell\open\command)", "\"C:\\L\xF6we\\kelvo.exe\" \"%1\""}};
  for (const auto& [key, text] : values)
    EXPECT_EQ(Registry::ReadValue({}, Root::kClassesRoot, key, ""), text) << key;

  FileAssociation::Register(files_, Description(files_.ToDosText(OPENER_PROGRAM)));
  folder_.Write("Mein Pack \u00C4.kelvotest", "");
  const std::string file = folder_.Dos("Mein Pack \xC4.kelvotest");
  DesktopOpener(files_).Open(file, folder_.Dos() + "\\");
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (folder_.Read("opened.txt") == "(missing)" && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_EQ(files_.ReadWhole(folder_.Dos("opened.txt")), file);
  DesktopOpener(files_).Open(folder_.Dos("none.kelvotest"), "");  // passed over in silence
}

TEST_F(WindowsRegistry, AUserWhoMayNotWriteForAllWritesForHimself) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\.kelvotest", 0, nullptr, 0,
                            KEY_ALL_ACCESS, nullptr, &key, nullptr),
            0);
  PSECURITY_DESCRIPTOR readingAlone = nullptr;
  ASSERT_NE(ConvertStringSecurityDescriptorToSecurityDescriptorW(
                L"D:P(A;;KR;;;WD)(A;;SD;;;WD)", SDDL_REVISION_1, &readingAlone, nullptr),
            0);
  ASSERT_EQ(RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, readingAlone), 0);
  LocalFree(readingAlone);
  RegCloseKey(key);

  FileAssociation::Register(files_, Description("C:\\kelvo.exe"));
  wchar_t text[32] = {};
  DWORD size = sizeof(text);
  EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Software\\Classes\\.kelvotest", nullptr,
                         RRF_RT_REG_SZ, nullptr, &text[0], &size),
            0);
  EXPECT_EQ(std::wstring(&text[0]), L"kelvotestfile");
}

}  // namespace
