#pragma once

#include <string>

class FileSystem;

/// Lets the desktop open files of one extension in this program.
namespace FileAssociation {

/// All texts are engine text.
struct Description {
  std::string extension;  ///< with its dot, such as ".kvpk"
  std::string typeName;   ///< the type's name in the system's own lists: letters alone
  std::string text;       ///< the type in words
  std::string program;    ///< DOS path text of the program file
  std::string name;       ///< what menus call the program; its files are named after it
  /// A PNG of 128 x 128 pixels that stands for program and files; empty for none. Not used on
  /// Windows, where the icon lies in the program file.
  std::string icon;
};

/// Makes the program the one that opens files of that extension, for this user.
///
/// Windows: the default values of four keys below HKEY_CLASSES_ROOT (extension, type, its
/// `DefaultIcon` and `shell\open\command`), each written as far as the user may.
/// Elsewhere, by the shared MIME info, desktop entry and MIME application rules: a MIME
/// type known by the name alone (other files begin as these do), a desktop entry that gets the
/// file as its one argument, and icons, below `XDG_DATA_HOME`; and a default in `mimeapps.list`
/// below `XDG_CONFIG_HOME`, unless the user has one. Files that are as they should be aren't
/// touched; if one had to be written, the tool that refreshes the desktop's cache of it is
/// started, and nobody waits for it. Without a home nothing happens; a place that can't be written
/// is a `Failure`.
void Register(const FileSystem& files, const Description& description);

}  // namespace FileAssociation
