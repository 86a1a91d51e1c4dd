#include "ui/NativePath.h"

#include <filesystem>
#include <system_error>

#include "platform/Failure.h"
#include "platform/FileSystem.h"

namespace NativePath {

std::string ToDosText(const FileSystem& files, const QString& native) {
  return files.ToDosText(std::filesystem::path(native.toStdU16String()));
}

QString OfFolder(const FileSystem& files, std::string_view path) {
  if (path.empty()) return {};
  try {
    const std::filesystem::path native = files.ToNative(path);
    std::error_code ignored;
    if (!std::filesystem::is_directory(native, ignored)) return {};
    return QString::fromStdU16String(native.u16string());
  } catch (const Failure&) {
    return {};  // a drive that isn't there, or a text that names nothing
  }
}

}  // namespace NativePath
