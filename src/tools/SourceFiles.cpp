#include "tools/SourceFiles.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "pack/Catalogue.h"
#include "platform/DosPath.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "tools/Report.h"
#include "tools/Utf8.h"

namespace {

constexpr int kAnyEntry = kFindHidden | kFindSystem | kFindFolders;

std::string WithoutByteOrderMark(std::string text) {
  if (text.starts_with(Utf8::kByteOrderMark)) text.erase(0, Utf8::kByteOrderMark.size());
  return text;
}

/// A line or value as engine text.
std::string Converted(std::string_view utf8, const SourcePlace& place) {
  if (utf8.find('\0') != std::string_view::npos) FailAt(place, "it holds a NUL byte");
  if (auto text = Text::FromUtf8(utf8)) return *std::move(text);
  for (std::string_view rest = utf8; !rest.empty();) {
    const Utf8::Character character = Utf8::FirstCharacter(rest);
    if (!character.valid) break;
    if (!Text::FromUtf8(rest.substr(0, character.length))) {
      std::ostringstream number;
      number << std::hex << std::uppercase << character.codePoint;
      FailAt(place, "Windows-1252 doesn't have the character U+", number.str());
    }
    rest.remove_prefix(character.length);
  }
  FailAt(place, "it isn't UTF-8");
}

void CheckLength(std::size_t length, const SourcePlace& place) {
  if (length > basIni::kLongestValue) {
    FailAt(place, "too long: ", length, " bytes up to here, a pack takes ", basIni::kLongestValue);
  }
}

bool ByLowerCase(const std::string& left, const std::string& right) {
  const std::string lowerLeft = Text::LowerCase(left);
  const std::string lowerRight = Text::LowerCase(right);
  return lowerLeft != lowerRight ? lowerLeft < lowerRight : left < right;
}

/// Fails if the folder holds a name that the file layer doesn't see.
void RefuseUnseenNames(const FileSystem& files, const SourceFolder& folder,
                       const std::set<std::string>& seen) {
  for (const auto& entry : std::filesystem::directory_iterator(files.ToNative(folder.path))) {
    const std::u8string native = entry.path().filename().u8string();
    const std::string utf8(native.begin(), native.end());
    const auto name = Text::FromDecomposedUtf8(utf8);
    if (utf8.starts_with('.') || (name && seen.contains(*name))) continue;
    FailAt(folder.PlaceOf(Text::FromUtf8Lossy(utf8)),
           name ? "it can't be reached by this name" : "Windows-1252 can't say this name");
  }
}

}  // namespace

std::string Shown(const SourcePlace& place) {
  return place.line == 0 ? place.file : Concat(place.file, ":", place.line);
}

SourceFolder SourceFolder::Below(std::string_view name) const {
  return {PathOf(name), shown + std::string(name) + "/"};
}

std::string SourceFolder::PathOf(std::string_view name) const {
  return DosPath::Join(path, name);
}

SourcePlace SourceFolder::PlaceOf(std::string_view name) const {
  return {shown + std::string(name), 0};
}

FolderContent ContentOf(const FileSystem& files, const SourceFolder& folder) {
  if (files.FindFirst(folder.path, kAnyEntry).empty()) return {};
  const std::vector<std::string> all = files.FindAll(folder.PathOf("*"), kAnyEntry);
  const std::vector<std::string> noFolders =
      files.FindAll(folder.PathOf("*"), kFindHidden | kFindSystem);
  const std::set<std::string> fileNames(noFolders.begin(), noFolders.end());
  RefuseUnseenNames(files, folder, {all.begin(), all.end()});

  FolderContent content;
  for (const std::string& name : all) {
    if (name.starts_with('.')) continue;
    (fileNames.contains(name) ? content.files : content.folders).push_back(name);
  }
  std::sort(content.files.begin(), content.files.end(), ByLowerCase);
  std::sort(content.folders.begin(), content.folders.end(), ByLowerCase);
  return content;
}

std::string ReadSourceText(const FileSystem& files, const SourceFolder& folder,
                           std::string_view name) {
  const std::string content = WithoutByteOrderMark(files.ReadWhole(folder.PathOf(name)));
  std::string_view rest = content;
  if (rest.ends_with('\n')) rest.remove_suffix(rest.ends_with("\r\n") ? 2 : 1);

  std::string text;
  std::size_t lengthInPack = 0;
  SourcePlace place = folder.PlaceOf(name);
  for (bool more = true; more;) {
    ++place.line;
    const std::size_t end = rest.find('\n');
    more = end != std::string_view::npos;
    std::string_view line = rest.substr(0, end);
    if (more && line.ends_with('\r')) line.remove_suffix(1);
    const std::string converted = Converted(line, place);
    if (converted.find(kLineBreakMark) != std::string::npos) {
      FailAt(place, "\"", kLineBreakMark, "\" stands for a line break in a pack");
    }
    lengthInPack += converted.size() + (more ? kLineBreakMark.size() : 0);
    CheckLength(lengthInPack, place);
    text += converted;
    if (more) text += "\r\n";
    rest.remove_prefix(more ? end + 1 : rest.size());
  }
  return text;
}

std::string SourceText(const FileSystem& files, const std::string& path) {
  const std::string_view folder = DosPath::FolderPart(path);
  return ReadSourceText(files, {std::string(folder), ""},
                        std::string_view(path).substr(folder.size()));
}

SourceIni::SourceIni(const FileSystem& files, const SourceFolder& folder, std::string_view name)
    : file_(folder.PlaceOf(name).file),
      ini_(WithoutByteOrderMark(files.ReadWhole(folder.PathOf(name)))) {
  RefuseForeignLines();
  RefuseRepetitions();
}

void SourceIni::RefuseForeignLines() const {
  std::set<std::size_t> known;
  for (const auto& section : ini_.Sections()) {
    known.insert(section.line);
    for (const auto& key : section.keys) known.insert(key.line);
  }
  std::string_view rest = ini_.Content();
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
    const std::string_view line = Text::Trim(rest.substr(0, end + 1), " \t\r\n");
    rest.remove_prefix(end + 1);
    if (line.empty() || line.front() == ';' || known.contains(number)) continue;
    FailAt(At(number), "neither a section, nor a key with its value in one, nor a comment");
  }
}

void SourceIni::RefuseRepetitions() const {
  std::set<std::string> sections;
  for (const auto& section : ini_.Sections()) {
    if (!sections.insert(Text::LowerCase(section.name)).second) {
      FailAt(At(section.line), "the section [", Text::FromUtf8Lossy(section.name),
             "] stands here twice");
    }
    std::set<std::string> keys;
    for (const auto& key : section.keys) {
      if (keys.insert(Text::LowerCase(key.name)).second) continue;
      FailAt(At(key.line), "the key ", Text::FromUtf8Lossy(key.name),
             " stands in this section twice");
    }
  }
}

std::vector<SourceValue> SourceIni::Sections() const {
  std::vector<SourceValue> names;
  for (const auto& section : ini_.Sections()) {
    names.push_back({Text::FromUtf8Lossy(section.name), At(section.line)});
  }
  return names;
}

void SourceIni::AllowKeys(std::string_view section,
                          std::initializer_list<std::string_view> allowed) const {
  const auto* const found = ini_.Find(section);
  if (found == nullptr) return;
  for (const auto& key : found->keys) {
    const bool known = std::any_of(allowed.begin(), allowed.end(), [&](std::string_view name) {
      return Text::EqualsIgnoringCase(name, key.name);
    });
    if (!known) FailAt(At(key.line), "unknown key ", Text::FromUtf8Lossy(key.name));
  }
}

SourceValue SourceIni::ValueOf(const basIni::IniFile::Key& key) const {
  SourceValue value{Converted(basIni::WithoutQuotes(key.value), At(key.line)), At(key.line)};
  CheckLength(value.text.size(), value.place);
  return value;
}

std::optional<SourceValue> SourceIni::Find(std::string_view section, std::string_view key) const {
  const auto* const in = ini_.Find(section);
  const auto* const found = in != nullptr ? basIni::IniFile::Find(*in, key) : nullptr;
  if (found == nullptr) return std::nullopt;
  return ValueOf(*found);
}

SourceValue SourceIni::Value(std::string_view section, std::string_view key) const {
  if (auto value = Find(section, key)) return *std::move(value);
  const auto* const in = ini_.Find(section);
  return {"", At(in != nullptr ? in->line : 0)};
}

int SourceIni::Number(std::string_view section, std::string_view key, int least, int most) const {
  const SourceValue value = Value(section, key);
  const auto number = Text::WholeNumber(value.text);
  if (!number || *number < least || *number > most) {
    FailAt(value.place, key, " must be a whole number from ", least, " to ", most);
  }
  return *number;
}

std::vector<SourceIni::Pair> SourceIni::Pairs(std::string_view section) const {
  std::vector<Pair> pairs;
  const auto* const found = ini_.Find(section);
  if (found == nullptr) return pairs;
  for (const auto& key : found->keys) {
    pairs.push_back({Converted(key.name, At(key.line)), ValueOf(key)});
  }
  return pairs;
}
