#include "platform/Process.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>

#include "platform/Failure.h"
#include "platform/windows/System.h"

// Behind the rest of the system's headers, which they need.
#include <fcntl.h>
#include <io.h>
#include <sddl.h>
#include <shellapi.h>

namespace {

std::atomic<int> stopRequested = 0;

BOOL WINAPI NoteStop(DWORD reason) {
  const bool byKey = reason == CTRL_C_EVENT || reason == CTRL_BREAK_EVENT;
  const bool isFirst = stopRequested.exchange(byKey ? SIGINT : SIGTERM) == 0;
  // With its window, or at the end of the session, the process would end as soon as this returns:
  // the run gets the few seconds that the system waits.
  if (!byKey) Sleep(INFINITE);
  return isFirst ? TRUE : FALSE;
}

UINT codePageBefore = 0;

void RestoreCodePage() {
  SetConsoleOutputCP(codePageBefore);
}

std::string Utf8Of(const wchar_t* wide) {
  const std::u8string utf8 = std::filesystem::path(wide).u8string();
  return {utf8.begin(), utf8.end()};
}

// A security descriptor, in the system's text form, that lets the user in and nobody else.
std::optional<std::wstring> OwnerAlone() {
  HANDLE opened = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) return std::nullopt;
  const Windows::Handle token(opened);
  alignas(TOKEN_USER) std::array<std::byte, 256> user{};
  DWORD size = user.size();
  wchar_t* name = nullptr;
  if (GetTokenInformation(token.Get(), TokenUser, user.data(), size, &size) == 0 ||
      ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &name) ==
          0)
    return std::nullopt;
  std::wstring descriptor = L"D:P(A;OICI;FA;;;" + std::wstring(name) + L")";
  LocalFree(name);
  return descriptor;
}

// Makes a folder for the user alone; the system's error number, or 0.
DWORD MakeOwnFolder(const std::filesystem::path& folder) {
  const std::optional<std::wstring> text = OwnerAlone();
  SECURITY_ATTRIBUTES security = {sizeof(security), nullptr, FALSE};
  if (!text || ConvertStringSecurityDescriptorToSecurityDescriptorW(
                   text->c_str(), SDDL_REVISION_1, &security.lpSecurityDescriptor, nullptr) == 0)
    return GetLastError();
  const DWORD error =
      CreateDirectoryW(folder.c_str(), &security) == 0 ? GetLastError() : ERROR_SUCCESS;
  LocalFree(security.lpSecurityDescriptor);
  return error;
}

}  // namespace

namespace Process {

std::vector<std::string> Arguments(int argc, char** argv) {
  // What the start of the program has left of them is in the system's code page.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv, argv + argc};
  std::vector<std::string> arguments;
  arguments.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) arguments.push_back(Utf8Of(wide[i]));
  LocalFree(static_cast<void*>(wide));
  return arguments;
}

void PrepareStreams() {
  // What is printed is UTF-8, and no byte of it changes on its way.
  for (std::FILE* const stream : {stdin, stdout, stderr})
    if (_fileno(stream) >= 0) _setmode(_fileno(stream), _O_BINARY);
  HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(output, &mode) != 0)
    SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  codePageBefore = GetConsoleOutputCP();
  if (codePageBefore == 0 || codePageBefore == CP_UTF8) return;
  SetConsoleOutputCP(CP_UTF8);
  static_cast<void>(std::atexit(RestoreCodePage));
}

void CatchStop() {
  SetConsoleCtrlHandler(NoteStop, TRUE);
}

int StopRequested() {
  return stopRequested;
}

std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent,
                                        const std::string& prefix) {
  constexpr int kMostTries = 100;
  std::random_device random;
  DWORD error = ERROR_SUCCESS;
  for (int i = 0; i < kMostTries; ++i) {
    std::filesystem::path folder = parent / (prefix + std::to_string(random()));
    error = MakeOwnFolder(folder);
    if (error == ERROR_SUCCESS) return folder;
    if (error != ERROR_ALREADY_EXISTS) break;
  }
  Windows::FailWith("make a folder in", Windows::FromWideLossy(parent.native()), error);
}

bool IsPrivateFolder(const std::filesystem::path& folder) {
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  constexpr DWORD kLooked = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  // The user's own place for temporary files is nobody else's.
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & kLooked) == FILE_ATTRIBUTE_DIRECTORY;
}

}  // namespace Process
