#include "platform/posix/Place.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "platform/DosPath.h"
#include "platform/Text.h"

namespace Posix {

namespace {

using Lookup::ComesBefore;
using Lookup::WithoutTrailingDots;
using Kind = Place::Kind;

bool IsRefused(std::string_view native) {
  return native.find_first_of("\\:*?") != std::string_view::npos || Lookup::IsLockFile(native);
}

// A name on disk as engine text; nothing if DOS path text can't say it.
std::optional<std::string> NameOnDisk(std::string_view native) {
  return IsRefused(native) ? std::nullopt : Text::FromDecomposedUtf8(native);
}

// A name on disk that the code page can't say, by the numbers of its letters.
std::optional<std::string> AliasOnDisk(std::string_view native) {
  return IsRefused(native) ? std::nullopt : Text::AliasOf(native);
}

Kind KindOf(const struct stat& status) {
  if (S_ISREG(status.st_mode)) return Kind::kFile;
  return S_ISDIR(status.st_mode) ? Kind::kFolder : Kind::kSpecial;
}

// An open folder, entry by entry.
class FolderWalk {
 public:
  explicit FolderWalk(const std::string& folder) : folder_(opendir(folder.c_str()), closedir) {
    error_ = folder_ ? 0 : errno;
  }
  // The next entry but `.` and `..`; null at the end, or when the folder can't be read.
  const dirent* Next() {
    if (!folder_) return nullptr;
    while (true) {
      errno = 0;
      const dirent* const entry = readdir(folder_.get());  // NOLINT(concurrency-mt-unsafe)
      if (entry == nullptr) error_ = errno;
      if (entry == nullptr || !IsDots(entry->d_name)) return entry;
    }
  }
  [[nodiscard]] int Error() const { return error_; }
  [[nodiscard]] int Number() const { return dirfd(folder_.get()); }

 private:
  static bool IsDots(std::string_view name) { return name == "." || name == ".."; }

  std::unique_ptr<DIR, int (*)(DIR*)> folder_;
  int error_;
};

bool HasEntry(const std::string& folder, const std::string& name, int& error) {
  struct stat status = {};
  if (fstatat(AT_FDCWD, Below(folder, Text::ToUtf8(name)).c_str(), &status, AT_SYMLINK_NOFOLLOW) ==
      0)
    return true;
  // A name too long for this disk isn't on it.
  error = errno == ENOENT || errno == ENAMETOOLONG ? 0 : errno;
  return false;
}

// A name on disk: as engine text, and its own bytes, which may write the same otherwise.
struct NamedEntry {
  std::string name;
  std::string native;
};

// The entry that one component stands for; nothing if there is none, and then `error` is 0 unless
// the folder couldn't be looked at.
std::optional<NamedEntry> FindEntry(const std::string& folder, const std::string& written,
                                    int& error) {
  error = 0;
  if (HasEntry(folder, written, error)) return NamedEntry{written, Text::ToUtf8(written)};
  if (error != 0) return std::nullopt;
  const std::string name(WithoutTrailingDots(written));
  if (name.empty()) return std::nullopt;
  if (name != written && HasEntry(folder, name, error)) return NamedEntry{name, Text::ToUtf8(name)};
  if (error != 0) return std::nullopt;

  std::optional<NamedEntry> best;
  const bool mayBeAlias = Text::FromAlias(name).has_value();
  FolderWalk walk(folder);
  while (const dirent* const entry = walk.Next()) {
    std::optional<std::string> found = NameOnDisk(entry->d_name);
    if (!found && mayBeAlias) found = AliasOnDisk(entry->d_name);
    if (!found) continue;
    const bool matches =
        Text::EqualsIgnoringCase(*found, name) || Text::EqualsIgnoringCase(*found, written);
    if (matches && (!best || ComesBefore(*found, best->name)))
      best = {*std::move(found), entry->d_name};
  }
  // A folder may let its entries be opened and yet not be listed: then exact names are all.
  if (walk.Error() != EACCES) error = walk.Error();
  return best;
}

// Where a path begins; nothing, and the reason in errno, if there is no such place.
std::optional<std::string> StartOf(const FileSystemOptions& options, const DosPathParts& parts) {
  if (!parts.fromCurrentFolder) {
    if (parts.drive == 'z') return "/";
    errno = ENODEV;
    return options.winePrefix ? DriveOfPrefix(*options.winePrefix, parts.drive) : std::nullopt;
  }
  const std::unique_ptr<char, void (*)(void*)> current(getcwd(nullptr, 0), std::free);
  if (!current) return std::nullopt;
  std::string folder = current.get();
  for (std::size_t i = 0; i < parts.up && folder != "/"; ++i) folder = FolderOf(folder);
  return folder;
}

Place Nowhere(std::string native, int error) {
  Place place;
  place.native = std::move(native);
  place.error = error;
  return place;
}

void Stat(Place& place) {
  place.kind = Kind::kNowhere;
  place.error = 0;
  if (stat(place.native.c_str(), &place.status) == 0)
    place.kind = KindOf(place.status);
  else
    place.error = errno;
}

// Steps from the folder `place` to one of its entries.
void Enter(Place& place, const std::string& written) {
  const std::string folder = place.native;
  place.asWritten = WithoutTrailingDots(written);
  int error = 0;
  const std::optional<NamedEntry> found = FindEntry(folder, written, error);
  place.name = found ? found->name : place.asWritten;
  place.native = Below(folder, found ? found->native : NativeName(place.asWritten));
  if (found) {
    Stat(place);
  } else if (error != 0) {
    place = Nowhere(folder, error);
  } else {
    place.kind = Kind::kFree;
  }
}

// The place of all `names` below `start`, or else of all but the last, or else `start` itself;
// `found` gets how many names that are. The first two only where each name is on disk as written:
// since an exact match always goes first, the system may then be asked once for all of them.
Place FindAsWritten(const std::string& start, const std::vector<std::string>& names,
                    std::size_t& found) {
  Place place;
  std::string folder = start;
  for (std::size_t i = 0; i + 1 < names.size(); ++i) folder = Below(folder, Text::ToUtf8(names[i]));
  for (found = names.size(); found > 0 && found + 1 >= names.size(); --found) {
    const std::string& last = names[found - 1];
    place.native = found == names.size() ? Below(folder, Text::ToUtf8(last)) : folder;
    place.name = last;
    place.asWritten = WithoutTrailingDots(last);
    Stat(place);
    if (place.Exists()) return place;
  }
  found = 0;
  place = Place();
  place.native = start;
  Stat(place);
  return place;
}

}  // namespace

DosPathParts ParseDosPath(std::string_view path) {
  DosPathParts parts;
  if (path.empty() || path.find('\0') != std::string_view::npos) return parts;
  const std::size_t colon = path.find(':');
  if (colon != std::string_view::npos) {
    if (colon != 1 || !Lookup::IsDriveLetter(path[0])) return parts;
    parts.drive = Text::LowerCase(path[0]);
    path.remove_prefix(2);
    if (path.find(':') != std::string_view::npos) return parts;
  }
  parts.valid = true;
  parts.fromCurrentFolder =
      parts.drive == 'z' && (path.empty() || !Lookup::IsSeparator(path.front()));
  parts.endsInSeparator = !path.empty() && Lookup::IsSeparator(path.back());
  parts.AddNames(path);
  return parts;
}

Place FindPlace(const FileSystemOptions& options, std::string_view path) {
  return FindPlace(options, ParseDosPath(path));
}

Place FindPlace(const FileSystemOptions& options, const DosPathParts& parts) {
  const bool sayable =
      parts.valid &&
      std::none_of(parts.names.begin(), parts.names.end(), [](const std::string& name) {
        return DosPath::HasWildcards(name) || Lookup::IsLockFile(name);
      });
  if (!sayable) return Nowhere({}, EINVAL);
  const std::optional<std::string> start = StartOf(options, parts);
  if (!start) return Nowhere({}, errno);

  std::size_t found = 0;
  Place place = FindAsWritten(*start, parts.names, found);
  for (auto name = parts.names.begin() + static_cast<std::ptrdiff_t>(found);
       name != parts.names.end(); ++name) {
    if (place.kind == Kind::kFree) {
      place = Nowhere(FolderOf(place.native), ENOENT);
      place.missing.assign(name - 1, parts.names.end());
      return place;
    }
    if (place.kind == Kind::kNowhere) return place;
    if (place.kind != Kind::kFolder) return Nowhere(place.native, ENOTDIR);
    Enter(place, *name);
  }
  place.endsInSeparator = parts.endsInSeparator;
  if (parts.endsInSeparator && (place.kind == Kind::kFile || place.kind == Kind::kSpecial))
    return Nowhere(place.native, ENOTDIR);
  return place;
}

std::vector<FolderEntry> MatchingEntries(const std::string& folder, std::string_view pattern,
                                         SystemError& error) {
  std::vector<FolderEntry> entries;
  FolderWalk walk(folder);
  while (const dirent* const entry = walk.Next()) {
    std::optional<std::string> name = NameOnDisk(entry->d_name);
    if (!name || !DosPath::MatchesWildcards(*name, pattern)) continue;
    Kind kind = entry->d_type == DT_DIR ? Kind::kFolder : Kind::kFile;
    if (entry->d_type != DT_REG && entry->d_type != DT_DIR) {
      struct stat status = {};
      if (fstatat(walk.Number(), entry->d_name, &status, 0) != 0) continue;
      kind = KindOf(status);
    }
    entries.push_back({entry->d_name, *std::move(name), kind});
  }
  error = walk.Error();
  std::sort(entries.begin(), entries.end(), [](const FolderEntry& left, const FolderEntry& right) {
    return ComesBefore(left.name, right.name);
  });
  return entries;
}

std::optional<std::string> DriveOfPrefix(const std::filesystem::path& prefix, char letter) {
  const std::string link = (prefix / "dosdevices" / std::string{letter, ':'}).string();
  struct stat status = {};
  const bool isFolder = stat(link.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  if (isFolder) return RealPath(link);
  errno = ENODEV;
  return std::nullopt;
}

std::optional<std::string> DosTextOf(const std::filesystem::path& native) {
  std::string text = "Z:";
  for (const std::filesystem::path& part : native.relative_path()) {
    if (part.empty() || part == ".") continue;
    std::optional<std::string> name = NameOnDisk(part.native());
    if (!name) name = AliasOnDisk(part.native());
    if (!name) return std::nullopt;
    text.append("\\").append(*name);
  }
  return text.size() == 2 ? "Z:\\" : text;
}

std::string NativeName(const std::string& name) {
  const std::optional<std::string> behindAlias = Text::FromAlias(name);
  return behindAlias ? *behindAlias : Text::ToUtf8(name);
}

bool IsWriteProtected(const struct stat& status) {
  return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

std::string Below(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

std::string FolderOf(const std::string& native) {
  const std::size_t slash = native.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : native.substr(0, slash);
}

std::optional<std::string> RealPath(const std::string& native) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(native.c_str(), nullptr), std::free);
  return real ? std::optional<std::string>(real.get()) : std::nullopt;
}

}  // namespace Posix
