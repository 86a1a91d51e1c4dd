#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Disk.h"
#include "platform/DosPath.h"
#include "platform/Failure.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"

void FaultPlan::FailAt(int n, bool once) {
  count_ = 0;
  failAt_ = n;
  once_ = once;
}

void FaultPlan::Step(const char* operation, std::string_view path) {
  ++count_;
  if (failAt_ == 0 || count_ < failAt_ || (once_ && count_ > failAt_)) return;
  // What takes room fails as on a full disk, all else as on a dead one.
  constexpr std::array<std::string_view, 6> kTakingRoom = {"create", "write",   "reserve",
                                                           "resize", "copy to", "create folder"};
  const bool takesRoom =
      std::find(kTakingRoom.begin(), kTakingRoom.end(), operation) != kTakingRoom.end();
  throw Failure(Concat(operation, " \"", path, "\": fails as planned, at operation ", count_),
                takesRoom ? ENOSPC : EIO);
}

namespace {

using Disk::Access;
using Native::FailWith;
using Native::FindPlace;
using Native::Place;
using Kind = Place::Kind;

constexpr const char* kDelete = "delete";

void RequireSuccess(Native::SystemError error, const char* operation, std::string_view path) {
  if (error != 0) FailWith(operation, path, error);
}

void RequireChanges(const FileSystemOptions& options, const char* operation,
                    std::string_view path) {
  if (options.readOnly) FailWith(operation, path, Native::kReadOnly);
}

// Fails unless a file can be opened or replaced at `place`, whether it exists or not.
void RequireFileOrFree(const char* operation, std::string_view path, const Place& place) {
  switch (place.kind) {
    case Kind::kNowhere:
      FailWith(operation, path, place.error);
    case Kind::kFolder:
      FailWith(operation, path, Native::kIsFolder);
    case Kind::kSpecial:
      FailWith(operation, path, Native::kNotOrdinary);
    case Kind::kFree:
      if (place.endsInSeparator) FailWith(operation, path, Native::kIsFolder);
      if (!DosPath::IsPlainFileName(place.asWritten))
        FailWith(operation, path, Native::kInvalidName);
      return;
    case Kind::kFile:
      return;
  }
}

void RequireFile(const char* operation, std::string_view path, const Place& place) {
  if (place.kind == Kind::kFree) FailWith(operation, path, Native::kFileNotFound);
  RequireFileOrFree(operation, path, place);
}

void RequireNoProtection(const char* operation, std::string_view path, const Place& place) {
  if (place.IsWriteProtected()) FailWith(operation, path, Native::kAccessDenied);
}

// The place of a file that gets new content.
Place FindOutput(const FileSystemOptions& options, const Disk::Memory& memory,
                 const char* operation, std::string_view path) {
  Place place = FindPlace(options, path);
  const bool isGuarded = !memory.ownFilesOnly.empty() && !place.native.empty() &&
                         Native::FolderOf(place.native) == memory.ownFilesOnly;
  if (options.readOnly || !isGuarded || place.asWritten.empty() || !Disk::IsOthersToo(place))
    return place;
  RequireSuccess(Disk::RemoveFile(place.native), operation, path);
  return FindPlace(options, path);
}

// The place of a file that may be made or replaced; fails if there is none.
Place FindReplaceable(const FileSystemOptions& options, const Disk::Memory& memory,
                      const char* operation, std::string_view path) {
  RequireChanges(options, operation, path);
  Place place = FindOutput(options, memory, operation, path);
  RequireFileOrFree(operation, path, place);
  RequireNoProtection(operation, path, place);
  return place;
}

File OpenOrCreate(const FileSystemOptions& options, Disk::Memory& memory, std::string_view path,
                  const Place& place, const std::shared_ptr<FaultPlan>& faults) {
  RequireFileOrFree("open", path, place);
  memory.changed.NoteFile(place.native);
  if (place.kind == Kind::kFree) {
    RequireChanges(options, "create", path);
    memory.changed.NoteEntry(place.native);
    return Disk::Open("create", path, place, Access::kReadAndWrite, faults);
  }
  const bool onlyRead = options.readOnly || place.IsWriteProtected();
  return Disk::Open("open", path, place, onlyRead ? Access::kRead : Access::kAsAllowed, faults);
}

std::vector<std::string> FindInFolder(const Place& folder, std::string_view pattern, int mask) {
  std::vector<std::string> names;
  if (folder.kind != Kind::kFolder) return names;
  Native::SystemError ignored = 0;  // what can't be looked at isn't found
  for (Native::FolderEntry& entry : Native::MatchingEntries(folder.native, pattern, ignored))
    if (Disk::FitsMask(entry, mask)) names.push_back(std::move(entry.name));
  return names;
}

// Deletes one name of an ordinary file.
void DeleteOne(FaultPlan& faults, std::string_view path, const Native::NativeText& native) {
  faults.Step(kDelete, path);
  RequireSuccess(Disk::RemoveFile(native), kDelete, path);
}

void DeleteMatches(const FileSystemOptions& options, Native::DosPathParts parts,
                   Disk::Memory& memory, FaultPlan& faults, std::string_view path) {
  const std::string pattern = parts.TakeLast();
  const Place folder = FindPlace(options, parts);
  if (folder.kind == Kind::kNowhere) FailWith(kDelete, path, folder.error);
  bool any = false;
  Native::SystemError error = 0;
  const auto entries = Native::MatchingEntries(folder.native, pattern, error);
  RequireSuccess(error, kDelete, path);
  for (const Native::FolderEntry& entry : entries) {
    if (!Disk::FitsMask(entry, kFindFiles)) continue;
    any = true;
    Disk::RequireNoProtection(kDelete, path, folder, entry);
    const Native::NativeText native = Native::Below(folder.native, entry.native);
    memory.changed.NoteEntry(native);
    DeleteOne(faults, path, native);
  }
  if (!any) FailWith(kDelete, path, Native::kFileNotFound);
}

// A helper file's name is ".kelvo-PROCESS-NUMBER.tmp". The number is for one process that makes
// several in one folder.
constexpr std::string_view kHelperPrefix = ".kelvo-";
constexpr std::string_view kHelperSuffix = ".tmp";

// The process that has given this name; nothing if it is no helper's.
std::optional<std::int64_t> MakerOf(std::string_view name) {
  if (!name.starts_with(kHelperPrefix) || !name.ends_with(kHelperSuffix)) return std::nullopt;
  name.remove_prefix(kHelperPrefix.size());
  name = name.substr(0, name.size() - std::min(name.size(), kHelperSuffix.size()));
  const std::size_t hyphen = name.find('-');
  if (hyphen == std::string_view::npos || !Text::WholeNumber(name.substr(hyphen + 1)))
    return std::nullopt;
  return Text::WholeNumber(name.substr(0, hyphen));
}

bool IsDeadHelper(const std::filesystem::directory_entry& entry) {
  std::error_code ignored;
  // A link isn't one of ours.
  if (!std::filesystem::is_regular_file(entry.symlink_status(ignored))) return false;
  const std::u8string name = entry.path().filename().u8string();
  const std::optional<std::int64_t> maker = MakerOf(std::string(name.begin(), name.end()));
  // What bears our own number is from an earlier process that had the same.
  return maker && (*maker == Disk::OwnProcess() || !Disk::IsRunning(*maker));
}

// The folders on the way down; those that can't be read are left out.
template <typename Iterator>
void RemoveDeadHelpers(const Native::NativeText& folder) {
  std::error_code error;
  Iterator entry(folder, std::filesystem::directory_options::skip_permission_denied, error);
  for (; !error && entry != Iterator(); entry.increment(error))
    if (IsDeadHelper(*entry)) Disk::RemoveQuietly(entry->path().native());
}

}  // namespace

namespace Disk {

std::string HelperName(int number) {
  return Concat(kHelperPrefix, OwnProcess(), '-', number, kHelperSuffix);
}

void RemoveDeadHelpersIn(const NativeText& folder) {
  RemoveDeadHelpers<std::filesystem::directory_iterator>(folder);
}

File Successor::MakeInTidyFolder(Memory& memory) {
  const NativeText folder = Native::FolderOf(target_);
  if (memory.tidied.insert(folder).second) RemoveDeadHelpersIn(folder);
  return Make();
}

}  // namespace Disk

FileSystem::FileSystem(FileSystemOptions options)
    : options_(std::move(options)),
      faults_(std::make_shared<FaultPlan>()),
      memory_(std::make_shared<Disk::Memory>()) {}

std::string FileSystem::FindFirst(std::string_view path, int mask) const {
  std::vector<std::string> names = FindAll(path, mask);
  return names.empty() ? std::string() : std::move(names.front());
}

std::vector<std::string> FileSystem::FindAll(std::string_view path, int mask) const {
  Native::DosPathParts parts = Native::ParseDosPath(path);
  if (!parts.valid) return {};
  const bool wantsFolders = (mask & kFindFolders) != 0;
  if (parts.endsInSeparator) {
    const Place folder = FindPlace(options_, parts);
    std::vector<std::string> names;
    if (folder.kind == Kind::kFolder && wantsFolders) names.emplace_back(".");
    std::vector<std::string> others = FindInFolder(folder, "*.*", mask);
    std::move(others.begin(), others.end(), std::back_inserter(names));
    return names;
  }
  if (parts.EndsInPattern()) {
    const std::string pattern = parts.TakeLast();
    return FindInFolder(FindPlace(options_, parts), pattern, mask);
  }
  const Place place = FindPlace(options_, parts);
  if (!place.Exists()) return {};
  // A drive's root and the current directory have no name of their own.
  if (place.name.empty())
    return wantsFolders ? std::vector<std::string>{"."} : std::vector<std::string>{};
  if (!Disk::FitsMask(place, mask)) return {};
  return {place.name};
}

File FileSystem::OpenForReading(std::string_view path) const {
  const Place place = FindPlace(options_, path);
  RequireFile("open", path, place);
  return Disk::Open("open", path, place, Access::kRead, faults_);
}

File FileSystem::OpenBinary(std::string_view path) const {
  return OpenOrCreate(options_, *memory_, path, FindPlace(options_, path), faults_);
}

File FileSystem::OpenForOutput(std::string_view path) const {
  return OpenOrCreate(options_, *memory_, path, FindOutput(options_, *memory_, "open", path),
                      faults_);
}

File FileSystem::Create(std::string_view path) const {
  constexpr const char* kOperation = "create";
  const Place place = FindReplaceable(options_, *memory_, kOperation, path);
  memory_->changed.NoteFile(place.native);
  memory_->changed.NoteEntry(place.native);
  return Disk::Open(kOperation, path, place, Access::kReadAndWriteEmptied, faults_);
}

std::string FileSystem::ReadWhole(std::string_view path) const {
  const File file = OpenForReading(path);
  // Positions in texts are 32-bit signed.
  if (file.Size() > std::numeric_limits<std::int32_t>::max())
    Fail("read \"", path, "\": ", file.Size(), " bytes are more than 2 GiB");
  return file.ReadAt(0, file.Size());
}

void FileSystem::WriteWhole(std::string_view path, std::string_view text) const {
  WriteWhole(path, std::vector{text});
}

void FileSystem::WriteWhole(std::string_view path,
                            const std::vector<std::string_view>& parts) const {
  const Place place = FindReplaceable(options_, *memory_, "write", path);
  const bool isNew = place.kind == Kind::kFree;
  memory_->changed.NoteFile(place.native);
  if (isNew) memory_->changed.NoteEntry(place.native);
  // A new file that can't be filled isn't left behind; it can go only when it has been closed.
  std::optional<Disk::HelperFile> unfinished;
  File file = Disk::Open(isNew ? "create" : "open", path, place, Access::kReadAndWrite, faults_);
  if (isNew) unfinished.emplace(place.native);
  std::int64_t size = 0;
  for (const std::string_view part : parts) size += static_cast<std::int64_t>(part.size());
  // The write is one step, so that a step that fails leaves the old text or none, but no mixture.
  const std::int64_t former = file.Size();
  if (former < size) file.Reserve(former, size - former);
  if (former > size) file.SetSize(0);
  file.WriteAt(0, parts);
  file.Close();
  if (unfinished) unfinished->Keep();
}

void FileSystem::ReplaceWhole(std::string_view path, std::string_view text) const {
  constexpr const char* kOperation = "replace";
  const Place place = FindReplaceable(options_, *memory_, kOperation, path);
  Disk::Successor successor(kOperation, path, place, Native::kNewFile, faults_, *memory_);
  successor.Content().WriteAt(0, text);
  successor.Content().Sync();
  successor.Content().Close();
  successor.TakePlace();
  Disk::SyncFolder(Native::FolderOf(successor.Target()));
}

void FileSystem::Copy(std::string_view from, std::string_view to) const {
  constexpr const char* kOperation = "copy to";
  RequireChanges(options_, kOperation, to);
  const Place source = FindPlace(options_, from);
  RequireFile("copy", from, source);
  const Place target = FindReplaceable(options_, *memory_, kOperation, to);
  if (target.Exists() && Disk::IsSameFile(source, target))
    Fail("copy \"", from, "\": it can't be copied onto itself");

  File content = Disk::Open("open", from, source, Access::kRead, faults_);
  Disk::Successor successor(kOperation, to, target, Disk::PermissionsForCopyOf(source), faults_,
                            *memory_);
  successor.Content().CopyFrom(content, 0, content.Size(), 0);
  successor.Content().Close();
  successor.TakeTimeOf(from, source);
  successor.TakePlace();
  memory_->changed.NoteFile(successor.Target());
  memory_->changed.NoteEntry(successor.Target());
}

void FileSystem::Delete(std::string_view path) const {
  RequireChanges(options_, kDelete, path);
  const Native::DosPathParts parts = Native::ParseDosPath(path);
  if (parts.EndsInPattern()) return DeleteMatches(options_, parts, *memory_, *faults_, path);
  const Place place = FindPlace(options_, parts);
  memory_->changed.NoteEntry(place.native);
  RequireFile(kDelete, path, place);
  RequireNoProtection(kDelete, path, place);
  DeleteOne(*faults_, path, place.native);
}

void FileSystem::Rename(std::string_view from, std::string_view to) const {
  constexpr const char* kOperation = "rename";
  constexpr const char* kTo = "rename to";
  RequireChanges(options_, kOperation, from);
  const Place source = FindPlace(options_, from);
  if (source.kind == Kind::kNowhere) FailWith(kOperation, from, source.error);
  if (source.kind == Kind::kFree || source.name.empty())
    FailWith(kOperation, from, Native::kFileNotFound);
  if (source.kind == Kind::kSpecial) FailWith(kOperation, from, Native::kNotOrdinary);
  const Place target = FindPlace(options_, to);
  if (target.kind == Kind::kNowhere) FailWith(kTo, to, target.error);
  const bool otherCase =
      target.Exists() && Disk::IsSameEntry(source, target) && target.asWritten != source.name;
  if (target.Exists() && !otherCase) FailWith(kTo, to, Native::kAlreadyExists);
  if (!DosPath::IsPlainFileName(target.asWritten)) FailWith(kTo, to, Native::kInvalidName);

  faults_->Step(kOperation, from);
  RequireSuccess(Disk::RenameEntry(source, target, to), kOperation, from);
  memory_->changed.NoteRename(source.native, FindPlace(options_, to).native);
}

void FileSystem::PutInPlace(std::string_view replacement, std::string_view path) const {
  constexpr const char* kOperation = "replace";
  RequireChanges(options_, kOperation, path);
  const Place source = FindPlace(options_, replacement);
  RequireFile(kOperation, replacement, source);
  const Place target = FindPlace(options_, path);
  RequireFile(kOperation, path, target);
  RequireNoProtection(kOperation, path, target);
  if (Disk::IsSameFile(source, target)) Fail("replace \"", path, "\": it can't take its own place");

  faults_->Step("rename", path);
  const Native::SystemError error = Disk::MoveOnto(kOperation, path, source, target);
  if (error == Native::kOtherDisk) {
    // The path is a link to another disk: the content goes there, whole or not at all.
    Copy(replacement, path);
    return Delete(replacement);
  }
  RequireSuccess(error, kOperation, path);
}

void FileSystem::CreateFolder(std::string_view path) const {
  constexpr const char* kOperation = "create folder";
  RequireChanges(options_, kOperation, path);
  const Place place = FindPlace(options_, path);
  if (place.kind == Kind::kNowhere) FailWith(kOperation, path, place.error);
  if (place.Exists()) FailWith(kOperation, path, Native::kAlreadyExists);
  if (!DosPath::IsPlainFileName(place.asWritten)) FailWith(kOperation, path, Native::kInvalidName);
  faults_->Step(kOperation, path);
  RequireSuccess(Disk::MakeFolder(place.native), kOperation, path);
  memory_->changed.NoteEntry(place.native);
}

void FileSystem::RemoveFolder(std::string_view path) const {
  constexpr const char* kOperation = "remove folder";
  RequireChanges(options_, kOperation, path);
  const Place place = FindPlace(options_, path);
  if (place.kind == Kind::kNowhere) FailWith(kOperation, path, place.error);
  if (place.kind == Kind::kFree) FailWith(kOperation, path, Native::kFolderNotFound);
  if (place.kind != Kind::kFolder) FailWith(kOperation, path, Native::kIsNoFolder);
  faults_->Step(kOperation, path);
  RequireSuccess(Disk::RemoveEmptyFolder(place.native), kOperation, path);
  memory_->changed.NoteEntry(place.native);
}

bool FileSystem::IsNameable(std::string_view path) const {
  try {
    return !ToNative(path).empty();
  } catch (const Failure&) {
    return false;
  }
}

bool FileSystem::LiesIn(std::string_view path, std::string_view folder) const {
  if (!IsNameable(path) || !IsNameable(folder)) return false;
  std::error_code ignored;
  const std::filesystem::path wanted = ToNative(folder);
  // The folder may be reached by other links than the path, so each one above it is held against
  // the folder itself.
  for (std::filesystem::path place = std::filesystem::absolute(ToNative(path), ignored);;
       place = place.parent_path()) {
    if (std::filesystem::equivalent(place, wanted, ignored)) return true;
    if (!place.has_relative_path()) return false;
  }
}

bool FileSystem::MayWrite(std::string_view path) const {
  if (options_.readOnly) return false;
  const Place place = FindPlace(options_, path);
  if (place.kind == Kind::kFolder) return Disk::MayMakeFilesIn(place.native);
  if (place.kind == Kind::kFree) return Disk::MayMakeFilesIn(Native::FolderOf(place.native));
  if (place.kind != Kind::kFile || place.IsWriteProtected()) return false;
  try {
    const File opened = Disk::Open("open", path, place, Access::kReadAndWrite, faults_);
    return true;
  } catch (const Failure&) {
    return false;
  }
}

Room FileSystem::RoomAt(std::string_view path) const {
  std::error_code error;
  std::filesystem::path place = std::filesystem::absolute(ToNative(path), error);
  while (!std::filesystem::exists(place, error) && place.has_relative_path()) {
    place = place.parent_path();
  }
  const std::filesystem::space_info space = std::filesystem::space(place, error);
  constexpr std::uintmax_t kUnknown = 0;
  if (!error && (space.capacity == kUnknown || space.available > space.capacity))
    Fail("measure the room at \"", path, "\": the file system doesn't tell");
  if (error) Fail("measure the room at \"", path, "\": ", error.message());
  return {Disk::VolumeOf(place.native()), static_cast<std::int64_t>(space.available)};
}

void FileSystem::SyncChanges() const {
  faults_->Step("sync", "");
  memory_->changed.Sync();
}

void FileSystem::WriteOnlyOwnFilesIn(std::string_view folder) const {
  // As it comes out when a file in it is looked up.
  memory_->ownFilesOnly = Native::FolderOf(FindPlace(options_, DosPath::Join(folder, "x")).native);
}

void FileSystem::RemoveDeadHelpersBelow(std::string_view folder) const {
  if (options_.readOnly) return;
  const Place place = FindPlace(options_, folder);
  if (place.kind == Kind::kFolder)
    RemoveDeadHelpers<std::filesystem::recursive_directory_iterator>(place.native);
}
