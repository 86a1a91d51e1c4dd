#include "platform/FileAssociation.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "platform/posix/Detached.h"
#include "platform/posix/System.h"

namespace {

namespace fs = std::filesystem;

constexpr int kAnyEntry = kFindHidden | kFindSystem | kFindFolders;

// What stands in the user's folders. Texts are UTF-8, names are those of files.
struct Names {
  std::string mimeType;  // such as "application/x-kvpkfile"
  std::string program;   // such as "kelvo"
};

// A folder of the user's by the base directory rules; empty if there is none.
fs::path BaseFolder(const char* variable, const char* belowHome) {
  fs::path named = Posix::Environment(variable);
  if (named.is_absolute()) return named;
  const fs::path home = Posix::Environment("HOME");
  return home.is_absolute() ? home / belowHome : fs::path();
}

std::string XmlText(std::string_view text) {
  std::string escaped = Text::Replace(text, "&", "&amp;");
  escaped = Text::Replace(escaped, "<", "&lt;");
  return Text::Replace(escaped, "\"", "&quot;");
}

// A value of type string in a desktop entry.
std::string EntryString(std::string_view text) {
  std::string escaped = Text::Replace(text, "\\", "\\\\");
  escaped = Text::Replace(escaped, "\n", "\\n");
  escaped = Text::Replace(escaped, "\r", "\\r");
  return Text::Replace(escaped, "\t", "\\t");
}

// An argument of a desktop entry's `Exec`, ahead of the escapes that every string has.
std::string ExecArgument(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    if (letter == '%') quoted += '%';
    if (std::string_view("\"`$\\").find(letter) != std::string_view::npos) quoted += '\\';
    quoted += letter;
  }
  return quoted + '"';
}

std::string ExecLine(std::string_view program) {
  // By the desktop entry rules a program's own path can't hold "=", and readers differ
  // about "%" in it: the shell takes such a path as an argument.
  const bool isOdd = program.find_first_of("=%") != std::string_view::npos;
  const std::string runner = isOdd ? "/bin/sh -c " + ExecArgument(R"(exec "$0" "$@")") + " " : "";
  return EntryString(runner + ExecArgument(program) + " %f");
}

std::string MimePackage(const FileAssociation::Description& description, const Names& names) {
  return Concat(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
      "  <mime-type type=\"",
      XmlText(names.mimeType), "\">\n    <comment>", XmlText(Text::ToUtf8(description.text)),
      "</comment>\n    <glob pattern=\"*", XmlText(Text::ToUtf8(description.extension)),
      "\"/>\n  </mime-type>\n</mime-info>\n");
}

// Not shown in menus: it is there for the files.
std::string DesktopEntry(const FileAssociation::Description& description, const Names& names,
                         const std::string& program) {
  const std::string icon =
      description.icon.empty() ? "" : "Icon=" + EntryString(names.program) + "\n";
  return Concat(
      "[Desktop Entry]\nType=Application\nName=", EntryString(Text::ToUtf8(description.name)),
      "\nComment=", EntryString(Text::ToUtf8(description.text)), "\nExec=", ExecLine(program),
      "\nTryExec=", EntryString(program), "\n", icon,
      "Terminal=false\nNoDisplay=true\nMimeType=", names.mimeType,
      ";\nStartupWMClass=", EntryString(names.program), "\n");
}

// The text of a `mimeapps.list` with the type's default added; as it was if it names one already.
std::string WithDefault(std::string text, const Names& names) {
  constexpr std::string_view kSection = "[Default Applications]\n";
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
  std::size_t start = text.starts_with(kSection) ? 0 : text.find(Concat("\n", kSection));
  if (start == std::string::npos) {
    start = text.size();
    text += kSection;
  } else if (start != 0) {
    ++start;
  }
  const std::size_t keys = start + kSection.size();
  const std::string section = text.substr(keys - 1, text.find("\n[", keys - 1) - (keys - 1));
  if (section.find("\n" + names.mimeType + "=") == std::string::npos)
    text.insert(keys, names.mimeType + "=" + names.program + ".desktop\n");
  return text;
}

// Writes what differs below a folder of the user's. Paths below it have slashes.
class UserFolder {
 public:
  UserFolder(const FileSystem& files, fs::path native)
      : files_(files), native_(std::move(native)), dos_(files.ToDosText(native_)) {}

  // The content of a file, empty if there is none.
  [[nodiscard]] std::string Read(const std::string& below) const {
    return Exists(Dos(below)) ? files_.ReadWhole(Dos(below)) : "";
  }
  // Returns whether it wrote.
  [[nodiscard]] bool Write(const std::string& below, const std::string& text) const {
    const std::string path = Dos(below);
    if (Exists(path) && files_.ReadWhole(path) == text) return false;
    MakeFolders(DosPath::FolderPart(path));
    files_.ReplaceWhole(path, text);
    return true;
  }
  [[nodiscard]] std::string Native(const char* below) const { return (native_ / below).string(); }

 private:
  [[nodiscard]] std::string Dos(const std::string& below) const {
    return DosPath::Join(dos_, Text::Replace(below, "/", "\\"));
  }
  [[nodiscard]] bool Exists(std::string_view path) const {
    return !files_.FindFirst(path, kAnyEntry).empty();
  }
  // `folder` ends in a backslash.
  void MakeFolders(std::string_view folder) const {
    for (std::size_t end = folder.find('\\', folder.find('\\') + 1); end != std::string_view::npos;
         end = folder.find('\\', end + 1)) {
      const std::string_view part = folder.substr(0, end);
      if (!Exists(part)) files_.CreateFolder(part);
    }
  }

  const FileSystem& files_;
  fs::path native_;
  std::string dos_;
};

void RegisterType(const UserFolder& data, const FileAssociation::Description& description,
                  const Names& names) {
  bool hasChanged =
      data.Write("mime/packages/" + names.program + ".xml", MimePackage(description, names));
  if (!description.icon.empty()) {
    const std::string file =
        "icons/hicolor/128x128/mimetypes/" + Text::Replace(names.mimeType, "/", "-") + ".png";
    hasChanged = data.Write(file, description.icon) || hasChanged;
  }
  if (hasChanged)
    Posix::RunDetached(
        {.program = "update-mime-database", .arguments = {data.Native("mime")}, .folder = {}});
}

void RegisterProgram(const UserFolder& data, const FileAssociation::Description& description,
                     const Names& names, const std::string& program) {
  bool hasChanged = data.Write("applications/" + names.program + ".desktop",
                               DesktopEntry(description, names, program));
  if (!description.icon.empty()) {
    const std::string file = "icons/hicolor/128x128/apps/" + names.program + ".png";
    hasChanged = data.Write(file, description.icon) || hasChanged;
  }
  if (hasChanged)
    Posix::RunDetached({.program = "update-desktop-database",
                        .arguments = {data.Native("applications")},
                        .folder = {}});
}

}  // namespace

namespace FileAssociation {

void Register(const FileSystem& files, const Description& description) {
  const fs::path data = BaseFolder("XDG_DATA_HOME", ".local/share");
  const fs::path config = BaseFolder("XDG_CONFIG_HOME", ".config");
  if (data.empty() || config.empty()) return;
  const Names names = {.mimeType = "application/x-" + Text::ToUtf8(description.typeName),
                       .program = Text::ToUtf8(Text::LowerCase(description.name))};
  const std::string program = files.ToNative(description.program).string();

  const UserFolder dataFolder(files, data);
  RegisterType(dataFolder, description, names);
  RegisterProgram(dataFolder, description, names, program);
  const UserFolder configFolder(files, config);
  constexpr const char* kDefaults = "mimeapps.list";
  static_cast<void>(
      configFolder.Write(kDefaults, WithDefault(configFolder.Read(kDefaults), names)));
}

}  // namespace FileAssociation
