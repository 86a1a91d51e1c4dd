#pragma once

#include <QString>
#include <string>
#include <string_view>

class FileSystem;

/// The border between the toolkit's native paths and the engine's DOS path text.
namespace NativePath {

/// DOS path text of what a dialog or the desktop gave. Fails if it can't be said so.
std::string ToDosText(const FileSystem& files, const QString& native);

/// The native path of a folder, for a dialog to start in; empty if there is none there.
QString OfFolder(const FileSystem& files, std::string_view path);

}  // namespace NativePath
