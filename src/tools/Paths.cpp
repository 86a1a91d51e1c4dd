#include "tools/Paths.h"

#include <system_error>

#include "pack/clsIMGtool.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "tools/Report.h"

std::filesystem::path NativePath(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::string ExistingFile(const FileSystem& files, const std::string& utf8) {
  std::string path = files.ToDosText(NativePath(utf8));
  const File readable = files.OpenForReading(path);
  return path;
}

std::string ExistingFolder(const FileSystem& files, const std::string& utf8) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(NativePath(utf8), ignored)) {
    Fail("\"", Text::FromUtf8Lossy(utf8), "\": no such folder");
  }
  return files.ToDosText(NativePath(utf8));
}

std::string MakeEmptyFolder(const FileSystem& files, const std::string& utf8) {
  const std::filesystem::path native = NativePath(utf8);
  std::string path = files.ToDosText(native);
  std::error_code error;
  if (std::filesystem::symlink_status(native, error).type() ==
      std::filesystem::file_type::not_found) {
    files.CreateFolder(path);
  } else if (!std::filesystem::is_directory(native, error) ||
             !std::filesystem::is_empty(native, error)) {
    Fail("\"", Text::FromUtf8Lossy(utf8), "\" isn't a new or an empty folder");
  }
  return path;
}

void LoadExisting(const FileSystem& files, clsIMGtool& archive, const std::string& utf8) {
  if (!archive.Load(ExistingFile(files, utf8))) {
    Fail("\"", Text::FromUtf8Lossy(utf8),
         R"(" isn't an IMG archive: it doesn't begin with "VER2")");
  }
}

bool IsSameFile(const std::string& left, const std::string& right) {
  std::error_code ignored;
  return std::filesystem::equivalent(NativePath(left), NativePath(right), ignored);
}
