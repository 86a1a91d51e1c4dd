#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class FileSystem;

/// INI files as the program reads and writes them: `kelvo.ini` and the index of a pack.
namespace basIni {

/// The longest value that `INIRead` gives, in bytes; what is longer is cut.
inline constexpr std::size_t kLongestValue = 64999;

/// An INI text, parsed once. Follows Microsoft's documentation of `GetPrivateProfileStringA`:
/// section and key names match without regard to case; the first section of a name and in it the
/// first key of a name count, even if a later one could answer; blanks and tabs around names and
/// values don't belong to them; `;` begins a comment at the start of a line only; what follows
/// "]" on a section's line is passed over; a line is ended by CR LF, LF or the end of the file.
/// Lines that are neither a section nor a key are passed over, junk included.
class IniFile {
 public:
  /// Parses a text. Takes any bytes.
  explicit IniFile(std::string text);
  /// Reads and parses a file; one that doesn't exist or can't be read has no sections.
  static IniFile Load(const FileSystem& files, std::string_view path);

  IniFile(IniFile&&) noexcept = default;
  IniFile& operator=(IniFile&&) noexcept = default;
  IniFile(const IniFile&) = delete;
  IniFile& operator=(const IniFile&) = delete;
  ~IniFile() = default;

  /// One key line. The views point into the text.
  struct Key {
    std::string_view name;
    std::string_view value;  // blanks around it taken off, quotes still on
    std::size_t line;        // 1-based
  };
  struct Section {
    std::string_view name;
    std::size_t line;       // 1-based line of its "[name]"
    std::size_t keysEnd;    // 0-based offset behind its last line that isn't blank
    std::vector<Key> keys;  // all its keys in the order of the text
  };

  /// The first section of that name, or null.
  [[nodiscard]] const Section* Find(std::string_view section) const;
  /// The first key of that name in a section, or null.
  [[nodiscard]] static const Key* Find(const Section& section, std::string_view key);
  /// All sections in the order of the text, repeated names included.
  [[nodiscard]] const std::vector<Section>& Sections() const { return sections_; }
  [[nodiscard]] const std::string& Content() const { return *text_; }

 private:
  std::unique_ptr<const std::string> text_;  // fixed in place: the views point into it
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> firstByName_;  // lower-case name to index
};

/// A value as it stands in a file, without blanks around it, as reading gives it: one pair of
/// equal quotes around it is taken off.
std::string_view WithoutQuotes(std::string_view value);

/// A value as it has to stand in a file so that reading gives it back: quoted if blanks or quotes
/// at its ends would be lost otherwise.
std::string Quoted(std::string_view value);

/// The value of a key, without one pair of equal quotes around it, cut to `kLongestValue` bytes
/// and at its first NUL; `defaultValue` if section or key is missing. A key that is there and
/// empty gives the empty text.
std::string INIRead(const IniFile& file, std::string_view section, std::string_view key,
                    std::string_view defaultValue);
/// The same without a copy: a view into the file's text, or `defaultValue`.
std::string_view ValueOf(const IniFile& file, std::string_view section, std::string_view key,
                         std::string_view defaultValue);

/// The same, straight from a file. For one value; for many, load an `IniFile` once.
std::string INIRead(const FileSystem& files, std::string_view path, std::string_view section,
                    std::string_view key, std::string_view defaultValue);

/// Sets one value. Keeps everything else in the file, comments included; creates file or section
/// as needed; replaces the file whole or not at all. The value is stored as it stands: blanks or
/// quotes around it are the reader's to take off. Has a trap: if nothing can be stored, nothing
/// is, and the caller goes on.
void INIWrite(const FileSystem& files, std::string_view path, std::string_view section,
              std::string_view key, std::string_view value);

}  // namespace basIni
