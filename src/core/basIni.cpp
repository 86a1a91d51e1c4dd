#include "core/basIni.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "core/basDebugLog.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

namespace basIni {
namespace {

constexpr std::string_view kBlanks = " \t";

/// `part` without blanks around it. What is left of nothing but blanks still has its place in the
/// text, at the end of `part`, where a value can be put.
std::string_view WithoutBlanks(std::string_view part) {
  const std::string_view inner = Text::Trim(part, kBlanks);
  return inner.empty() ? part.substr(part.size()) : inner;
}

/// Takes the next line off `rest`, without its CR LF or LF.
std::string_view NextLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  if (end != std::string_view::npos && line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// The name in a section's line, or nothing. `line` has no blanks around it.
std::optional<std::string_view> SectionName(std::string_view line) {
  if (!line.starts_with('[')) return std::nullopt;
  const std::size_t end = line.find(']');
  if (end == std::string_view::npos) return std::nullopt;
  return Text::Trim(line.substr(1, end - 1), kBlanks);
}

std::size_t OffsetIn(std::string_view text, std::string_view part) {
  return static_cast<std::size_t>(part.data() - text.data());
}

/// The text of `file` with one value set: over the old one, behind the section's last line, or in
/// a new section at the end.
std::string WithValue(const IniFile& file, std::string_view section, std::string_view key,
                      std::string_view value) {
  std::string text = file.Content();
  const IniFile::Section* const inSection = file.Find(section);
  const IniFile::Key* const found = inSection ? IniFile::Find(*inSection, key) : nullptr;
  if (found != nullptr) {
    return text.replace(OffsetIn(file.Content(), found->value), found->value.size(), value);
  }
  std::size_t place = inSection ? inSection->keysEnd : text.size();
  if (place > 0 && text[place - 1] != '\n') {
    text.insert(place, "\r\n");
    place += 2;
  }
  const std::string line = std::string(key) + "=" + std::string(value) + "\r\n";
  return text.insert(place, inSection ? line : "[" + std::string(section) + "]\r\n" + line);
}

}  // namespace

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string Quoted(std::string_view value) {
  const bool needsQuotes =
      Text::Trim(value, kBlanks).size() != value.size() || WithoutQuotes(value) != value;
  return needsQuotes ? "\"" + std::string(value) + "\"" : std::string(value);
}

IniFile::IniFile(std::string text) : text_(std::make_unique<const std::string>(std::move(text))) {
  std::string_view rest = *text_;
  for (std::size_t number = 1; !rest.empty(); ++number) {
    const std::string_view line = Text::Trim(NextLine(rest), kBlanks);
    if (line.empty() || line.front() == ';') {
      // Passed over. A comment belongs to the section that it stands in, a blank line doesn't.
    } else if (const auto name = SectionName(line)) {
      firstByName_.try_emplace(Text::LowerCase(*name), sections_.size());
      sections_.push_back({*name, number, 0, {}});
    } else if (const std::size_t equals = line.find('=');
               equals != std::string_view::npos && equals > 0 && !sections_.empty()) {
      sections_.back().keys.push_back(
          {WithoutBlanks(line.substr(0, equals)), WithoutBlanks(line.substr(equals + 1)), number});
    }
    if (!line.empty() && !sections_.empty()) {
      sections_.back().keysEnd = text_->size() - rest.size();
    }
  }
}

IniFile IniFile::Load(const FileSystem& files, std::string_view path) {
  try {
    return IniFile(files.ReadWhole(path));
  } catch (const Failure&) {
    return IniFile(std::string());
  }
}

const IniFile::Section* IniFile::Find(std::string_view section) const {
  const auto found = firstByName_.find(Text::LowerCase(section));
  return found == firstByName_.end() ? nullptr : &sections_[found->second];
}

const IniFile::Key* IniFile::Find(const Section& section, std::string_view key) {
  const auto found = std::find_if(
      section.keys.begin(), section.keys.end(),
      [&](const Key& candidate) { return Text::EqualsIgnoringCase(candidate.name, key); });
  return found == section.keys.end() ? nullptr : &*found;
}

std::string_view ValueOf(const IniFile& file, std::string_view section, std::string_view key,
                         std::string_view defaultValue) {
  const IniFile::Section* const inSection = file.Find(section);
  const IniFile::Key* const found = inSection ? IniFile::Find(*inSection, key) : nullptr;
  if (found == nullptr) return defaultValue;
  const std::string_view value = WithoutQuotes(found->value).substr(0, kLongestValue);
  return value.substr(0, value.find('\0'));
}

std::string INIRead(const IniFile& file, std::string_view section, std::string_view key,
                    std::string_view defaultValue) {
  return std::string(ValueOf(file, section, key, defaultValue));
}

std::string INIRead(const FileSystem& files, std::string_view path, std::string_view section,
                    std::string_view key, std::string_view defaultValue) {
  return INIRead(IniFile::Load(files, path), section, key, defaultValue);
}

void INIWrite(const FileSystem& files, std::string_view path, std::string_view section,
              std::string_view key, std::string_view value) {
  Trapped("basIni.INIWrite", [&] {
    // A file that is there but can't be read must not be replaced by one with a single value.
    const bool exists = !files.FindFirst(path, kFindHidden | kFindSystem | kFindFolders).empty();
    const IniFile file(exists ? files.ReadWhole(path) : std::string());
    files.ReplaceWhole(path, WithValue(file, section, key, value));
  });
}

}  // namespace basIni
