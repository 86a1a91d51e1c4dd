#include "platform/windows/Place.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/DosPath.h"
#include "platform/Text.h"

namespace Windows {

namespace {

using Lookup::ComesBefore;
using Lookup::IsSeparator;
using Lookup::NextName;
using Lookup::WithoutTrailingDots;
using Kind = Place::Kind;

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongShare = L"\\\\?\\UNC\\";

// Takes `\\server\share` off the front of `rest`, which begins with two separators; nothing if it
// is no such thing but one of the system's own forms.
std::string TakeShare(std::string_view& rest) {
  rest.remove_prefix(2);
  const std::string_view server = NextName(rest);
  const std::string_view share = NextName(rest);
  const bool plain = DosPath::IsPlainFileName(server) && DosPath::IsPlainFileName(share);
  return plain ? "\\\\" + std::string(server) + "\\" + std::string(share) : "";
}

// What a path begins with, taken off the front of `rest`; nothing if it can't begin so.
std::optional<std::string> TakeStart(std::string_view& rest) {
  if (rest.size() >= 2 && IsSeparator(rest[0]) && IsSeparator(rest[1])) {
    std::string share = TakeShare(rest);
    return share.empty() ? std::nullopt : std::optional(std::move(share));
  }
  if (IsSeparator(rest[0])) return "\\";
  const std::size_t colon = rest.find(':');
  if (colon == std::string_view::npos) return "";
  if (colon != 1 || !Lookup::IsDriveLetter(rest[0])) return std::nullopt;
  std::string start(rest.substr(0, 2));
  rest.remove_prefix(2);
  if (!rest.empty() && IsSeparator(rest[0])) start += '\\';
  return start;
}

// Whether a component can be asked for: neither wildcards, the system's own ones included, nor
// what no name has.
bool CanBeAskedFor(std::string_view name) {
  return !WithoutTrailingDots(name).empty() && !Lookup::IsLockFile(name) &&
         std::none_of(name.begin(), name.end(), [](char letter) {
           constexpr std::string_view kRefused = "*?\"<>|:";
           return static_cast<unsigned char>(letter) < 0x20 ||
                  kRefused.find(letter) != std::string_view::npos;
         });
}

// The length of the root that a native path in its long form begins with.
std::size_t LengthOfRoot(const std::wstring& native) {
  std::size_t end = kLongPrefix.size();
  const int components = native.starts_with(kLongShare) ? 3 : 1;
  for (int i = 0; i < components && end != std::wstring::npos; ++i)
    end = native.find(L'\\', i == 0 ? end : end + 1);
  return end == std::wstring::npos ? native.size() : end + 1;
}

// The folder, in its long form, at which a path begins; nothing, and the reason in
// `GetLastError`, if there is none.
std::optional<std::wstring> StartOf(const DosPathParts& parts) {
  const bool isRoot = parts.start.ends_with('\\') || parts.start.starts_with('\\');
  const std::wstring asked = ToWide(isRoot ? parts.start : parts.start + ".");
  const DWORD room = GetFullPathNameW(asked.c_str(), 0, nullptr, nullptr);
  std::wstring full(room, L'\0');
  full.resize(GetFullPathNameW(asked.c_str(), room, full.data(), nullptr));
  if (full.empty()) return std::nullopt;
  std::wstring folder = LongForm(full);
  if (isRoot && !folder.ends_with(L'\\')) folder += L'\\';
  for (std::size_t i = 0; !isRoot && i < parts.up; ++i) folder = FolderOf(folder);
  return folder;
}

Place Nowhere(std::wstring native, DWORD error) {
  Place place;
  place.native = std::move(native);
  place.error = error;
  return place;
}

// A component's path. What an alias looks like may be a name of its own, which then goes first.
std::wstring NameIn(const std::wstring& folder, std::string_view name) {
  std::wstring native = Below(folder, ToWide(name));
  const std::wstring behindAlias = FromAlias(name);
  const bool isName =
      behindAlias == ToWide(name) || GetFileAttributesW(native.c_str()) != INVALID_FILE_ATTRIBUTES;
  return isName ? native : Below(folder, behindAlias);
}

Handle OpenForLooking(const std::wstring& native) {
  return Handle(CreateFileW(native.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

// The attributes of an entry, a link's with the two that count of what it leads to; nothing, and
// the reason in `GetLastError`, if it leads nowhere.
std::optional<DWORD> BehindLinks(const std::wstring& native, DWORD attributes) {
  constexpr DWORD kOfTarget = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return attributes;
  const Handle target = OpenForLooking(native);
  BY_HANDLE_FILE_INFORMATION information = {};
  if (!target.IsOpen() || GetFileInformationByHandle(target.Get(), &information) == 0)
    return std::nullopt;
  return (attributes & ~kOfTarget) | (information.dwFileAttributes & kOfTarget);
}

void SetKind(Place& place, DWORD attributes) {
  const std::optional<DWORD> all = BehindLinks(place.native, attributes);
  place.kind = Kind::kNowhere;
  place.error = all ? ERROR_SUCCESS : GetLastError();
  place.attributes = all.value_or(0);
  if (all) place.kind = (*all & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::kFolder : Kind::kFile;
}

// What stands at `place.native`, where its folder can't be listed or it has none.
void LookWithoutFolder(Place& place) {
  const DWORD attributes = GetFileAttributesW(place.native.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES)
    place.error = GetLastError();
  else
    SetKind(place, attributes);
}

// Looks up the last component: the system minds neither case nor the short form of a name.
void Look(Place& place) {
  WIN32_FIND_DATAW found = {};
  HANDLE search = FindFirstFileExW(place.native.c_str(), FindExInfoBasic, &found,
                                   FindExSearchNameMatch, nullptr, 0);
  if (search == INVALID_HANDLE_VALUE) {
    place.error = GetLastError();
    const std::wstring root = place.native.substr(0, LengthOfRoot(place.native));
    const bool isMissing = place.error == ERROR_PATH_NOT_FOUND;
    if (isMissing && GetFileAttributesW(root.c_str()) == INVALID_FILE_ATTRIBUTES)
      place.error = ERROR_INVALID_DRIVE;
    if (place.error == ERROR_FILE_NOT_FOUND) place.kind = Kind::kFree;
    if (place.error == ERROR_ACCESS_DENIED) LookWithoutFolder(place);
    return;
  }
  FindClose(search);
  const std::optional<std::string> name = FromWide(&found.cFileName[0]);
  if (name) {
    place.name = *name;
    place.native = Below(FolderOf(place.native), &found.cFileName[0]);
  }
  // By its short name.
  if (name && Lookup::IsLockFile(*name)) {
    place = Nowhere(place.native, ERROR_ACCESS_DENIED);
    return;
  }
  SetKind(place, found.dwFileAttributes);
}

}  // namespace

DosPathParts ParseDosPath(std::string_view path) {
  DosPathParts parts;
  if (path.empty() || path.find('\0') != std::string_view::npos) return parts;
  parts.endsInSeparator = IsSeparator(path.back());
  std::optional<std::string> start = TakeStart(path);
  if (!start || path.find(':') != std::string_view::npos) return parts;
  parts.valid = true;
  parts.start = *std::move(start);
  parts.AddNames(path);
  return parts;
}

Place FindPlace(const FileSystemOptions& options, std::string_view path) {
  return FindPlace(options, ParseDosPath(path));
}

Place FindPlace(const FileSystemOptions& /*options*/, const DosPathParts& parts) {
  const bool sayable =
      parts.valid && std::all_of(parts.names.begin(), parts.names.end(), CanBeAskedFor);
  if (!sayable) return Nowhere({}, ERROR_INVALID_NAME);
  const std::optional<std::wstring> start = StartOf(parts);
  if (!start) return Nowhere({}, GetLastError());
  Place place;
  place.native = *start;
  for (const std::string& name : parts.names)
    place.native = NameIn(place.native, WithoutTrailingDots(name));
  if (parts.names.empty()) {
    LookWithoutFolder(place);
  } else {
    place.asWritten = WithoutTrailingDots(parts.names.back());
    place.name = place.asWritten;
    Look(place);
  }
  place.endsInSeparator = parts.endsInSeparator;
  if (parts.endsInSeparator && place.kind == Kind::kFile)
    return Nowhere(place.native, ERROR_DIRECTORY);
  return place;
}

std::vector<FolderEntry> MatchingEntries(const std::wstring& folder, std::string_view pattern,
                                         SystemError& error) {
  std::vector<FolderEntry> entries;
  WIN32_FIND_DATAW found = {};
  // All names are asked for, and matched here: the system's own matching knows short names too,
  // and so would take files that a script's author, on another disk, doesn't see match.
  HANDLE search = FindFirstFileExW(Below(folder, L"*").c_str(), FindExInfoBasic, &found,
                                   FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  error = search == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS;
  // An empty root has not even dots.
  if (error == ERROR_FILE_NOT_FOUND) error = ERROR_SUCCESS;
  if (search == INVALID_HANDLE_VALUE) return entries;
  do {
    const std::wstring native(&found.cFileName[0]);
    std::optional<std::string> name = FromWide(native);
    if (!name || *name == "." || *name == ".." || Lookup::IsLockFile(*name) ||
        !DosPath::MatchesWildcards(*name, pattern))
      continue;
    const std::optional<DWORD> attributes =
        BehindLinks(Below(folder, native), found.dwFileAttributes);
    if (attributes) entries.push_back({native, *std::move(name), *attributes});
  } while (FindNextFileW(search, &found) != 0);
  if (GetLastError() != ERROR_NO_MORE_FILES) error = GetLastError();
  FindClose(search);
  std::sort(entries.begin(), entries.end(), [](const FolderEntry& left, const FolderEntry& right) {
    return ComesBefore(left.name, right.name);
  });
  return entries;
}

std::optional<Identity> IdentityOf(const std::wstring& native) {
  const Handle file = OpenForLooking(native);
  BY_HANDLE_FILE_INFORMATION information = {};
  if (!file.IsOpen() || GetFileInformationByHandle(file.Get(), &information) == 0)
    return std::nullopt;
  const std::uint64_t index =
      std::uint64_t{information.nFileIndexHigh} << 32U | information.nFileIndexLow;
  return Identity{information.dwVolumeSerialNumber, index, information.nNumberOfLinks};
}

std::wstring Below(const std::wstring& folder, const std::wstring& name) {
  return folder.ends_with(L'\\') ? folder + name : folder + L"\\" + name;
}

std::wstring FolderOf(const std::wstring& native) {
  const std::size_t root = LengthOfRoot(native);
  const std::size_t separator = native.rfind(L'\\');
  return native.substr(0, separator < root ? root : separator);
}

std::wstring LongForm(const std::wstring& native) {
  if (native.starts_with(kLongPrefix)) return native;
  if (native.starts_with(L"\\\\")) return std::wstring(kLongShare) + native.substr(2);
  return std::wstring(kLongPrefix) + native;
}

std::wstring ShortForm(const std::wstring& native) {
  if (native.starts_with(kLongShare)) return L"\\\\" + native.substr(kLongShare.size());
  return native.starts_with(kLongPrefix) ? native.substr(kLongPrefix.size()) : native;
}

std::optional<std::wstring> RealPath(const std::wstring& native) {
  const Handle file = OpenForLooking(native);
  if (!file.IsOpen()) return std::nullopt;
  const DWORD room = GetFinalPathNameByHandleW(file.Get(), nullptr, 0, VOLUME_NAME_DOS);
  std::wstring real(room, L'\0');
  real.resize(GetFinalPathNameByHandleW(file.Get(), real.data(), room, VOLUME_NAME_DOS));
  return real.empty() ? std::nullopt : std::optional(std::move(real));
}

}  // namespace Windows
