#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/basIni.h"
#include "platform/Failure.h"

class FileSystem;

/// The files of a pack's source folder as `build` reads them: UTF-8, with errors that name file
/// and line. Every text that comes out is engine text.

/// Where something stands in the folder.
struct SourcePlace {
  std::string file;      // relative to the folder, with slashes, in engine text
  std::size_t line = 0;  // 1-based; 0 means the file as a whole
};

std::string Shown(const SourcePlace& place);

template <typename... Parts>
[[noreturn]] void FailAt(const SourcePlace& place, const Parts&... parts) {
  Fail(Shown(place), ": ", parts...);
}

/// A folder of the source, with the way to open what lies in it.
struct SourceFolder {
  std::string path;   // DOS path text
  std::string shown;  // for messages: empty for the whole, else with a slash behind it

  [[nodiscard]] SourceFolder Below(std::string_view name) const;
  [[nodiscard]] std::string PathOf(std::string_view name) const;
  [[nodiscard]] SourcePlace PlaceOf(std::string_view name) const;
};

/// What lies in a folder, in the bytewise order of lower-case names. Names that begin with a dot
/// are left out.
struct FolderContent {
  std::vector<std::string> files;
  std::vector<std::string> folders;
};
/// Fails on a name that a pack can't say. A folder that doesn't exist has no content.
FolderContent ContentOf(const FileSystem& files, const SourceFolder& folder);

/// A whole text file: script, readme or page. Its line ends become CR LF; the last one isn't part
/// of it. Fails on a character that Windows-1252 lacks, a NUL, the line break mark of the index,
/// and on a text that is too long for the index.
std::string ReadSourceText(const FileSystem& files, const SourceFolder& folder,
                           std::string_view name);

/// The same for a file by its own path (DOS path text).
std::string SourceText(const FileSystem& files, const std::string& path);

/// A value of an INI file.
struct SourceValue {
  std::string text;
  SourcePlace place;
};

/// An INI file of the source. Unlike INI files elsewhere, whatever isn't understood is an error.
class SourceIni {
 public:
  /// Reads the file; fails on lines that are neither section, key nor comment, and on sections
  /// and keys that stand there twice.
  SourceIni(const FileSystem& files, const SourceFolder& folder, std::string_view name);

  /// The names of all sections with the places where they begin.
  [[nodiscard]] std::vector<SourceValue> Sections() const;
  [[nodiscard]] bool Has(std::string_view section) const { return ini_.Find(section) != nullptr; }
  /// Fails if the section has a key that isn't among `allowed`.
  void AllowKeys(std::string_view section, std::initializer_list<std::string_view> allowed) const;
  /// A value; nothing if section or key is missing. Fails as `ReadSourceText` does, but for the
  /// line break mark, which is plain text here.
  [[nodiscard]] std::optional<SourceValue> Find(std::string_view section,
                                                std::string_view key) const;
  /// The same, with an empty text at the section's place for a missing one.
  [[nodiscard]] SourceValue Value(std::string_view section, std::string_view key) const;
  /// A whole number from `least` to `most`.
  [[nodiscard]] int Number(std::string_view section, std::string_view key, int least,
                           int most) const;
  /// All keys of a section with their values; each key's name comes as engine text.
  struct Pair {
    std::string key;
    SourceValue value;
  };
  [[nodiscard]] std::vector<Pair> Pairs(std::string_view section) const;

 private:
  void RefuseForeignLines() const;
  void RefuseRepetitions() const;
  [[nodiscard]] SourcePlace At(std::size_t line) const { return {file_, line}; }
  [[nodiscard]] SourceValue ValueOf(const basIni::IniFile::Key& key) const;

  std::string file_;
  basIni::IniFile ini_;
};
