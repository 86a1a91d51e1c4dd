#include "tools/Kvpk.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/windows/System.h"

namespace {

using Windows::Handle;

/// A word as programs take it out of their command line: a quote, and backslashes in front of one
/// or at the end, get a backslash each.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t letter : word) {
    if (letter == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = letter == L'\\' ? backslashes + 1 : 0;
    quoted += letter;
  }
  return quoted.append(backslashes, L'\\') + L"\" ";
}

Handle NewFileToInherit(const std::filesystem::path& file) {
  SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
  return Handle(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Sets the place for temporary files that new processes get, and takes it back.
class TempForOthers {
 public:
  explicit TempForOthers(const std::filesystem::path& folder)
      : before_(std::filesystem::temp_directory_path()) {
    SetEnvironmentVariableW(L"TMP", folder.c_str());
  }
  TempForOthers(TempForOthers&&) = delete;
  TempForOthers(const TempForOthers&) = delete;
  TempForOthers& operator=(TempForOthers&&) = delete;
  TempForOthers& operator=(const TempForOthers&) = delete;
  ~TempForOthers() { SetEnvironmentVariableW(L"TMP", before_.c_str()); }

 private:
  std::filesystem::path before_;
};

}  // namespace

KvpkRun Kvpk(const TempFolder& folder, const std::vector<std::string>& arguments) {
  const TempFolder own;
  own.MakeFolder("tmp");
  const std::filesystem::path program(KVPK_PROGRAM);
  std::wstring line = Quoted(program.native());
  for (const std::string& word : arguments) line += Quoted(std::filesystem::path(word).native());

  DWORD status = 0;
  {
    const TempForOthers temp(own.At("tmp"));
    const Handle out = NewFileToInherit(own.At("out"));
    const Handle err = NewFileToInherit(own.At("err"));
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = INVALID_HANDLE_VALUE;
    start.hStdOutput = out.Get();
    start.hStdError = err.Get();
    PROCESS_INFORMATION started = {};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       folder.Native().c_str(), &start, &started) == 0)
      throw std::runtime_error("can't start " KVPK_PROGRAM);
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    WaitForSingleObject(process.Get(), INFINITE);
    GetExitCodeProcess(process.Get(), &status);
  }
  EXPECT_EQ(own.List("tmp"), std::vector<std::string>{}) << "temporary files are left";
  return {static_cast<int>(status), own.Read("out"), own.Read("err")};
}
